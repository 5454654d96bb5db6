#!/usr/bin/python3
"""The pills narrow the list: kinds, favourites, and tags that are kept from start to start."""
from case import main
from list_case import ListCase, tag_settings, text_entry

BASE_PILLS = 6
OVERFLOW = -1
ENTRY_FROM_EDGE = 19  # To the middle of the first entry of a menu without a shadow.


class KindsTest(ListCase):
    def entries(self):
        return [text_entry("a text"), text_entry("https://example.org/", kind="url"),
                text_entry("notes.odt", kind="file"), text_entry("a marked text", is_favorite=True),
                text_entry("https://example.net/marked", kind="url", is_favorite=True)]

    def test_each_pill_shows_its_kind(self):
        for pill, first in ((0, "a text"), (1, "a text"), (4, "https://example.org/"),
                            (5, "a marked text")):
            with self.subTest(pill=pill):
                panel = self.open_list()
                panel.click_pill(pill)
                self.settle()
                self.assertTrue(panel.is_pill_selected(pill))
                self.assertEqual(first, self.paste())

    def test_a_pill_without_entries_shows_an_empty_list_and_all_brings_them_back(self):
        panel = self.open_list()
        whole = panel.list_picture()
        panel.click_pill(2)
        self.settle()
        self.assertFalse(whole == panel.list_picture(), "texts are listed as pictures")
        panel.click_pill(0)
        self.settle()
        self.assertTrue(whole == panel.list_picture(), "not all is listed")

    def test_the_search_and_the_pill_narrow_together(self):
        panel = self.open_list()
        panel.click_pill(5)
        self.display.type("example")
        self.settle()
        self.assertEqual("https://example.net/marked", self.paste())

    def test_the_filter_ends_with_the_window(self):
        panel = self.open_list()
        panel.click_pill(4)
        self.close_list()
        panel = self.open_list()
        self.assertTrue(panel.is_pill_selected(0))
        self.assertEqual("a text", self.paste())


class TagFilterTest(ListCase):
    tags = ("Work", "Home", "Garden", "Travel", "购物")
    settings = tag_settings(*tags)

    def entries(self):
        return [text_entry("of no tag"), text_entry("of home", "Home"),
                text_entry("of home and work", "Home", "Work"), text_entry("in lower case", "work"),
                text_entry("of travel", "Travel"), text_entry("of shopping", "购物")]

    def test_three_tags_have_pills_and_one_pill_stands_for_the_others(self):
        self.assertEqual(BASE_PILLS + 3 + 1, len(self.open_list().pills()))

    def test_a_pill_shows_the_entries_with_exactly_its_tag(self):
        panel = self.open_list()
        panel.click_pill(BASE_PILLS)
        self.settle()
        self.assertTrue(panel.is_pill_selected(BASE_PILLS))
        self.assertFalse(panel.is_pill_selected(0))
        self.display.press("Down")
        self.display.press("Down")  # There is no second one.
        self.assertEqual("of home and work", self.paste())

    def test_a_hidden_tag_is_chosen_by_keys(self):
        panel = self.open_list()
        panel.click_pill(OVERFLOW)
        self.wait_for_menu()
        self.display.press("Down")
        self.display.press("Down")
        self.display.press("Return")
        self.wait_until_menu_closed()
        self.settle()
        self.assertFalse(panel.is_pill_selected(OVERFLOW))
        self.assertFalse(panel.is_pill_selected(0))
        self.assertEqual("of shopping", self.paste())

    def test_a_hidden_tag_is_chosen_by_the_mouse(self):
        panel = self.open_list()
        panel.click_pill(OVERFLOW)
        x, y, width, _ = self.display.place(self.wait_for_menu())
        self.display.click(x + width // 2, y + ENTRY_FROM_EDGE)
        self.wait_until_menu_closed()
        self.settle()
        self.assertEqual("of travel", self.paste())

    def test_escape_closes_the_menu_of_hidden_tags_alone(self):
        panel = self.open_list()
        whole = panel.list_picture()
        panel.click_pill(OVERFLOW)
        self.wait_for_menu()
        self.display.press("Escape")
        self.wait_until_menu_closed()
        self.settle()
        self.assertTrue(whole == panel.list_picture(), "not all is listed")

    def test_tags_and_tagged_entries_are_there_after_a_restart(self):
        panel = self.open_list()
        before = panel.picture()
        self.close_list()
        self.program.end()
        self.program.start()
        panel = self.open_list()
        self.assertEqual(BASE_PILLS + 3 + 1, len(panel.pills()))
        panel.click_pill(BASE_PILLS + 1)
        self.settle()
        self.assertFalse(before == panel.picture(), "nothing was narrowed")
        self.assertEqual("of home", self.paste())


class FewTagsTest(ListCase):
    settings = tag_settings("Work", "Home")

    def entries(self):
        return [text_entry("of no tag"), text_entry("of home", "Home")]

    def test_few_tags_have_a_pill_each(self):
        self.assertEqual(BASE_PILLS + 2, len(self.open_list().pills()))


class NoTagsTest(ListCase):
    def entries(self):
        return [text_entry("of a tag that nobody knows", "Forgotten")]

    def test_without_tags_there_are_no_pills_for_them(self):
        self.assertEqual(BASE_PILLS, len(self.open_list().pills()))


if __name__ == "__main__":
    main()
