#!/usr/bin/python3
"""With several monitors the window belongs to the primary one, whatever is plugged and unplugged."""
from case import main
from monitors import Monitors
from panels import Tint2
from placement_case import PlacementCase
from waiting import retry_until, wait_until


class MonitorsTest(PlacementCase):
    desktop_options = {"size": "3000x1400"}

    def setUp(self):
        super().setUp()
        self.monitors = Monitors(self.desktop)
        self.addCleanup(self.monitors.unplug_all)

    def plug_two(self):
        """The primary one stands on the right of the other, and lower."""
        self.monitors.plug("LEFT", 0, 0, 1200, 1400)
        self.monitors.plug("RIGHT", 1200, 200, 1600, 1000, is_primary=True)

    def test_at_first_in_the_middle_of_the_primary(self):
        self.plug_two()
        self.start_program()
        self.assert_opens_at((1200 + 460, 200 + 250, 680, 500))

    def test_on_the_primary_though_it_stood_on_the_other(self):
        self.plug_two()
        self.start_program((100, 1100, 680, 250))
        self.assert_opens_at((1200, 950, 680, 250))

    def test_it_is_not_dragged_to_the_other(self):
        self.plug_two()
        self.start_program((1300, 600, 680, 500))
        window = self.assert_opens_at((1300, 600, 680, 500))
        for travel, place in [((-700, 0), (1200, 600)), ((0, 700), (1200, 700)),
                              ((1500, 0), (2120, 700)), ((0, -700), (2120, 200))]:
            with self.subTest(travel=travel):
                self.drag(self.in_head(window), travel)
                self.wait_for_place(window, (*place, 680, 500))
        self.drag(self.on_bottom_strip(window), (0, 690))
        self.wait_for_place(window, (2120, 200, 680, 1000))

    def test_on_the_other_by_other_means_and_again_there(self):
        self.plug_two()
        self.start_program((1300, 600, 680, 300))
        window = self.assert_opens_at((1300, 600, 680, 300))
        self.display.move(window, 40, 1080, 680, 300)
        self.wait_for_place(window, (40, 1080, 680, 300))
        # It is brought to the front as it stands, by another start.
        self.start_once_more()
        self.assertEqual((40, 1080, 680, 300), self.display.place(window))
        self.close_window()
        self.assert_saved((40, 1080, 680, 300))
        self.assert_opens_at((1200, 900, 680, 300))

    def test_what_hangs_over_the_edge_of_the_other_is_brought_in(self):
        self.plug_two()
        self.start_program((1300, 600, 680, 300))
        window = self.assert_opens_at((1300, 600, 680, 300))
        self.display.move(window, 40, 1250, 680, 300)
        self.wait_for_place(window, (40, 1250, 680, 300))
        self.let_the_program_learn()
        self.start_once_more()
        self.wait_for_place(window, (40, 1100, 680, 300))

    def test_dragged_while_it_stands_on_the_other(self):
        self.plug_two()
        self.start_program((1300, 600, 680, 300))
        window = self.assert_opens_at((1300, 600, 680, 300))
        self.display.move(window, 300, 100, 680, 300)
        self.wait_for_place(window, (300, 100, 680, 300))
        self.drag(self.in_head(window), (0, 20))
        self.wait_for_place(window, (1200, 200, 680, 300))

    def test_its_height_is_changed_while_it_stands_on_the_other(self):
        self.plug_two()
        self.start_program((1300, 600, 680, 300))
        window = self.assert_opens_at((1300, 600, 680, 300))
        self.display.move(window, 40, 1080, 680, 300)
        self.wait_for_place(window, (40, 1080, 680, 300))
        self.drag(self.on_bottom_strip(window), (0, -20))
        self.wait_for_place(window, (40, 1080, 680, 244))
        self.drag(self.on_top_strip(window), (0, -60))
        self.wait_for_place(window, (40, 1020, 680, 304))

    def test_the_monitor_on_which_it_last_stood_is_unplugged(self):
        self.plug_two()
        self.start_program((2000, 600, 680, 500))
        self.assert_opens_at((2000, 600, 680, 500))
        self.close_window()
        self.monitors.unplug("RIGHT")
        self.let_the_program_learn()
        self.assert_opens_at((520, 600, 680, 500))

    def test_the_monitor_on_which_it_stands_is_unplugged(self):
        self.plug_two()
        self.start_program((2000, 600, 680, 500))
        window = self.assert_opens_at((2000, 600, 680, 500))
        self.monitors.unplug("RIGHT")
        self.wait_for_place(window, (520, 600, 680, 500))
        self.close_window()
        self.assert_saved((520, 600, 680, 500))

    def test_another_monitor_is_unplugged(self):
        self.plug_two()
        self.monitors.plug("FAR", 2800, 0, 200, 1400)
        self.start_program((2000, 600, 680, 500))
        window = self.assert_opens_at((2000, 600, 680, 500))
        self.monitors.unplug("FAR")
        self.close_window()
        self.assert_saved((2000, 600, 680, 500))
        self.assert_opens_at((2000, 600, 680, 500))

    def test_another_becomes_the_primary(self):
        self.plug_two()
        self.start_program((2000, 600, 680, 500))
        self.assert_opens_at((2000, 600, 680, 500))
        self.close_window()
        self.monitors.plug("RIGHT", 1200, 200, 1600, 1000)
        self.monitors.plug("LEFT", 0, 0, 1200, 1400, is_primary=True)
        self.let_the_program_learn()
        self.assert_opens_at((520, 600, 680, 500))

    def test_a_monitor_is_turned(self):
        self.monitors.plug("ONLY", 0, 0, 1400, 1000)
        self.start_program((700, 200, 680, 700))
        self.assert_opens_at((700, 200, 680, 700))
        self.close_window()
        self.monitors.plug("ONLY", 0, 0, 1000, 1400)
        self.let_the_program_learn()
        self.assert_opens_at((320, 200, 680, 700))

    def test_a_monitor_shrinks_below_the_window(self):
        self.monitors.plug("ONLY", 0, 0, 1400, 1000)
        self.start_program((700, 200, 680, 700))
        window = self.assert_opens_at((700, 200, 680, 700))
        self.monitors.plug("ONLY", 0, 0, 800, 600)
        self.wait_for_place(window, (120, 0, 680, 600))
        self.close_window()
        self.assert_saved((120, 0, 680, 600))

    def test_a_monitor_narrower_than_the_window(self):
        self.monitors.plug("ONLY", 0, 0, 600, 900)
        self.start_program((100, 200, 680, 500))
        self.assert_opens_at((0, 200, 600, 500))

    def test_a_panel_at_the_lower_edge_of_the_primary(self):
        self.plug_two()
        self.start_panel("bottom center horizontal", (1200, 1170, 1600, 30))
        self.start_program((1300, 1100, 680, 300))
        window = self.assert_opens_at((1300, 870, 680, 300))
        self.drag(self.in_head(window), (0, -100))
        self.wait_for_place(window, (1300, 770, 680, 300))
        self.drag(self.on_bottom_strip(window), (0, 300))
        self.wait_for_place(window, (1300, 770, 680, 400))
        self.drag(self.in_head(window), (0, 300))
        self.wait_for_place(window, (1300, 770, 680, 400))

    def test_a_panel_at_an_inner_edge(self):
        self.plug_two()
        self.start_panel("center left vertical", (1200, 200, 30, 1000))
        self.start_program((1200, 300, 680, 300))
        window = self.assert_opens_at((1230, 300, 680, 300))
        self.drag(self.in_head(window), (50, 0))
        self.wait_for_place(window, (1280, 300, 680, 300))
        self.drag(self.in_head(window), (-300, 0))
        self.wait_for_place(window, (1230, 300, 680, 300))

    def test_a_panel_comes_under_the_open_window_and_goes(self):
        self.plug_two()
        self.start_program((1300, 900, 680, 300))
        window = self.assert_opens_at((1300, 900, 680, 300))
        panel = self.start_panel("bottom center horizontal", (1200, 1170, 1600, 30))
        self.wait_for_place(window, (1300, 870, 680, 300))
        panel.end()
        retry_until(lambda: self.drag(self.in_head(window), (0, 60)),
                    lambda: self.display.place(window) == (1300, 900, 680, 300),
                    "the room of the panel that has ended")

    def start_panel(self, position, place):
        panel = Tint2(self.desktop, self.display, is_dark=False)
        panel.position, panel.monitor = position, "2"
        panel.start()
        self.addCleanup(panel.end)
        wait_until(lambda: panel.place() == place, lambda: f"the panel; it is at {panel.place()}")
        return panel

    def start_once_more(self):
        mark = self.program.mark()
        self.desktop.run(self.program.path, env=self.program.env, timeout=10)
        self.program.wait_for_line("Total items: ", since=mark)


if __name__ == "__main__":
    main()
