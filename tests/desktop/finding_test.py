#!/usr/bin/python3
"""An entry is found by typing and by keys, and what is found is what is pasted."""
from case import main
from clients import Mousepad
from list_case import ListCase, text_entry

WHEEL_DOWN = 5


class FindingTest(ListCase):
    texts = ["bread and cheese", "a ladder", "the lighthouse stands in the fog", "light rain",
             "the lighthouse keeper's tea", "butter", "three nails", "ropes", "a lantern", "chalk",
             "the last of the list"]

    def entries(self):
        return [text_entry(text) for text in self.texts]

    # Typing

    def test_return_pastes_the_first_match_into_the_editor(self):
        with Mousepad(self.desktop, self.display) as editor:
            self.open_list()
            self.display.type("lighth")
            mark = self.program.mark()
            self.display.press("Return")
            self.program.wait_for_line("Posted keyUp event", since=mark)
            self.assertEqual("the lighthouse stands in the fog", editor.text_after_paste())

    def test_down_goes_on_from_the_first_match(self):
        self.open_list()
        self.display.type("lighth")
        self.display.press("Down")
        self.display.press("Down")
        self.assertEqual("the lighthouse keeper's tea", self.paste())

    def test_each_letter_narrows_and_backspace_widens(self):
        panel = self.open_list()
        pictures = [panel.list_picture()]
        for letter in "ligh":
            self.display.press(letter)
            self.settle()
            pictures.append(panel.list_picture())
        for picture in pictures[-2::-1]:
            self.display.press("BackSpace")
            self.settle()
            self.assertTrue(picture == panel.list_picture(), "another list than before")

    def test_escape_shows_the_whole_list_again(self):
        panel = self.open_list()
        whole = panel.list_picture()
        self.display.type("lighth")
        self.settle()
        self.assertNotEqual(whole, panel.list_picture())
        self.display.press("Escape")
        self.settle()
        self.assertTrue(whole == panel.list_picture(), "not the whole list")

    def test_return_on_a_search_without_matches_does_nothing(self):
        mark = self.program.mark()
        self.open_list()
        self.display.type("zzz")
        self.display.press("Return")
        self.settle()
        self.assertIsNone(self.program.find_line("Item copied to clipboard", since=mark))
        self.assertIsNotNone(self.history_window())

    # Keys

    def test_down_and_up_move_the_selection_while_typing_goes_on(self):
        panel = self.open_list()
        self.assertIsNone(panel.selected_row())
        for key, row in (("Up", 0), ("Up", 0), ("Down", 1), ("Down", 2), ("Up", 1)):
            self.display.press(key)
            panel.wait_until_selected(row)
        self.assertEqual(self.texts[1], self.paste())

    def test_down_on_the_last_row_stays(self):
        self.open_list()
        for _ in range(len(self.texts) + 3):
            self.display.press("Down")
        self.assertEqual(self.texts[-1], self.paste())

    def test_page_down_shows_what_is_further_down_and_page_up_what_is_above(self):
        panel = self.open_list_at(0)
        self.settle()
        upper = panel.list_picture()
        self.display.press("Next")
        self.settle()
        self.assertNotEqual(upper, panel.list_picture())
        self.display.press("Prior")
        self.settle()
        self.assertTrue(upper == panel.list_picture(), "the list is not where it was")

    def test_end_and_home_go_to_the_last_and_the_first_entry(self):
        self.open_list_at(1)
        self.display.press("End")
        self.display.press("Home")
        self.assertEqual(self.texts[0], self.paste())
        self.open_list_at(3)  # Elsewhere, or the two clicks could be taken for one double click.
        self.display.press("End")
        self.assertEqual(self.texts[-1], self.paste())

    def test_a_double_click_pastes_its_row(self):
        panel = self.open_list()
        mark = self.program.mark()
        panel.click_row(3)
        panel.click_row(3)
        self.assertEqual(self.texts[3], self.pasted(mark))

    # Captures

    def test_a_copy_changes_nothing_under_the_eye_of_who_has_scrolled(self):
        panel = self.open_list_at(1)
        for _ in range(3):
            self.display.turn_wheel(WHEEL_DOWN)
        self.settle()
        before = panel.list_picture()
        for number in range(3):
            self.copy(f"copied meanwhile: {number}")
        self.settle()
        self.assertTrue(before == panel.list_picture(), "the list has moved")
        # The selected row has gone along with its entry.
        self.assertEqual(self.texts[1], self.paste())

    def test_a_copy_comes_on_top_of_what_is_not_scrolled(self):
        self.open_list()
        self.copy("copied meanwhile")
        self.settle()
        self.assertEqual("copied meanwhile", self.paste())


class BurstTest(ListCase):
    """Keys that come faster than the list can follow."""

    settings = {"history.limit": "10000"}
    words = ("carve", "bloom", "drift", "hinge", "match", "pearl", "quilt", "swarm")

    def entries(self):
        """Of each word the beginnings are in newer entries, so that an old result of the search
        would show itself."""
        shorter = [text_entry(f"{word[:length]} is how {length} letters of it begin")
                   for length in range(1, 5) for word in self.words]
        others = [text_entry(f"{number} of many others " + "0123456789 " * 40)
                  for number in range(3000)]
        return shorter + others + [text_entry(f"all of {word}") for word in self.words]

    def test_letters_and_return_at_once_choose_the_right_entry(self):
        for word in self.words:
            mark = self.program.mark()
            self.open_window()
            self.display.press_at_once([*word, "Return"])
            self.assertEqual(f"all of {word}", self.pasted(mark))

    def test_letters_and_keys_at_once_choose_the_right_entry(self):
        mark = self.program.mark()
        self.open_window()
        self.display.press_at_once([*"carx", "BackSpace", *"ve", "Down", "Return"])
        self.assertEqual("all of carve", self.pasted(mark))


if __name__ == "__main__":
    main()
