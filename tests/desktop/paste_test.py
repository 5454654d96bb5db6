#!/usr/bin/python3
"""The chosen entry lands in the window that the person came from."""
from case import main
from clients import Chromium, FeatherPad, Mousepad, XTerm, Xfce4Terminal, read_by_xclip
from paste_case import CHOSEN, LATER, PasteCase


class PasteTest(PasteCase):
    def test_into_a_gtk_editor(self):
        with Mousepad(self.desktop, self.display) as editor:
            self.assertEqual(CHOSEN, self.paste_into(editor))

    def test_into_a_qt_editor(self):
        with FeatherPad(self.desktop, self.display) as editor:
            self.assertEqual(CHOSEN, self.paste_into(editor))

    def test_into_a_browser(self):
        with Chromium(self.desktop, self.display) as browser:
            self.assertEqual(CHOSEN, self.paste_into(browser))

    def test_into_a_terminal(self):
        with XTerm(self.desktop, self.display) as terminal:
            self.assertEqual(CHOSEN, self.paste_into(terminal))

    def test_into_a_terminal_with_keys_of_its_own(self):
        with Xfce4Terminal(self.desktop, self.display) as terminal:
            self.assertEqual(CHOSEN, self.paste_into(terminal))

    def test_return_without_a_search_takes_the_newest(self):
        with Mousepad(self.desktop, self.display) as editor:
            mark = self.choose("")
            self.wait_for_paste(mark)
            self.assertEqual(LATER, editor.text_after_paste())

    def test_down_chooses_the_next_entry(self):
        with Mousepad(self.desktop, self.display) as editor:
            mark = self.program.mark()
            self.open_window()
            self.display.press("Down")
            self.display.press("Down")
            self.display.press("Return")
            self.wait_for_paste(mark)
            self.assertEqual(CHOSEN, editor.text_after_paste())

    def test_a_paste_is_no_new_copy(self):
        with Mousepad(self.desktop, self.display) as editor:
            self.assertEqual(CHOSEN, self.paste_into(editor))
        self.copy_after_paste("copied after the paste")
        self.assertEqual(["copied after the paste", LATER, CHOSEN], self.program.texts())

    def test_without_a_window_to_go_back_to_the_entry_is_on_the_clipboard(self):
        self.choose("quick")
        self.wait_until_closed()
        self.assertEqual(CHOSEN, read_by_xclip(self.desktop).decode())


if __name__ == "__main__":
    main()
