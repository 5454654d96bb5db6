#!/usr/bin/python3
"""The window stands where the person has put it, wholly on the screen, beside the panels."""
from case import main
from panels import Tint2
from placement_case import DEFAULT_HEIGHT, LEAST_HEIGHT, WIDTH, PlacementCase
from waiting import wait_until

SCREEN_WIDTH, SCREEN_HEIGHT = 1280, 800


class OpeningTest(PlacementCase):
    def test_at_first_in_the_middle(self):
        self.start_program()
        self.assert_opens_at(((SCREEN_WIDTH - WIDTH) // 2, (SCREEN_HEIGHT - DEFAULT_HEIGHT) // 2,
                              WIDTH, DEFAULT_HEIGHT))

    def test_then_where_it_last_stood(self):
        self.start_program((60, 70, 680, 320))
        self.assert_opens_at((60, 70, 680, 320))

    def test_no_further_out_than_the_screen_ends(self):
        self.start_program((5000, -300, 680, 320))
        self.assert_opens_at((SCREEN_WIDTH - WIDTH, 0, 680, 320))

    def test_no_taller_than_the_screen_and_so_it_is_remembered(self):
        self.start_program((60, 70, 680, 3000))
        self.assert_opens_at((60, 0, 680, SCREEN_HEIGHT))
        self.close_window()
        self.assert_saved((60, 0, 680, SCREEN_HEIGHT))

    def test_beside_a_panel(self):
        panel = Tint2(self.desktop, self.display, is_dark=False).start()
        self.addCleanup(panel.end)
        top_of_panel = wait_until(panel.place, "the panel")[1]
        self.assertLess(top_of_panel, SCREEN_HEIGHT)
        wait_until(lambda: self.work_area()[3] == top_of_panel, "the panel to have its room")
        self.start_program((60, 700, 680, 320))
        window = self.assert_opens_at((60, top_of_panel - 320, 680, 320))
        self.drag(self.on_top_strip(window), (0, -80))
        self.wait_for_place(window, (60, top_of_panel - 400, 680, 400))
        self.drag(self.in_head(window), (0, -100))
        self.wait_for_place(window, (60, top_of_panel - 500, 680, 400))
        self.drag(self.on_bottom_strip(window), (0, 300))
        self.wait_for_place(window, (60, top_of_panel - 500, 680, 500))
        self.drag(self.in_head(window), (0, 300))
        self.wait_for_place(window, (60, top_of_panel - 500, 680, 500))

    def work_area(self):
        return list(self.display.property(self.display.root, "_NET_WORKAREA"))[:4]


class MovingTest(PlacementCase):
    def setUp(self):
        super().setUp()
        self.start_program((100, 150, 680, 400))

    def test_by_its_head(self):
        window = self.assert_opens_at((100, 150, 680, 400))
        self.drag(self.in_head(window), (90, -60))
        self.wait_for_place(window, (190, 90, 680, 400))
        self.close_window()
        self.assert_saved((190, 90, 680, 400))
        self.assert_opens_at((190, 90, 680, 400))

    def test_by_the_symbol_in_its_head(self):
        window = self.assert_opens_at((100, 150, 680, 400))
        self.drag((100 + 40, 150 + 31), (30, 40))
        self.wait_for_place(window, (130, 190, 680, 400))

    def test_not_off_the_screen(self):
        window = self.assert_opens_at((100, 150, 680, 400))
        for travel, place in [((-900, 0), (0, 150)), ((0, -900), (0, 0)),
                              ((1200, 0), (SCREEN_WIDTH - WIDTH, 0)),
                              ((0, 700), (SCREEN_WIDTH - WIDTH, SCREEN_HEIGHT - 400))]:
            with self.subTest(travel=travel):
                self.drag(self.in_head(window), travel)
                self.wait_for_place(window, (*place, 680, 400))

    def test_it_ends_where_the_button_is_let_go(self):
        window = self.assert_opens_at((100, 150, 680, 400))
        # The pointer leaves the window, which cannot follow.
        self.drag(self.in_head(window), (0, -160))
        self.wait_for_place(window, (100, 0, 680, 400))
        self.display.move_pointer(400, 600)
        self.display.move_pointer(400, 300)
        self.close_window()
        self.assert_saved((100, 0, 680, 400))

    def test_a_second_button_changes_nothing(self):
        window = self.assert_opens_at((100, 150, 680, 400))
        x, y = self.in_head(window)
        self.begin_drag((x, y), (30, 30))
        self.display.press_button(3)
        self.display.let_go_of_button(3)
        self.display.move_pointer(x + 50, y + 50)
        self.display.let_go_of_button()
        self.wait_for_place(window, (150, 200, 680, 400))

    def test_keys_go_on_to_the_search_field(self):
        self.copy("an entry")
        window = self.assert_opens_at((100, 150, 680, 400))
        self.begin_drag(self.in_head(window), (30, 30))
        self.display.type("an entry")
        self.display.let_go_of_button()
        self.display.press("Return")
        self.program.wait_for_line("Item copied to clipboard")
        self.wait_until_closed()

    def test_escape_closes_it_in_the_middle(self):
        window = self.assert_opens_at((100, 150, 680, 400))
        self.begin_drag(self.in_head(window), (30, 30))
        self.wait_for_place(window, (130, 180, 680, 400))
        self.display.press("Escape")
        self.wait_until_closed()
        self.display.let_go_of_button()
        self.assert_opens_at((130, 180, 680, 400))

    def test_by_the_window_manager(self):
        window = self.open_and_drag((100, 150, 680, 400))
        self.display.move(window, 300, 200, 680, 400)
        self.wait_for_place(window, (300, 200, 680, 400))
        self.let_the_program_learn()
        self.close_window()
        self.assert_saved((300, 200, 680, 400))
        self.assert_opens_at((300, 200, 680, 400))


