#!/usr/bin/python3
"""What is copied in a word processor keeps all of its forms."""
from case import DesktopTest, main
from clients import read_by_xclip
from waiting import retry_until, wait_until
from word_processor import Writer

DOCUMENT = "<p>Plain and <b>bold</b> words, <i>Grüße</i> 你好</p><p>second paragraph</p>"
TEXT = "Plain and bold words, Grüße 你好\nsecond paragraph"
HTML = "text/html"
RTF = "text/rtf"


class WriterCopyTest(DesktopTest):
    def offered(self, target):
        return wait_until(lambda: read_by_xclip(self.desktop, target, seconds=20), target, 40)

    def test_styled_text(self):
        with Writer(self.desktop, self.display, DOCUMENT) as writer:
            # It makes each form when it is asked for it, and another one the next time. So what it
            # says first is compared with what it says first of the same text copied again.
            writer.select_and_copy()
            html, rtf = self.offered(HTML), self.offered(RTF)
            self.program.start()
            retry_until(lambda: self.display.press("ctrl+c"),
                        lambda: TEXT in self.program.texts(), "an entry", patience=5)
        entry = self.program.wait_for_entry(TEXT, "contentTypeRaw", "htmlRepresentation",
                                            "rtfRepresentation", "sourceAppBundleID")
        self.assertEqual("text", entry.contentTypeRaw)
        self.assertEqual("libreoffice-writer", entry.sourceAppBundleID)
        self.assertIn(b"<b>bold</b>", html)
        self.assertIn(rb"\b", rtf)
        self.assertEqual(html, entry.htmlRepresentation)
        self.assertEqual(rtf, entry.rtfRepresentation)


if __name__ == "__main__":
    main()
