#!/usr/bin/python3
"""A text that is copied in programs that people use becomes an entry of the history."""
from case import DesktopTest, main
from clients import FeatherPad, Mousepad, XTerm, copy_by_xclip


class CaptureTest(DesktopTest):
    def setUp(self):
        super().setUp()
        self.program.start()

    def test_text_from_the_command_line(self):
        copy_by_xclip(self.desktop, "Grüße, 你好\nsecond line".encode())
        entry = self.program.wait_for_entry("Grüße, 你好\nsecond line", "contentTypeRaw",
                                            "htmlRepresentation")
        self.assertEqual("text", entry.contentTypeRaw)
        self.assertIsNone(entry.htmlRepresentation)

    def check_source(self, client, text, source):
        with client:
            client.select_and_copy()
            entry = self.program.wait_for_entry(text, "contentTypeRaw", "sourceAppBundleID")
        self.assertEqual("text", entry.contentTypeRaw)
        self.assertEqual(source, entry.sourceAppBundleID)

    def test_text_from_a_terminal(self):
        self.check_source(XTerm(self.desktop, self.display, "Grüße, 你好 from xterm\nmore\n"),
                          "Grüße, 你好 from xterm", "debian-xterm")

    def test_text_from_a_gtk_editor(self):
        self.check_source(Mousepad(self.desktop, self.display, "Grüße, 你好\nfrom mousepad\n"),
                          "Grüße, 你好\nfrom mousepad", "org.xfce.mousepad")

    def test_text_from_a_qt_editor(self):
        self.check_source(FeatherPad(self.desktop, self.display, "Grüße, 你好\nfrom featherpad\n"),
                          "Grüße, 你好\nfrom featherpad", "featherpad")

    def test_a_link(self):
        copy_by_xclip(self.desktop, b"  https://www.debian.org/  ")
        entry = self.program.wait_for_entry("https://www.debian.org/", "contentTypeRaw")
        self.assertEqual("url", entry.contentTypeRaw)

    def test_only_the_beginning_of_a_text_is_printed(self):
        text = "".join(f"{number:02}äöü " for number in range(20))
        self.copy(text.strip())
        self.program.wait_for_line(f"Detected: Text/URL - '{text[:50]}...' remote=false")
        self.assertNotIn(text[50:56], self.program.output())

    def test_the_same_text_again_is_one_entry(self):
        self.copy("first")
        self.copy("second")
        mark = self.program.mark()
        copy_by_xclip(self.desktop, b"first")
        self.program.wait_for_line("New clipboard item", since=mark)
        self.program.wait_for_row(lambda text: text == "first", "the text on top")
        self.copy("third")
        self.assertEqual(["third", "first", "second"], self.program.texts())

    def test_what_is_there_at_the_start_is_not_taken(self):
        self.program.end()
        copy_by_xclip(self.desktop, b"copied before")
        self.program.start()
        self.copy("copied after")
        self.assertEqual(["copied after"], self.program.texts())


if __name__ == "__main__":
    main()
