#!/usr/bin/python3
"""Styled text keeps the bytes in which it was offered, and is shown as a plain text."""
import codecs

from case import DesktopTest, main
from clients import Chromium, copy_by_xclip, read_by_xclip

HTML = "text/html"
RTF = "text/rtf"

STYLED_BODY = "<p>Plain and <b>bold</b> words, <i>Grüße</i> 你好</p>"
FIELD_BODY = """<textarea id="field" rows="9">Grüße, 你好\nfrom a field</textarea>
<script>document.getElementById("field").focus();</script>"""
LINK_BODY = """<a href="https://www.debian.org/releases/" style="display: block; height: 200px">
the releases</a>"""
PICTURE = '<img src="https://www.debian.org/logo.png" alt="">'

ENCODINGS = {
    "UTF-8": (b"", "utf-8"),
    "UTF-8 with a mark": (codecs.BOM_UTF8, "utf-8"),
    "little-endian UTF-16": (b"", "utf-16-le"),
    "little-endian UTF-16 with a mark": (codecs.BOM_UTF16_LE, "utf-16-le"),
    "big-endian UTF-16": (b"", "utf-16-be"),
    "big-endian UTF-16 with a mark": (codecs.BOM_UTF16_BE, "utf-16-be"),
}


class StyledCopyTest(DesktopTest):
    def setUp(self):
        super().setUp()
        self.program.start()

    def wait_for(self, text):
        entry = self.program.wait_for_entry(text, "contentTypeRaw", "htmlRepresentation",
                                            "rtfRepresentation")
        self.assertEqual("text", entry.contentTypeRaw)
        return entry

    def assert_no_text_in(self, data, target):
        mark = self.program.mark()
        copy_by_xclip(self.desktop, data, target)
        self.program.wait_for_line("Detected: Unknown type, ignoring", since=mark)
        self.copy("the next text")
        self.assertEqual(["the next text"], self.program.texts())

    # From a browser

    def test_a_part_of_a_page(self):
        with Chromium(self.desktop, self.display, STYLED_BODY) as browser:
            browser.select_and_copy()
            entry = self.wait_for("Plain and bold words, Grüße 你好")
            self.assertEqual(read_by_xclip(self.desktop, HTML), entry.htmlRepresentation)
        self.assertIn(b"bold</b>", entry.htmlRepresentation)

    def test_a_field_of_a_page(self):
        with Chromium(self.desktop, self.display, FIELD_BODY) as browser:
            browser.select_and_copy()
            entry = self.wait_for("Grüße, 你好\nfrom a field")
        self.assertIsNone(entry.htmlRepresentation)

    def test_the_address_of_a_link(self):
        with Chromium(self.desktop, self.display, LINK_BODY) as browser:
            browser.copy_from_menu(20, 100, "e")
            entry = self.program.wait_for_entry("https://www.debian.org/releases/",
                                                "contentTypeRaw", "htmlRepresentation")
        self.assertEqual("url", entry.contentTypeRaw)
        self.assertIsNone(entry.htmlRepresentation)

    # HTML without a plain text

    def test_html_in_any_encoding(self):
        for name, (mark, encoding) in ENCODINGS.items():
            with self.subTest(name):
                html = f"<p>{name}: <b>Grüße</b>, 你好 &amp; more</p><p>second line</p>"
                data = mark + html.encode(encoding)
                copy_by_xclip(self.desktop, data, HTML)
                entry = self.wait_for(f"{name}: Grüße, 你好 & more\nsecond line")
                self.assertEqual(data, entry.htmlRepresentation)

    def test_html_that_declares_its_encoding(self):
        data = '<meta charset="iso-8859-1"><p>Grüße aus Köln</p>'.encode("iso-8859-1")
        copy_by_xclip(self.desktop, data, HTML)
        self.assertEqual(data, self.wait_for("Grüße aus Köln").htmlRepresentation)

    def test_html_that_is_only_a_picture(self):
        self.assert_no_text_in(PICTURE.encode(), HTML)

    def test_html_in_utf_16_that_is_only_a_picture(self):
        self.assert_no_text_in(codecs.BOM_UTF16_LE + PICTURE.encode("utf-16-le"), HTML)

    def test_html_in_utf_16_beside_a_plain_text(self):
        data = codecs.BOM_UTF16_LE + "<b>styled Grüße</b>".encode("utf-16-le")
        self.owner().own({"UTF8_STRING": "plain Grüße".encode(), HTML: data})
        self.assertEqual(data, self.wait_for("plain Grüße").htmlRepresentation)

    # RTF without a plain text

    def test_rtf(self):
        data = rb"{\rtf1\ansi Plain and {\b bold}, Gr\'fc\'dfe \u20320?\u22909?\par second line}"
        copy_by_xclip(self.desktop, data, RTF)
        entry = self.wait_for("Plain and bold, Grüße 你好\nsecond line")
        self.assertEqual(data, entry.rtfRepresentation)
        self.assertIsNone(entry.htmlRepresentation)

    def test_rtf_beside_html_that_is_only_a_picture(self):
        rtf = rb"{\rtf1\ansi The {\i caption}}"
        self.owner().own({HTML: PICTURE.encode(), RTF: rtf})
        entry = self.wait_for("The caption")
        self.assertEqual(PICTURE.encode(), entry.htmlRepresentation)
        self.assertEqual(rtf, entry.rtfRepresentation)

    def test_rtf_without_any_text(self):
        self.assert_no_text_in(rb"{\rtf1\ansi{\fonttbl{\f0 Serif;}}\pard }", RTF)


if __name__ == "__main__":
    main()
