#!/usr/bin/python3
"""What was copied is still on the clipboard after its program has ended, however it ended."""
import os
import subprocess

from case import DesktopTest, main
from clients import (Chromium, FeatherPad, Mousepad, PCManFM, copy_by_xclip, read_by_xclip)
from program import Program
from waiting import retry_until, wait_until


class KeptAliveTest(DesktopTest):
    def setUp(self):
        super().setUp()
        self.program.start()

    def wait_for_clipboard(self, data, target="UTF8_STRING"):
        wait_until(lambda: read_by_xclip(self.desktop, target) == data,
                   lambda: f"{data[:40]!r} on the clipboard; there is "
                           f"{read_by_xclip(self.desktop, target)[:80]!r}")

    def end_owner(self):
        """Ends the program that owns the clipboard, and returns when there is another owner."""
        owner = self.display.selection_owner()
        self.display.end_client(owner)
        wait_until(lambda: self.display.selection_owner() not in (0, owner),
                   "the clipboard to be taken over")

    def close_by_keys(self, editor, chord):
        """Has the program end by itself, as a person would."""
        def keys():
            editor.focus()
            self.display.press(chord)

        retry_until(keys, lambda: editor.process.poll() is not None, "the program to end")

    def check_text_of(self, editor_class, end):
        text = f"written in {editor_class.window_class}"
        with editor_class(self.desktop, self.display, text + "\n") as editor:
            editor.select_and_copy()
            self.program.wait_for_row(lambda stored: stored == text, text)
            end(editor)
            editor.process.wait(10)
            # Selected with the whole text was its line end.
            wait_until(lambda: read_by_xclip(self.desktop).rstrip(b"\n") == text.encode(),
                       "the text of the program that has ended")
        self.assertEqual([text], self.program.texts())

    def test_a_gtk_editor_is_closed(self):
        self.check_text_of(Mousepad, lambda editor: self.close_by_keys(editor, "ctrl+q"))

    def test_a_qt_editor_is_closed(self):
        self.check_text_of(FeatherPad, lambda editor: self.close_by_keys(editor, "ctrl+q"))

    def test_an_editor_is_killed(self):
        self.check_text_of(Mousepad, lambda editor: editor.process.kill())
        self.assertEqual(1, len(self.program.rows()))

    def test_a_browser_is_closed(self):
        body = "<p>Plain and <b>bold</b> words</p>"
        with Chromium(self.desktop, self.display, body) as browser:
            browser.select_and_copy()
            row = self.program.wait_for_row(lambda text, _: text == "Plain and bold words",
                                            "the text", "stringValue, htmlRepresentation")
            self.close_by_keys(browser, "ctrl+w")
            browser.process.wait(20)
            self.wait_for_clipboard(b"Plain and bold words")
            self.assertEqual(row[1], read_by_xclip(self.desktop, "text/html"))
        self.assertEqual(1, len(self.program.rows()))

    def test_a_file_manager_is_closed(self):
        folder = self.desktop.path("a folder")
        os.makedirs(folder)
        with open(os.path.join(folder, "größe 1.txt"), "w", encoding="utf-8") as file:
            file.write("file")
        with PCManFM(self.desktop, self.display, folder) as manager:
            manager.select_and_copy()
            self.program.wait_for_text("größe 1.txt")
            manager.process.kill()
            manager.process.wait(10)
            url = b"file://" + folder.encode().replace(b" ", b"%20") + b"/gr%C3%B6%C3%9Fe%201.txt"
            self.wait_for_clipboard(url + b"\r\n", "text/uri-list")
            self.assertEqual(b"copy\n" + url,
                             read_by_xclip(self.desktop, "x-special/gnome-copied-files"))

    def test_a_picture_is_kept_byte_for_byte(self):
        picture = self.desktop.path("picture.png")
        self.desktop.run("convert", "-size", "640x480", "plasma:", picture)
        with open(picture, "rb") as file:
            data = file.read()
        owner = subprocess.Popen(
            ["xclip", "-quiet", "-selection", "clipboard", "-t", "image/png", picture],
            env=self.desktop.env, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.program.wait_for_row(lambda kind: kind == "image", "a picture", "contentTypeRaw")
        owner.kill()
        owner.wait(10)
        self.wait_for_clipboard(data, "image/png")
        self.assertEqual(1, len(self.program.rows()))

    def test_what_was_kept_can_be_pasted(self):
        with Mousepad(self.desktop, self.display) as target:
            copy_by_xclip(self.desktop, b"from a program that ends")
            self.program.wait_for_text("from a program that ends")
            self.end_owner()
            target.focus()
            self.display.press("ctrl+v")
            self.assertEqual("from a program that ends", target.text_after_paste())

    def test_two_of_us_on_one_desktop_come_to_rest(self):
        """Each of them keeps what the other one owned, and neither begins an exchange."""
        other = Program(self.desktop, self.program.path, data=self.desktop.path("other"))
        other.env["DBUS_SESSION_BUS_ADDRESS"] = self.desktop.start_another_bus()
        self.addCleanup(other.end)
        other.start()
        copy_by_xclip(self.desktop, b"for both")
        for each in (self.program, other):
            each.wait_for_text("for both")
        self.end_owner()
        self.wait_for_clipboard(b"for both")
        self.program.kill()
        # It may have been the keeper, and then the other one takes over.
        self.wait_for_clipboard(b"for both")
        for each in (self.program, other):
            # A copy that comes again replaces its entry, in two steps.
            wait_until(lambda: each.texts() == ["for both"], lambda: f"one entry; {each.texts()}")
            captured = each.output().count("New clipboard item")
            self.assertLessEqual(captured, 3, "they copy from each other")


if __name__ == "__main__":
    main()
