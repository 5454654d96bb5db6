#!/usr/bin/python3
"""What is typed right behind the hot key goes to the search field, from the first letter on."""
import contextlib
import os
import random
import subprocess

from case import OTHER_HOT_KEY, OTHER_HOT_KEY_SETTINGS, DesktopTest, main
from clients import XTerm, read_by_xclip
from waiting import wait_until
from Xlib import X

LETTERS = "qwertyuiopasdfghjklzxcvbnm"


class FirstLettersCase(DesktopTest):
    settings = {}
    rounds = 20

    def setUp(self):
        super().setUp()
        self.program.write_settings(self.settings)
        self.program.start()
        self.random = random.Random(7)

    def word(self):
        return "".join(self.random.sample(LETTERS, 5))

    def searched(self):
        """The text in the search field, by way of the clipboard."""
        self.display.press("ctrl+a")
        before = self.display.selection_owner()
        self.display.press("ctrl+c")
        wait_until(lambda: self.display.selection_owner() not in (0, before), "the copy")
        text = read_by_xclip(self.desktop).decode()
        self.copy_nothing()
        return text

    def copy_nothing(self):
        """Another owner, so that the next copy is seen as a change of owner."""
        self.owner_before = self.display.root.create_window(0, 0, 1, 1, 0, X.CopyFromParent)
        self.owner_before.set_selection_owner(self.display.atom("CLIPBOARD"), X.CurrentTime)
        self.display.connection.sync()

    def close(self):
        self.display.press("Escape")
        self.display.press("Escape")
        self.wait_until_closed()

    def check_letters(self):
        lost = []
        for _ in range(self.rounds):
            word = self.word()
            self.strike(*word)
            self.wait_for_history_window()
            found = self.searched()
            if found != word:
                lost.append((word, found))
            self.close()
        self.assertEqual([], lost)

    @contextlib.contextmanager
    def busy_machine(self):
        """Twice as many programs that do nothing but reckon as there are processors."""
        busy = [subprocess.Popen(["sh", "-c", "while :; do :; done"])
                for _ in range(2 * os.cpu_count())]
        try:
            yield
        finally:
            for process in busy:
                process.kill()
                process.wait()


class FirstLettersTest(FirstLettersCase):
    def test_the_letters_arrive_whole(self):
        with XTerm(self.desktop, self.display) as terminal:
            self.check_letters()
            self.assertEqual("", terminal.written_text())

    def test_the_letters_arrive_on_a_busy_machine(self):
        with XTerm(self.desktop, self.display) as terminal, self.busy_machine():
            self.check_letters()
            self.assertEqual("", terminal.written_text())

    def test_the_keys_go_on_when_the_hot_key_closes_the_window(self):
        with XTerm(self.desktop, self.display) as terminal:
            self.open_window()
            self.strike()
            self.wait_until_closed()
            self.display.wait_until_active(terminal.window)
            self.display.type("after")
            wait_until(lambda: terminal.written_text() == "after", terminal.written_text)

    def test_letters_that_follow_a_held_hot_key_arrive(self):
        with XTerm(self.desktop, self.display) as terminal:
            with self.display.holding(*self.hot_key.split("+")[:-1]):
                self.display.hold(self.hot_key.split("+")[-1])
                self.addCleanup(self.display.let_go, self.hot_key.split("+")[-1])
                self.wait_for_history_window()
            self.display.type("held")
            self.display.let_go(self.hot_key.split("+")[-1])
            self.assertEqual("held", self.searched())
            self.close()
            self.assertEqual("", terminal.written_text())

    def test_letters_and_return_at_once_paste_the_entry_they_find(self):
        words = [self.word() for _ in range(5)]
        for word in words:
            self.copy(word)
        with XTerm(self.desktop, self.display) as terminal:
            pasted = ""
            for word in words:
                mark = self.program.mark()
                self.strike(*word, "Return")
                self.program.wait_for_line("Simulated Cmd+V paste completed", since=mark)
                self.wait_until_closed()
                pasted += word
                wait_until(lambda: terminal.written_text() == pasted,
                           lambda: f"{pasted}; there is {terminal.written_text()}")


class MetacityFirstLettersTest(FirstLettersTest):
    rounds = 5
    desktop_options = {"wm": "metacity"}


class KWinFirstLettersTest(FirstLettersTest):
    rounds = 5
    desktop_options = {"wm": "kwin_x11"}


class MutterFirstLettersTest(FirstLettersTest):
    rounds = 5
    desktop_options = {"wm": "mutter --x11"}


class Xfwm4FirstLettersTest(FirstLettersTest):
    rounds = 5
    desktop_options = {"wm": "xfwm4"}
    hot_key = OTHER_HOT_KEY  # The other one is the window manager's own.
    settings = OTHER_HOT_KEY_SETTINGS


if __name__ == "__main__":
    main()
