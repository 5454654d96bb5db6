#!/usr/bin/python3
"""What is copied in programs that people use becomes an entry of the history."""
import os

from case import DesktopTest, main
from clients import Chromium, FeatherPad, Mousepad, PCManFM, copy_by_xclip

STYLED_PAGE = "<!doctype html><title>page</title><p>Plain and <b>bold</b> words</p>"


class CaptureTest(DesktopTest):
    def setUp(self):
        super().setUp()
        self.program.start()

    def wait_for(self, text, columns="contentTypeRaw, htmlRepresentation"):
        return self.program.wait_for_row(lambda stored, *_: stored == text, repr(text),
                                         columns="stringValue, " + columns)

    def test_text_from_the_command_line(self):
        copy_by_xclip(self.desktop, "Grüße, 你好\nsecond line".encode())
        row = self.wait_for("Grüße, 你好\nsecond line")
        self.assertEqual("text", row[1])
        self.assertIsNone(row[2])

    def test_text_from_a_gtk_editor(self):
        with Mousepad(self.desktop, self.display, "written in mousepad\n") as editor:
            editor.select_and_copy()
            row = self.wait_for("written in mousepad", "sourceAppBundleID")
        self.assertIn("mousepad", row[1].lower())

    def test_text_from_a_qt_editor(self):
        with FeatherPad(self.desktop, self.display, "written in featherpad\n") as editor:
            editor.select_and_copy()
            row = self.wait_for("written in featherpad", "sourceAppBundleID")
        self.assertIn("featherpad", row[1].lower())

    def test_styled_text_from_a_browser(self):
        with Chromium(self.desktop, self.display, STYLED_PAGE) as browser:
            browser.select_and_copy()
            row = self.wait_for("Plain and bold words")
        self.assertEqual("text", row[1])
        self.assertIn(b"bold</b>", row[2])

    def test_styled_text_without_a_plain_form(self):
        copy_by_xclip(self.desktop, b"<p>only <i>styled</i></p>", "text/html")
        row = self.wait_for("only styled")
        self.assertEqual(b"<p>only <i>styled</i></p>", row[2])

    def test_a_link(self):
        copy_by_xclip(self.desktop, b"  https://www.debian.org/  ")
        self.assertEqual("url", self.wait_for("https://www.debian.org/")[1])

    def test_a_picture(self):
        picture = self.desktop.path("picture.png")
        self.desktop.run("convert", "-size", "64x48", "gradient:red-blue", picture)
        with open(picture, "rb") as file:
            copy_by_xclip(self.desktop, file.read(), "image/png")
        self.program.wait_for_line("Detected: Image remote=false")
        self.program.wait_for_row(lambda kind: kind == "image", "a picture", "contentTypeRaw")

    def test_a_file_from_a_file_manager(self):
        folder = self.desktop.path("folder")
        os.makedirs(folder, exist_ok=True)
        path = os.path.join(folder, "a report.txt")
        with open(path, "w", encoding="utf-8") as file:
            file.write("contents")
        with PCManFM(self.desktop, self.display, folder) as manager:
            manager.select_and_copy()
            row = self.wait_for("a report.txt", "contentTypeRaw, filePath, fileTypesJSON")
        self.assertEqual("file", row[1])
        self.assertEqual(path, row[2])
        self.assertEqual(b'["txt"]', bytes(row[3]))

    def test_the_address_of_a_file_that_is_gone_is_no_file(self):
        copy_by_xclip(self.desktop, b"file:///nowhere/at/all.txt\r\n", "text/uri-list")
        self.program.wait_for_line("Detected: ")
        self.assertIsNone(self.program.find_line("Detected: File(s)"))

    def test_the_same_text_again_is_one_entry(self):
        self.copy("first")
        self.copy("second")
        mark = self.program.mark()
        copy_by_xclip(self.desktop, b"first")
        self.program.wait_for_line("New clipboard item", since=mark)
        self.program.wait_for_row(lambda text: text == "first", "the text on top")
        self.copy("third")
        self.assertEqual(["third", "first", "second"], self.program.texts())

    def test_a_secret_is_neither_kept_nor_fetched(self):
        owner = self.owner()
        owner.own({"UTF8_STRING": b"correct horse", "x-kde-passwordManagerHint": b"secret"})
        self.copy("something harmless")
        self.assertEqual(["something harmless"], self.program.texts())
        self.assertNotIn("UTF8_STRING", owner.asked)

    def test_what_is_there_at_the_start_is_not_taken(self):
        self.program.end()
        copy_by_xclip(self.desktop, b"copied before")
        self.program.start()
        self.copy("copied after")
        self.assertEqual(["copied after"], self.program.texts())


if __name__ == "__main__":
    main()
