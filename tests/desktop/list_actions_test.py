#!/usr/bin/python3
"""Entries are deleted, marked and copied in the list, by keys, by the mouse and by the menu."""
from case import main
from clients import read_by_xclip
from list_case import ListCase, text_entry
from waiting import wait_until

RIGHT_BUTTON = 3
ENTRY_FROM_EDGE = 19  # To the middle of the first or last entry of a menu without a shadow.


class ListActionsTest(ListCase):
    texts = ["one", "two", "three", "four", "five", "six", "seven", "eight", "nine", "ten",
             "eleven", "twelve"]

    def entries(self):
        return [text_entry(text) for text in self.texts]

    def without(self, *texts):
        return [text for text in self.texts if text not in texts]

    # Deleting

    def test_delete_removes_the_selected_entry_and_selects_the_next(self):
        texts = list(self.texts)
        for key, row in (("Delete", 2), ("BackSpace", 0)):
            with self.subTest(key=key):
                panel = self.open_list_at(row)
                self.display.press(key)
                del texts[row]
                self.wait_for_texts(texts)
                self.settle()
                self.assertEqual(row, panel.selected_row())
                self.assertEqual(texts[row], self.paste())

    def test_delete_in_the_search_field_is_for_the_letters(self):
        self.open_list()
        self.display.type("tw")
        self.display.press("Delete")
        self.display.press("BackSpace")
        self.settle()
        self.assertEqual(self.texts, self.program.texts())

    def test_deleting_the_last_entry_selects_the_new_last_one(self):
        self.open_list_at(0)
        self.display.press("End")
        self.display.press("Delete")
        self.wait_for_texts(self.without("twelve"))
        self.settle()
        self.assertEqual("eleven", self.paste())

    def test_ten_quick_presses_delete_no_other_entry_than_each_time_the_selected_one(self):
        panel = self.open_list_at(3)
        self.display.press_at_once(["Delete"] * 10)
        wait_until(lambda: len(self.program.texts()) < len(self.texts), "an entry to be deleted")
        self.settle()
        left = self.program.texts()
        count = len(self.texts) - len(left)
        self.assertEqual(self.texts[:3] + self.texts[3 + count:], left)
        self.assert_list_is_stored_list(panel)
        self.assertEqual(left[3], self.paste())

    def test_delete_under_a_search_deletes_a_match(self):
        self.open_list()
        self.display.type("t")  # Of two, three, eight, ten and twelve.
        self.display.press("Down")
        self.display.press("Down")
        self.focus_list_by_tab()
        self.display.press("Delete")
        self.wait_for_texts(self.without("three"))
        self.settle()
        self.assertEqual("eight", self.paste())

    def test_all_can_be_deleted_one_after_the_other(self):
        self.open_list_at(0)
        for count in range(1, len(self.texts) + 1):
            self.display.press("Delete")
            self.wait_for_texts(self.texts[count:])
            self.settle()
        mark = self.program.mark()
        self.display.press("Delete")
        self.display.press("Return")
        self.settle()
        self.assertIsNone(self.program.find_line("Item copied to clipboard", since=mark))
        self.assert_alive()

    # Favourites

    def test_a_click_on_the_star_marks_and_unmarks(self):
        panel = self.open_list()
        unmarked = panel.star_picture(4)
        panel.click_star(2)
        self.wait_for_favorites(["three"])
        self.settle()
        self.assertIsNone(panel.selected_row())
        self.assertNotEqual(unmarked, panel.star_picture(2))
        panel.click_star(2)
        self.wait_for_favorites([])

    def test_what_was_marked_is_found_under_favourites(self):
        self.open_favorites()
        self.display.press("Down")
        self.display.press("Down")
        self.assertEqual("five", self.paste())

    def test_what_is_unmarked_under_favourites_leaves_the_list(self):
        self.open_favorites().click_star(0)
        self.wait_for_favorites(["five"])
        self.settle()
        self.assertEqual("five", self.paste())

    # The menu

    def test_a_right_click_selects_its_row_and_opens_its_menu(self):
        panel = self.open_list_at(0)
        self.open_menu_by_click(3)
        self.settle()
        self.assertEqual(3, panel.selected_row())
        self.display.press("Escape")
        self.wait_until_menu_closed()
        self.settle()
        self.assertIsNotNone(self.history_window())

    def test_delete_is_chosen_from_the_menu_by_the_mouse(self):
        self.open_list()
        menu = self.open_menu_by_click(0)
        x, y, width, height = self.display.place(menu)
        self.display.click(x + width // 2, y + height - ENTRY_FROM_EDGE)
        self.wait_for_texts(self.without("one"))
        self.wait_until_menu_closed()
        self.settle()
        self.assertIsNotNone(self.history_window())

    def test_paste_is_chosen_from_the_menu_by_the_mouse(self):
        self.open_list()
        menu = self.open_menu_by_click(3)
        x, y, width, _ = self.display.place(menu)
        mark = self.program.mark()
        self.display.click(x + width // 2, y + ENTRY_FROM_EDGE)
        self.assertEqual("four", self.pasted(mark))

    def test_delete_is_chosen_from_the_menu_by_keys(self):
        self.open_list_at(1)
        self.open_menu_by_key("shift+F10")
        self.display.press("Up")
        self.display.press("Return")
        self.wait_for_texts(self.without("two"))

    def test_favourite_is_chosen_from_the_menu_by_keys(self):
        self.open_list_at(1)
        self.open_menu_by_key("Menu")
        self.display.press("Down")
        self.display.press("Down")
        self.display.press("Return")
        self.wait_for_favorites(["two"])
        self.assertIsNotNone(self.history_window())

    def test_copy_is_chosen_from_the_menu_and_the_window_stays(self):
        self.open_list_at(4)
        self.open_menu_by_key("Menu")
        self.display.press("Down")
        self.display.press("Return")
        wait_until(lambda: read_by_xclip(self.desktop) == b"five", "five on the clipboard")
        self.settle()
        self.assertIsNotNone(self.history_window())
        # The program's own copy is no new entry.
        self.assertEqual(self.texts, self.program.texts())

    def test_the_menu_opens_from_the_search_field_too(self):
        self.open_list()
        self.display.type("t")
        self.display.press("Down")
        for chord, text in (("Menu", "two"), ("shift+F10", "three")):
            with self.subTest(chord=chord):
                self.open_menu_by_key(chord)
                self.display.press("Up")
                self.display.press("Return")
                self.wait_until_menu_closed()
                wait_until(lambda: text not in self.program.texts(), f"{text} to go")
                self.settle()
                self.display.press("Down")

    def test_an_entry_of_the_menu_beyond_the_window_leaves_the_window_open(self):
        panel = self.open_list()
        texts = list(self.texts)
        for _ in range(5):
            menu = self.open_menu_by_click(3)
            x, y, width, height = self.display.place(menu)
            entry = y + height - ENTRY_FROM_EDGE
            self.assertGreater(entry, panel.y + panel.height)
            self.display.click(x + width // 2, entry)
            del texts[3]
            self.wait_for_texts(texts)
            self.wait_until_menu_closed()
            self.assert_window_stays()

    # Letters

    def test_letters_typed_in_the_list_go_on_in_the_search(self):
        panel = self.open_list()
        self.display.type("t")  # Of two, three, eight, ten and twelve.
        panel.click_row(0)
        panel.wait_until_selected(0)
        self.display.type("hr")
        self.settle()
        self.assertEqual("three", self.paste())

    def test_a_capital_after_a_click_begins_a_search(self):
        panel = self.open_list()
        panel.click_row(2)
        panel.wait_until_selected(2)
        self.display.press("shift+s")
        self.display.type("ev")
        self.settle()
        self.assertEqual("seven", self.paste())

    # Steps

    def open_favorites(self):
        """Of the rows that are seen whole, two are marked."""
        panel = self.open_list()
        panel.click_star(2)
        self.wait_for_favorites(["three"])
        panel.click_star(4)
        self.wait_for_favorites(["three", "five"])
        panel.click_pill(5)
        self.settle()
        return panel

    def open_menu_by_click(self, row):
        self.panel.click_row(row, RIGHT_BUTTON)
        return self.wait_for_menu()

    def open_menu_by_key(self, chord):
        self.display.press(chord)
        return self.wait_for_menu()

    def focus_list_by_tab(self):
        """From the search field, past what else takes the focus."""
        self.display.press("shift+Tab")

    def assert_list_is_stored_list(self, panel):
        """The rows look as they do when the list is made anew."""
        self.settle()
        shown = [panel.row_picture(row) for row in range(panel.row_count())]
        selected = panel.selected_row()
        self.close_list()
        panel = self.open_list_at(selected)
        self.settle()
        for row, picture in enumerate(shown):
            self.assertTrue(picture == panel.row_picture(row), f"row {row} is another")


class OnlyEntryTest(ListCase):
    def entries(self):
        return [text_entry("the only one")]

    def test_deleting_the_only_entry_leaves_an_empty_list(self):
        self.open_list_at(0)
        self.display.press("Delete")
        self.wait_for_texts([])
        self.settle()
        self.display.press("Return")
        self.display.press("Delete")
        self.copy("another one")
        self.settle()
        self.assertEqual("another one", self.paste())


if __name__ == "__main__":
    main()
