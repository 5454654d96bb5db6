#!/usr/bin/python3
"""The chosen entry lies on the clipboard in the forms in which it was copied, byte for byte, and in
no others."""
import os
import random

from case import DesktopTest, main
from clients import copy_by_xclip, read_by_xclip
from made_entries import MadeEntries
from pictures import noise_png
from waiting import wait_until

# What every owner of the clipboard offers about itself.
ABOUT_THE_OFFER = {"TARGETS", "TIMESTAMP", "MULTIPLE"}

TEXT_TARGETS = {"UTF8_STRING", "text/plain;charset=utf-8", "text/plain", "TEXT"}
RTF_TARGETS = {"text/rtf", "application/rtf"}

HTML = "<p>Plain and <b>bold</b> Grüße 你好</p>".encode()
RTF = rb"{\rtf1\ansi Plain and {\b bold} Gr\'fc\'dfe \u20320?\u22909?}"
PLAIN = "Plain and bold Grüße 你好"


class PasteFormsTest(DesktopTest):
    """No window is there to go back to, so that the entry stays where it was put."""

    def setUp(self):
        super().setUp()
        self.program.write_settings({"image.storage.format": "jpeg"})
        self.program.start()

    def make(self, *entries):
        """Starts again with these entries, the last of them the newest."""
        self.restart_with(lambda made: made.add(*entries))

    def restart_with(self, write):
        self.program.end()
        write(MadeEntries(self.program))
        self.program.start()

    def choose_newest(self):
        """Returns the targets that the clipboard has then."""
        copy_by_xclip(self.desktop, b"what lay there", "application/x-before")
        wait_until(lambda: read_by_xclip(self.desktop, "application/x-before") == b"what lay there",
                   "the copy that is to be replaced")
        before = self.display.selection_owner()
        self.choose("")
        self.wait_until_closed()
        wait_until(lambda: self.display.selection_owner() != before, "another owner")
        return set(read_by_xclip(self.desktop, "TARGETS").decode().split()) - ABOUT_THE_OFFER

    def assert_offered(self, expected):
        """Expected are {target: bytes}, and no other targets."""
        self.assertEqual(set(expected), self.choose_newest())
        for target, data in expected.items():
            with self.subTest(target=target):
                self.assertEqual(data, read_by_xclip(self.desktop, target))

    @staticmethod
    def forms(targets, data):
        return {target: data for target in targets}

    # Texts

    def test_a_text_that_every_program_can_read(self):
        self.make({"contentTypeRaw": "text", "stringValue": "first line\n\tsecond  line\n"})
        self.assert_offered(self.forms(TEXT_TARGETS | {"STRING"}, b"first line\n\tsecond  line\n"))

    def test_a_text_with_western_letters(self):
        self.copy("Grüße")
        self.assert_offered(self.forms(TEXT_TARGETS, "Grüße".encode())
                            | {"STRING": "Grüße".encode("latin-1")})

    def test_a_text_with_letters_of_all_the_world(self):
        self.copy("Grüße 你好 😀")
        self.assert_offered(self.forms(TEXT_TARGETS, "Grüße 你好 😀".encode()))

    def test_an_address(self):
        address = "https://www.debian.org/releases/?a=1&b=2#top"
        self.copy(address)
        self.assertEqual([("url",)], self.program.rows("contentTypeRaw"))
        self.assert_offered(self.forms(TEXT_TARGETS | {"STRING"}, address.encode())
                            | {"text/x-moz-url": f"{address}\n{address}".encode("utf-16-le")})

    def test_an_address_that_is_none(self):
        self.make({"contentTypeRaw": "url", "stringValue": "http://[nowhere at all"})
        self.assert_offered(self.forms(TEXT_TARGETS | {"STRING"}, b"http://[nowhere at all"))

    def test_styled_text(self):
        self.owner().own({"UTF8_STRING": PLAIN.encode(), "text/html": HTML, "text/rtf": RTF})
        self.program.wait_for_text(PLAIN)
        self.assert_offered(self.forms(TEXT_TARGETS, PLAIN.encode()) | {"text/html": HTML}
                            | self.forms(RTF_TARGETS, RTF))

    def test_styles_without_a_text(self):
        self.make({"contentTypeRaw": "text", "htmlRepresentation": HTML})
        self.assert_offered({"text/html": HTML})

    def test_an_entry_of_a_kind_that_nothing_is_written_for(self):
        self.make({"contentTypeRaw": "mixed", "stringValue": "a text", "htmlRepresentation": HTML})
        self.assert_offered({})
        self.assertEqual(b"", read_by_xclip(self.desktop))

    # Pictures

    def pixels(self, data, kind):
        return self.desktop.run("convert", f"{kind}:-", "-alpha", "off", "-depth", "8", "rgb:-",
                                input=data, stdin=None)

    def assert_picture_offered(self, target, data):
        """Offered are these bytes, and the same picture as PNG."""
        self.assertEqual({target, "image/png"}, self.choose_newest())
        self.assertEqual(data, read_by_xclip(self.desktop, target))
        self.assertEqual(self.pixels(data, target.removeprefix("image/")),
                         self.pixels(read_by_xclip(self.desktop, "image/png"), "png"))

    def noise(self):
        return noise_png(random.Random(self._testMethodName), 48, 32)

    def noise_as(self, kind):
        return self.desktop.run("convert", "png:-", f"{kind}:-", input=self.noise(), stdin=None)

    def test_a_copied_picture(self):
        copy_by_xclip(self.desktop, self.noise(), "image/png")
        name, = self.program.wait_for_row(lambda name: name is not None, "a picture",
                                          "imageFileName")
        self.assertTrue(name.endswith((".jpg", ".jpeg")), name)
        with open(os.path.join(self.program.images_path, name), "rb") as file:
            self.assert_picture_offered("image/jpeg", file.read())

    def test_a_picture_kept_as_tiff(self):
        data = self.noise_as("tiff")
        self.restart_with(lambda made: made.add_picture("kept.tiff", data))
        self.assert_picture_offered("image/tiff", data)

    def test_a_picture_kept_as_png(self):
        data = self.noise()
        self.restart_with(lambda made: made.add_picture("kept.png", data))
        self.assert_offered({"image/png": data})

    def test_a_picture_kept_in_a_format_that_nobody_here_knows(self):
        data = b"\0\0\0\x18ftypheic" + random.Random(1).randbytes(5000)
        self.restart_with(lambda made: made.add_picture("kept.heic", data))
        self.assertIn("image/tiff", self.choose_newest())
        self.assertEqual(data, read_by_xclip(self.desktop, "image/tiff"))
        self.assertEqual(b"", read_by_xclip(self.desktop, "image/png"))

    def test_a_picture_whose_file_is_gone(self):
        self.make({"contentTypeRaw": "image", "imageFileName": "gone.png"})
        self.assert_offered({})
        self.program.wait_for_line("Failed to restore image data from history item")

    # Files

    def test_a_file(self):
        path = os.path.join(self.program.data, "50% of Übersicht #1.txt")
        with open(path, "w", encoding="utf-8") as file:
            file.write("contents")
        address = ("file://" + path.replace("50% of Übersicht #1.txt",
                                            "50%25%20of%20%C3%9Cbersicht%20%231.txt")).encode()
        self.owner().own({"text/uri-list": address + b"\r\n"})
        self.program.wait_for_text("50% of Übersicht #1.txt")
        targets = self.choose_newest()
        self.assertLessEqual({"text/uri-list", "x-special/gnome-copied-files"}, targets)
        self.assertEqual(address + b"\r\n", read_by_xclip(self.desktop, "text/uri-list"))
        self.assertEqual(b"copy\n" + address,
                         read_by_xclip(self.desktop, "x-special/gnome-copied-files"))

    def test_a_file_that_is_gone(self):
        path = os.path.join(self.program.data, "gone.txt")
        self.make({"contentTypeRaw": "file", "stringValue": "gone.txt", "filePath": path})
        self.assertIn("text/uri-list", self.choose_newest())
        self.assertEqual(f"file://{path}\r\n".encode(),
                         read_by_xclip(self.desktop, "text/uri-list"))


if __name__ == "__main__":
    main()
