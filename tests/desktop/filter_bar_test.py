#!/usr/bin/python3
"""The menu of the filter bar, which is a window of its own, beside the one that closes as soon as
the person turns to something else."""
from case import DesktopTest, main
from history_panel import HistoryPanel, PILL_MIDDLE
from waiting import Late, wait_until

TAGS = ("a", "b", "c", "d", "e", "f")
PILLS = 10


class FilterBarTest(DesktopTest):
    def setUp(self):
        super().setUp()
        self.program.write_settings({})
        with open(self.program.settings_path, "a", encoding="utf-8") as file:
            file.write(f"custom.tags={', '.join(TAGS)}\n")
        self.program.start()
        self.window = self.open_window()

    def last_pill(self):
        """A place within the pill that stands last."""
        panel = HistoryPanel(self.display, self.window)
        return wait_until(panel.pills, "the pills")[-1], panel.y + PILL_MIDDLE

    def open_menu(self):
        self.display.click(*self.last_pill())
        self.wait_for_menu()

    def assert_never(self, condition, what):
        with self.assertRaises(Late, msg=what):
            wait_until(condition, what, seconds=1.0)

    def assert_window_stays(self):
        self.assert_never(lambda: self.history_window() is None, "the window has closed")

    def test_the_window_stays_while_the_menu_is_open(self):
        self.open_menu()
        self.assert_window_stays()
        self.assertTrue(self.open_menus())

    def test_a_tag_is_chosen_by_keys(self):
        self.open_menu()
        self.display.press("Down")
        self.display.press("Return")
        self.wait_until_menu_closed()
        self.assert_window_stays()
        self.display.press("Escape")  # The search field has the focus again, and is empty.
        self.wait_until_closed()

    def test_all_of_it_goes_by_keys(self):
        self.display.press("Tab")
        for _ in range(PILLS):
            self.display.press("Right")
        self.display.press("space")
        self.wait_for_menu()
        self.display.press("Return")
        self.wait_until_menu_closed()
        self.assert_window_stays()

    def test_escape_closes_the_menu_alone(self):
        self.open_menu()
        self.display.press("Escape")
        self.wait_until_menu_closed()
        self.assert_window_stays()

    def test_a_second_click_on_the_pill_closes_the_menu(self):
        x, y = self.last_pill()
        self.display.click(x, y)
        self.wait_for_menu()
        # Left of the menu, still on the pill. People hold the button down for a while.
        self.display.move_pointer(x - 10, y)
        self.display.press_button()
        self.wait_until_menu_closed()
        self.display.let_go_of_button()
        self.assert_never(self.open_menus, "the menu has opened again")
        self.assert_window_stays()

    def test_a_click_elsewhere_in_the_window_closes_the_menu_alone(self):
        self.open_menu()
        place = self.display.place(self.window)
        self.display.click(place[0] + 200, place[1] + 400)
        self.wait_until_menu_closed()
        self.assert_window_stays()

    def test_a_click_outside_closes_both(self):
        self.open_menu()
        self.display.click(5, 5)
        self.wait_until_menu_closed()
        self.wait_until_closed()


if __name__ == "__main__":
    main()
