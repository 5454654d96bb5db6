#!/usr/bin/python3
"""The menu of the filter bar, which is a window of its own, beside the one that closes as soon as
the person turns to something else."""
from case import main
from history_panel import PILL_MIDDLE
from list_case import ListCase, tag_settings, text_entry
from waiting import Late, wait_until

PILLS = 10


class FilterBarTest(ListCase):
    settings = tag_settings("a", "b", "c", "d", "e", "f")

    def setUp(self):
        super().setUp()
        self.open_list()

    def entries(self):
        return [text_entry("an entry")]

    def open_menu(self):
        self.panel.click_pill(-1)
        self.wait_for_menu()

    def assert_menu_does_not_open_again(self):
        with self.assertRaises(Late, msg="the menu has opened again"):
            wait_until(self.open_menus, "the menu to open again", seconds=1.0)

    def test_the_window_stays_while_the_menu_is_open(self):
        self.open_menu()
        self.assert_window_stays()
        self.assertTrue(self.open_menus())

    def test_all_of_it_goes_by_keys(self):
        self.display.press("Tab")
        for _ in range(PILLS):
            self.display.press("Right")
        self.display.press("space")
        self.wait_for_menu()
        self.display.press("Return")
        self.wait_until_menu_closed()
        self.assert_window_stays()

    def test_a_second_click_on_the_pill_closes_the_menu(self):
        x, y = self.panel.pills()[-1], self.panel.y + PILL_MIDDLE
        self.open_menu()
        # Left of the menu, still on the pill. People hold the button down for a while.
        self.display.move_pointer(x - 10, y)
        self.display.press_button()
        self.wait_until_menu_closed()
        self.display.let_go_of_button()
        self.assert_menu_does_not_open_again()
        self.assert_window_stays()

    def test_a_click_elsewhere_in_the_window_closes_the_menu_alone(self):
        self.open_menu()
        self.display.click(self.panel.x + 200, self.panel.y + 400)
        self.wait_until_menu_closed()
        self.assert_window_stays()

    def test_a_click_outside_closes_both(self):
        self.open_menu()
        self.display.click(5, 5)
        self.wait_until_menu_closed()
        self.wait_until_closed()


if __name__ == "__main__":
    main()
