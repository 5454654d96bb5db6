#!/usr/bin/python3
"""What a password manager marks as secret leaves no trace."""
import os
import random
import string

from case import DesktopTest, main
from clients import read_by_xclip
from password_manager import KeePassXC
from pictures import noise_png
from process_memory import memory_holds
from waiting import wait_until

HINT = "x-kde-passwordManagerHint"


def random_word():
    return "".join(random.SystemRandom().choices(string.ascii_letters, k=24))


def forms_of(text):
    """The text in many of the forms in which a program can offer it."""
    data = text.encode()
    return {"UTF8_STRING": data, "text/plain;charset=utf-8": data, "text/plain": data,
            "STRING": data, "text/html": b"<b>" + data + b"</b>",
            "text/rtf": rb"{\rtf1 " + data + b"}", "text/uri-list": b"file:///" + data,
            "image/png": noise_png(random.Random(text), 20, 20)}


class SecretTest(DesktopTest):
    def setUp(self):
        super().setUp()
        self.secret = random_word()
        self.harmless = random_word()

    def offer(self, owner, mark):
        """Offers the secret with a mark, and returns once the mark was asked for."""
        owner.own({**forms_of(self.secret), HINT: mark})
        wait_until(lambda: HINT in owner.asked, "a question for the mark")

    def assert_no_trace(self):
        """To be called when a harmless text was copied since: it shows that traces are found."""
        self.assertEqual([self.harmless], self.program.texts())
        self.assertIn(self.harmless, self.program.output())
        self.assertNotIn(self.secret[:5], self.program.output())
        self.assertTrue(memory_holds(self.program.pid, self.harmless))
        self.assertFalse(memory_holds(self.program.pid, self.secret))
        stored = self.stored_bytes()
        self.assertIn(self.harmless.encode(), stored)
        self.assertNotIn(self.secret.encode(), stored)

    def stored_bytes(self):
        """Of all the files that the program has made."""
        stored = b""
        for folder, _, names in os.walk(self.program.data):
            for name in names:
                with open(os.path.join(folder, name), "rb") as file:
                    stored += file.read()
        return stored

    def test_a_secret_is_not_fetched(self):
        self.program.start()
        owner = self.owner()
        self.offer(owner, b"secret")
        self.copy(self.harmless)
        self.assertEqual(["TARGETS", HINT], owner.asked)
        self.assert_no_trace()

    def test_a_secret_that_is_there_at_the_start_is_not_fetched(self):
        owner = self.owner()
        owner.own({**forms_of(self.secret), HINT: b"secret"})
        self.program.start()
        self.copy(self.harmless)
        self.assertLessEqual(set(owner.asked), {"TARGETS", HINT})
        self.assert_no_trace()

    def test_a_text_with_another_mark_is_no_secret(self):
        self.program.start()
        self.offer(self.owner(), b"public")
        self.program.wait_for_text(self.secret)
        self.assertTrue(memory_holds(self.program.pid, self.secret))
        self.assertIn(self.secret.encode(), self.stored_bytes())

    def copy_from_password_manager(self, manager, copy):
        mark = self.program.mark()
        copy(manager)
        self.program.wait_for_line("Detected: Unknown type, ignoring", since=mark)

    def check_password_manager(self, user_name, password, copy):
        self.program.start()
        with KeePassXC(self.desktop, self.display, user_name, password) as manager:
            self.copy_from_password_manager(manager, copy)
            self.copy(self.harmless)
            self.assert_no_trace()

    def test_a_password_of_a_password_manager(self):
        self.check_password_manager("somebody", self.secret, KeePassXC.copy_password)

    def test_a_user_name_of_a_password_manager(self):
        self.check_password_manager(self.secret, "something", KeePassXC.copy_user_name)

    def test_a_password_manager_that_ends(self):
        self.program.start()
        with KeePassXC(self.desktop, self.display, "somebody", self.secret) as manager:
            self.copy_from_password_manager(manager, KeePassXC.copy_password)
            manager.process.kill()
            manager.process.wait(10)
            wait_until(lambda: self.display.selection_owner() == 0, "the clipboard to be empty")
            self.copy(self.harmless)
            self.assert_no_trace()

    def test_a_password_manager_that_clears_the_clipboard(self):
        self.program.start()
        with KeePassXC(self.desktop, self.display, "somebody", self.secret,
                       clear_seconds=2) as manager:
            self.copy_from_password_manager(manager, KeePassXC.copy_password)
            mark = self.program.mark()
            # It puts an empty text in place of the secret, with the same mark.
            wait_until(lambda: read_by_xclip(self.desktop) == b"", "the clipboard to be cleared")
            self.program.wait_for_line("Detected: Unknown type, ignoring", since=mark)
            self.copy(self.harmless)
            self.assert_no_trace()


if __name__ == "__main__":
    main()
