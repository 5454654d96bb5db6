#!/usr/bin/python3
"""Chinese is written in the search field as everywhere else: with an input method."""
from case import DesktopTest, main
from clients import read_by_xclip
from input_method import Pinyin
from waiting import wait_until

CHINESE = "你好世界"
LATER = "copied later"


class InputMethodTest(DesktopTest):
    def setUp(self):
        super().setUp()
        pinyin = Pinyin(self.desktop)
        pinyin.__enter__()
        self.addCleanup(pinyin.__exit__)
        self.program.env.update(pinyin.env, HOME=self.program.env["HOME"])
        self.program.start()
        self.copy(CHINESE)
        self.copy(LATER)
        self.window = self.open_window()
        pinyin.wait_until_active()

    def assert_stays_open(self):
        self.assertTrue(self.display.is_active(self.window))

    def paste_what_is_found(self):
        mark = self.program.mark()
        self.display.press("Return")
        self.program.wait_for_line("Item copied to clipboard", since=mark)
        return read_by_xclip(self.desktop).decode()

    def compose(self):
        self.display.type("nihao")
        # The list of candidates is a window of the input method.
        wait_until(lambda: self.display.find_window(window_class="fcitx"), "the candidates")

    def test_what_is_composed_is_searched(self):
        self.compose()
        self.display.press("space")
        self.assertEqual(CHINESE, self.paste_what_is_found())

    def test_escape_ends_the_composition_and_not_the_window(self):
        self.compose()
        self.display.press("Escape")
        self.assert_stays_open()
        self.assertEqual(LATER, self.paste_what_is_found())  # Nothing is searched.

    def test_return_ends_the_composition_and_pastes_nothing(self):
        mark = self.program.mark()
        self.compose()
        self.display.press("Return")
        self.display.press("Return")  # Nothing is called "nihao".
        self.assert_stays_open()
        self.assertIsNone(self.program.find_line("Item copied to clipboard", since=mark))


if __name__ == "__main__":
    main()