class ResizingTest(PlacementCase):
    def setUp(self):
        super().setUp()
        self.start_program((100, 150, 680, 400))

    def test_by_the_upper_edge(self):
        window = self.assert_opens_at((100, 150, 680, 400))
        self.drag(self.on_top_strip(window), (40, -50))
        self.wait_for_place(window, (100, 100, 680, 450))
        self.drag(self.on_top_strip(window), (0, -300))
        self.wait_for_place(window, (100, 0, 680, 550))
        self.drag(self.on_top_strip(window), (0, 500))
        self.wait_for_place(window, (100, 550 - LEAST_HEIGHT, 680, LEAST_HEIGHT))

    def test_by_the_lower_edge(self):
        window = self.assert_opens_at((100, 150, 680, 400))
        self.drag(self.on_bottom_strip(window), (40, 50))
        self.wait_for_place(window, (100, 150, 680, 450))
        self.drag(self.on_bottom_strip(window), (0, 300))
        self.wait_for_place(window, (100, 150, 680, SCREEN_HEIGHT - 150))
        self.drag(self.on_bottom_strip(window), (0, -700))
        self.wait_for_place(window, (100, 150, 680, LEAST_HEIGHT))
        self.close_window()
        self.assert_saved((100, 150, 680, LEAST_HEIGHT))

    def test_the_lower_strip_lies_over_the_rows(self):
        for number in range(6):
            self.copy(f"entry {number}")
        window = self.assert_opens_at((100, 150, 680, 400))
        mark = self.program.mark()
        for _ in range(2):
            self.display.click(*self.on_bottom_strip(window))
        self.display.type("entry 5")
        self.display.press("Return")
        self.program.wait_for_line("Item copied to clipboard", since=mark)
        self.wait_until_closed()
        self.assertEqual(1, self.program.output().count("Item copied to clipboard"))

    def test_the_pointer_tells_of_the_upper_strip(self):
        self.check_pointer((440, 153), (100, 550 - LEAST_HEIGHT, 680, LEAST_HEIGHT))

    def test_the_pointer_tells_of_the_lower_strip(self):
        self.check_pointer((440, 547), (100, 150, 680, LEAST_HEIGHT))

    def check_pointer(self, strip, place_after_drag):
        """That it has a shape of its own over the strip, and as long as this is dragged."""
        list_middle, elsewhere = (440, 350), (70, 350)
        window = self.assert_opens_at((100, 150, 680, 400))
        self.display.move_pointer(*list_middle)
        usual = self.settled_pointer_shape()
        self.display.move_pointer(*strip)
        self.wait_for_pointer_shape(lambda shape: shape != usual)
        resizing = self.settled_pointer_shape()
        self.display.move_pointer(*list_middle)
        self.wait_for_pointer_shape(lambda shape: shape == usual)

        self.drag_to_and_hold(strip, elsewhere)
        self.wait_for_place(window, place_after_drag)
        self.assertEqual(resizing, self.settled_pointer_shape())
        self.display.let_go_of_button()
        x, y, _, _ = place_after_drag
        self.display.move_pointer(x + 100, y + 150)
        self.wait_for_pointer_shape(lambda shape: shape == usual)

    def drag_to_and_hold(self, start, end):
        self.begin_drag(start, (end[0] - start[0], end[1] - start[1]))

    def settled_pointer_shape(self):
        """Once it has been the same for a while."""
        seen = []

        def is_settled():
            seen.append(self.display.pointer_shape())
            return len(seen) > 10 and len(set(seen[-10:])) == 1
        wait_until(is_settled, "the pointer to keep its shape", 5)
        return seen[-1]

    def wait_for_pointer_shape(self, is_right):
        wait_until(lambda: is_right(self.display.pointer_shape()),
                   "the pointer to change its shape", 3)


class Scaled:
    """The same on a screen whose pixels are small."""

    def test_what_is_dragged_follows_the_pointer(self):
        self.start_program((100, 160, 680, 400))
        at = self.scaled(100, 160, 680, 400)
        window = self.assert_opens_at(at)
        self.drag(self.in_head(window), self.scaled(40, 60))
        self.wait_for_place(window, self.scaled(140, 220, 680, 400))
        self.drag(self.on_top_strip(window), self.scaled(0, -80))
        self.wait_for_place(window, self.scaled(140, 140, 680, 480))
        self.drag(self.on_bottom_strip(window), self.scaled(0, 100))
        self.wait_for_place(window, self.scaled(140, 140, 680, 580))
        self.close_window()
        self.assert_saved((140, 140, 680, 580))
        self.assert_opens_at(self.scaled(140, 140, 680, 580))

    def test_no_further_out_than_the_screen_ends(self):
        self.start_program((100, 160, 680, 400))
        window = self.open_window()
        self.drag(self.in_head(window), (4000, 3000))
        width, height = self.scaled(680, 400)
        self.wait_for_place(window, (2560 - width, 1600 - height, width, height))

    def test_a_click_just_outside_closes(self):
        self.start_program((100, 160, 680, 400))
        x, y, width, height = self.display.place(self.open_window())
        self.display.click(x + width - 10, y + height - 40)
        self.display.type("still here")
        self.assertIsNotNone(self.history_window())
        self.display.click(x + width + 10, y + height // 2)
        self.wait_until_closed()

    def scaled(self, *lengths):
        return tuple(round(length * self.scale) for length in lengths)


class Scaled125Test(Scaled, PlacementCase):
    desktop_options = {"size": "2560x1600"}
    scale = 1.25


class Scaled200Test(Scaled, PlacementCase):
    desktop_options = {"size": "2560x1600"}
    scale = 2


if __name__ == "__main__":
    main()
