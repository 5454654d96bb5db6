#!/usr/bin/python3
"""The window comes, stands, and goes in the same way under every window manager."""
from Xlib import X

from case import main
from clients import Mousepad
from placement_case import PlacementCase
from waiting import retry_until, wait_until

FRAME = (100, 150, 680, 400)


class EveryWindowManager:
    """What holds for each of them."""

    def setUp(self):
        super().setUp()
        self.start_program(FRAME)

    def test_it_stands_where_it_should_each_time(self):
        for _ in range(3):
            self.assert_opens_at(FRAME)
            self.close_window()
            self.assert_saved(FRAME)

    def test_it_goes_where_it_is_dragged_and_stays_there(self):
        window = self.assert_opens_at(FRAME)
        self.drag(self.in_head(window), (90, -60))
        self.wait_for_place(window, (190, 90, 680, 400))
        self.drag(self.on_top_strip(window), (0, 50))
        self.wait_for_place(window, (190, 140, 680, 350))
        self.drag(self.on_bottom_strip(window), (0, 50))
        self.wait_for_place(window, (190, 140, 680, 400))
        self.close_window()
        self.assert_saved((190, 140, 680, 400))
        self.assert_opens_at((190, 140, 680, 400))

    def test_it_goes_where_the_window_manager_moves_it(self):
        window = self.open_and_drag(FRAME)
        with self.display.holding(self.moving_modifier):
            self.begin_drag((400, 400), (80, 60))
            retry_until(lambda: self.wiggle_to(480, 460),
                        lambda: self.display.place(window) == (180, 210, 680, 400),
                        "the window to be moved")
            self.display.let_go_of_button()
        # The window manager may have the keyboard for a while yet.
        retry_until(lambda: self.display.press("Escape"), lambda: not self.history_window(),
                    "the window to close")
        self.assert_saved((180, 210, 680, 400))
        self.assert_opens_at((180, 210, 680, 400))

    def test_it_is_in_no_list_of_windows(self):
        window = self.open_window()
        wait_until(lambda: {"_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER",
                            "_NET_WM_STATE_ABOVE"} <= self.states(window),
                   lambda: f"all its states; it has {self.states(window)}", 5)

    def test_it_opens_on_the_desktop_that_is_shown(self):
        self.assert_opens_at(FRAME)
        self.close_window()
        self.display.message(self.display.root, "_NET_NUMBER_OF_DESKTOPS", [2, 0, 0, 0, 0])
        wait_until(lambda: self.root_number("_NET_NUMBER_OF_DESKTOPS") >= 2, "a second desktop")
        self.go_to_desktop(1)
        try:
            self.assert_opens_at(FRAME)
            self.close_window()
        finally:
            self.go_to_desktop(0)
        self.assert_opens_at(FRAME)

    def test_it_opens_over_a_window_that_fills_the_screen(self):
        with Mousepad(self.desktop, self.display) as editor:
            fullscreen = self.display.atom("_NET_WM_STATE_FULLSCREEN")
            self.display.message(editor.window, "_NET_WM_STATE", [1, fullscreen, 0, 2, 0])
            self.wait_until_full_screen(editor.window)
            window = self.assert_opens_at(FRAME)
            wait_until(lambda: self.is_on_top(window), "the window over the editor")
            self.display.press("Escape")
            self.wait_until_closed()
            self.display.wait_until_active(editor.window)

    def test_another_window_in_front_closes_it(self):
        with Mousepad(self.desktop, self.display) as editor:
            self.open_window()
            self.display.activate(editor.window)
            self.wait_until_closed()
            self.assertTrue(self.display.is_active(editor.window))

    def test_a_click_on_the_desktop_closes_it(self):
        self.assert_opens_at(FRAME)
        self.display.click(1200, 700)
        self.wait_until_closed()

    def test_closing_gives_the_focus_back(self):
        with Mousepad(self.desktop, self.display) as editor:
            self.open_window()
            self.close_window()
            self.display.wait_until_active(editor.window)

    moving_modifier = "alt"

    def wait_until_full_screen(self, window):
        wait_until(lambda: self.display.place(window) == (0, 0, 1280, 800),
                   "the window to fill the screen")

    def wiggle_to(self, x, y):
        """Window managers let the moves fall that come before they have the pointer."""
        self.display.move_pointer(x - 1, y)
        self.display.move_pointer(x, y)

    def states(self, window):
        atoms = self.display.property(window, "_NET_WM_STATE")
        return {self.display.connection.get_atom_name(atom) for atom in atoms or ()}

    def root_number(self, name):
        value = self.display.property(self.display.root, name)
        return value[0] if value else 0

    def go_to_desktop(self, number):
        retry_until(lambda: self.display.message(self.display.root, "_NET_CURRENT_DESKTOP",
                                                 [number, X.CurrentTime, 0, 0, 0]),
                    lambda: self.root_number("_NET_CURRENT_DESKTOP") == number,
                    f"desktop {number}")

    def is_on_top(self, window):
        """Whether the pointer finds it, or a frame around it, in the middle of its place."""
        x, y, width, height = self.display.place(window)
        self.display.move_pointer(x + width // 2, y + height // 2)
        below = self.display.root.query_pointer().child
        while below and below.id != window.id:
            below = below.query_pointer().child
        return bool(below)


class OpenboxTest(EveryWindowManager, PlacementCase):
    desktop_options = {"wm": "openbox"}


class XfwmTest(EveryWindowManager, PlacementCase):
    desktop_options = {"wm": "xfwm4"}


class MetacityTest(EveryWindowManager, PlacementCase):
    desktop_options = {"wm": "metacity"}
    moving_modifier = "super"

    def wait_until_full_screen(self, window):
        super().wait_until_full_screen(window)
        # Its frame is taken off, by which it loses the focus for a while. No key goes anywhere then.
        wait_until(lambda: window.query_tree().parent == self.display.root
                   and self.display.has_focus(window), "the window to be back without its frame")


class KwinTest(EveryWindowManager, PlacementCase):
    desktop_options = {"wm": "kwin_x11"}
    moving_modifier = "super"


class MutterTest(EveryWindowManager, PlacementCase):
    desktop_options = {"wm": "mutter --x11"}
    moving_modifier = "super"


if __name__ == "__main__":
    main()
