#!/usr/bin/python3
"""The menu of a row, which is a window of its own: how it opens and closes, and its tags."""
import json

from case import main
from list_case import ListCase, text_entry
from waiting import wait_until

RIGHT_BUTTON = 3


class RowMenuTest(ListCase):
    def setUp(self):
        super().setUp()
        self.open_list()

    def entries(self):
        return [text_entry(text) for text in ("first", "second", "third", "fourth")]

    def right_click(self, row):
        self.panel.click_row(row, RIGHT_BUTTON)
        return self.wait_for_menu()

    def tags_of(self, text):
        rows = dict(self.program.rows("stringValue, tagsJSON"))
        return json.loads(rows.get(text) or "[]")

    def test_the_menu_opens_and_closes_without_the_window(self):
        self.right_click(1)
        self.assert_window_stays()
        self.display.press("Escape")
        self.wait_until_menu_closed()
        self.assert_window_stays()

    def test_a_new_tag_is_made_and_taken_away_again_by_keys_alone(self):
        self.right_click(1)
        self.display.type("n")  # The entry that begins with it.
        self.display.press("Return")
        self.wait_until_menu_closed()
        self.assert_window_stays()
        self.display.type("travel")
        self.settle()
        self.display.press("Return")
        wait_until(lambda: self.tags_of("second") == ["travel"], "the new tag")
        self.assert_window_stays()

        self.right_click(1)
        self.display.type("f")
        self.display.press("Down")  # From the favourite to the chips.
        self.display.press("space")
        wait_until(lambda: self.tags_of("second") == [], "the tag to go")
        self.assertTrue(self.open_menus())
        self.assert_window_stays()

    def test_a_press_outside_closes_menu_and_window(self):
        self.right_click(1)
        self.display.click(5, 5)
        self.wait_until_menu_closed()
        self.wait_until_closed()

    def test_a_press_on_another_row_closes_the_menu_alone(self):
        self.right_click(2)
        self.panel.click_row(0)
        self.wait_until_menu_closed()
        self.assert_window_stays()

    def test_keys_open_the_menu(self):
        self.panel.click_row(1)
        self.panel.wait_until_selected(1)
        for keys in ("Menu", "shift+F10"):
            self.display.press(keys)
            self.wait_for_menu()
            self.assertEqual(1, len(self.open_menus()))
            self.display.press("Escape")
            self.wait_until_menu_closed()
            self.assert_window_stays()


if __name__ == "__main__":
    main()
