#!/usr/bin/python3
"""Styled text keeps its styles in a word processor."""
from case import DesktopTest, main
from clients import read_by_xclip
from word_processor import Writer

PLAIN = "Plain and bold words, Grüße 你好"
HTML = "Plain and <b>bold</b> words, Grüße 你好".encode()
RTF = rb"{\rtf1\ansi Plain and {\b bold} words, Gr\'fc\'dfe \u20320?\u22909?}"


class PasteWriterTest(DesktopTest):
    def paste(self, forms):
        """Returns what Writer has then, as it puts it on the clipboard itself."""
        with Writer(self.desktop, self.display, "<p>what was there</p>") as writer:
            writer.select_and_copy()  # Now it takes keys, and what was there will be replaced.
            self.program.start()
            self.owner().own({"UTF8_STRING": PLAIN.encode(), **forms})
            self.program.wait_for_text(PLAIN)
            mark = self.choose("")
            self.program.wait_for_line("Simulated Cmd+V paste completed", since=mark)
            self.wait_until_closed()
            writer.select_and_copy()
            return read_by_xclip(self.desktop, "text/html").decode()

    def assert_is_bold(self, html):
        self.assertIn("Plain and <b>bold</b> words, Grüße", " ".join(html.split()))

    def test_styles_of_a_page(self):
        self.assert_is_bold(self.paste({"text/html": HTML}))

    def test_styles_of_a_document(self):
        self.assert_is_bold(self.paste({"text/rtf": RTF}))


if __name__ == "__main__":
    main()
