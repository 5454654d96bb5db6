#!/usr/bin/python3
"""What is done to a row of the list by mouse and keys: its menu, and deleting it."""
import contextlib
import json

from case import DesktopTest, main
from screen_watch import Area, ScreenWatch
from waiting import wait_until

ROW_TOP = 100  # Of the first row, below the upper edge of the window.
ROW_HEIGHT = 72


class RowMenuTest(DesktopTest):
    texts = ("first", "second", "third", "fourth")

    def setUp(self):
        super().setUp()
        self.program.start()
        for text in self.texts:
            self.copy(text)
        self.window = self.open_window()

    def middle_of_row(self, row):
        x, y, width, _ = self.display.place(self.window)
        return x + width // 2, y + ROW_TOP + row * ROW_HEIGHT + ROW_HEIGHT // 2

    def wait_for_menu(self):
        return wait_until(self.open_menus, "a menu")[0]

    def wait_until_menu_closed(self):
        wait_until(lambda: not self.open_menus(), "the menu to close")

    def click(self, row):
        """Returns once the click has had its effect: the window manager hands it on, and a key that
        follows at once would overtake it."""
        self.display.click(*self.middle_of_row(row))
        self.wait_until_at_rest()

    def right_click(self, row):
        self.display.click(*self.middle_of_row(row), button=3)
        return self.wait_for_menu()

    def wait_for_texts(self, *texts):
        wait_until(lambda: tuple(self.program.texts()) == texts,
                   lambda: f"{texts} to be left of {self.program.texts()}")

    def wait_until_at_rest(self):
        """A row that is on its way out takes the next key as little as a person's does."""
        with contextlib.closing(ScreenWatch(self.desktop.env["DISPLAY"])) as watch:
            watch.settled_picture(Area(*self.display.place(self.window)))

    def assert_window_stays(self):
        self.assertIsNotNone(self.history_window())
        self.display.wait_until_active(self.window)

    def test_the_menu_opens_and_closes_without_the_window(self):
        self.right_click(1)
        self.assert_window_stays()
        self.display.press("Escape")
        self.wait_until_menu_closed()
        self.assert_window_stays()

    def tags_of(self, text):
        rows = dict(self.program.rows("stringValue, tagsJSON"))
        return json.loads(rows.get(text) or "[]")

    def test_a_new_tag_is_made_and_taken_away_again_by_keys_alone(self):
        self.right_click(1)
        self.display.type("n")  # The entry that begins with it.
        self.display.press("Return")
        self.wait_until_menu_closed()
        self.wait_until_at_rest()
        self.assert_window_stays()
        self.display.type("travel")
        self.wait_until_at_rest()
        self.display.press("Return")
        wait_until(lambda: self.tags_of("third") == ["travel"], "the new tag")
        self.assert_window_stays()

        self.wait_until_at_rest()
        self.right_click(1)
        self.display.type("f")
        self.display.press("Down")  # From the favourite to the chips.
        self.display.press("space")
        wait_until(lambda: self.tags_of("third") == [], "the tag to go")
        self.assertTrue(self.open_menus())
        self.assert_window_stays()

    def test_a_press_outside_closes_menu_and_window(self):
        self.right_click(1)
        self.display.click(5, 5)
        self.wait_until_menu_closed()
        self.wait_until_closed()

    def test_a_press_on_another_row_closes_the_menu_alone(self):
        self.right_click(2)
        self.display.click(*self.middle_of_row(0))
        self.wait_until_menu_closed()
        self.assert_window_stays()

    def test_keys_open_the_menu(self):
        self.click(1)
        for keys in ("Menu", "shift+F10"):
            self.display.press(keys)
            self.wait_for_menu()
            self.assertEqual(1, len(self.open_menus()))
            self.display.press("Escape")
            self.wait_until_menu_closed()
            self.assert_window_stays()

    def test_delete_works_again_and_again(self):
        self.click(1)
        self.display.press("Delete")
        self.wait_for_texts("fourth", "second", "first")
        self.wait_until_at_rest()
        self.display.press("BackSpace")
        self.wait_for_texts("fourth", "first")
        self.wait_until_at_rest()
        self.display.press("Delete")
        self.wait_for_texts("fourth")
        self.assert_window_stays()


if __name__ == "__main__":
    main()
