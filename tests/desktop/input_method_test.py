#!/usr/bin/python3
"""What no single key writes is written here as everywhere else: Chinese with an input method,
accents with dead keys."""
from case import DesktopTest, main
from clients import read_by_xclip
from history_panel import HistoryPanel
from input_method import Pinyin
from waiting import wait_until

CHINESE = "你好世界"
LATER = "copied later"


class WritingCase(DesktopTest):
    def open_with_focus_in_list(self):
        panel = HistoryPanel(self.display, self.open_window())
        panel.click_row(0)
        panel.wait_until_selected(0)

    def paste_what_is_found(self):
        before = self.display.selection_owner()
        self.display.press("Return")
        wait_until(lambda: self.display.selection_owner() not in (0, before), "the paste")
        return read_by_xclip(self.desktop).decode()


class PinyinCase(WritingCase):
    def setUp(self):
        super().setUp()
        self.pinyin = Pinyin(self.desktop)
        self.pinyin.__enter__()
        self.addCleanup(self.pinyin.__exit__)
        self.program.env.update(self.pinyin.env, HOME=self.program.env["HOME"])
        self.program.start()
        self.copy(CHINESE)
        self.copy(LATER)

    def wait_for_candidates(self):
        wait_until(lambda: self.pinyin.candidates(self.display), "the candidates")

    def compose(self):
        self.display.type("nihao")
        self.wait_for_candidates()


class InputMethodTest(PinyinCase):
    def setUp(self):
        super().setUp()
        self.window = self.open_window()
        self.pinyin.wait_until_active()

    def assert_stays_open(self):
        self.assertTrue(self.display.is_active(self.window))

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


class FirstLettersTest(PinyinCase):
    def setUp(self):
        super().setUp()
        self.pinyin.read_dictionary(self.display)

    def test_what_is_typed_right_behind_the_hot_key_is_composed(self):
        # The program introduces itself when it has been quiet for a moment after its start.
        self.pinyin.wait_until_known()
        for _ in range(5):
            self.strike(*"nihao")
            self.wait_for_history_window()
            self.wait_for_candidates()
            self.display.press("space")
            self.assertEqual(CHINESE, self.paste_what_is_found())
            self.wait_until_closed()
            self.copy_after_paste(LATER)

    def test_what_is_typed_in_the_list_is_composed_in_the_search(self):
        self.open_with_focus_in_list()
        self.pinyin.wait_until_known()
        self.compose()
        self.display.press("space")
        self.assertEqual(CHINESE, self.paste_what_is_found())


class DeadKeysTest(WritingCase):
    def test_a_dead_key_in_the_list_puts_its_accent_on_the_next_letter(self):
        self.desktop.run("setxkbmap", "us", "intl")
        self.addCleanup(self.desktop.run, "setxkbmap", "us")
        self.program.start()
        self.copy("café")
        self.copy(LATER)
        self.open_with_focus_in_list()
        self.display.press("apostrophe")
        self.display.press("e")
        self.assertEqual("café", self.paste_what_is_found())


if __name__ == "__main__":
    main()
