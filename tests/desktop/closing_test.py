#!/usr/bin/python3
"""The window closes when the person turns to something else, and only then, pinned or not."""
from case import main
from clients import Mousepad
from panels import Tint2, find_icon
from placement_case import PlacementCase
from waiting import Late, retry_until, wait_until

FRAME = (100, 150, 680, 400)
PIN = (100 + 654, 150 + 40)
ROW = (100 + 300, 150 + 136)
DESKTOP = (1200, 700)
SECOND_ITEM = 47  # Below the upper edge of the menu; the first one pastes.


class ClosingCase(PlacementCase):
    def setUp(self):
        super().setUp()
        self.start_program(FRAME)

    def pin(self):
        before = self.pin_picture()
        self.display.click(*PIN)
        wait_until(lambda: self.pin_picture() != before, "the pin to be seen", 5)

    def triggered_count(self):
        return self.program.output().count("Hotkey triggered")

    def pin_picture(self):
        return self.display.pixels(PIN[0] - 8, PIN[1] - 8, 16, 16)

    def assert_stays(self):
        """Also once everything that was sent to the program has been dealt with."""
        self.copy(f"a sign of life of {self.id()}")
        self.assertIsNotNone(self.history_window(), "the window has closed")

    def assert_closes(self):
        self.wait_until_closed()
        # Nothing was left behind that brings it back, or closes the next one.
        self.open_window()
        self.assert_stays()


class ClosingTest(ClosingCase):
    def test_by_a_click_on_the_desktop(self):
        for button in (1, 3):
            with self.subTest(button=button):
                self.open_window()
                self.display.click(*DESKTOP, button)
                self.wait_until_closed()
                self.display.press("Escape")  # The menu of the desktop.

    def test_not_by_other_buttons_or_the_wheel(self):
        self.open_window()
        for button in (2, 4, 5):
            self.display.click(*DESKTOP, button)
        self.assert_stays()
        self.display.press("Escape")  # The menu of the desktop, which has the keyboard.

    def test_by_a_click_on_another_window(self):
        with Mousepad(self.desktop, self.display) as editor:
            self.open_window()
            self.display.move(editor.window, 800, 300, 400, 300)
            wait_until(lambda: self.display.place(editor.window)[0] >= 790, "the editor aside")
            self.display.click(1000, 500)
            self.wait_until_closed()
            self.display.wait_until_active(editor.window)

    def test_by_another_window_that_comes_to_the_front(self):
        with Mousepad(self.desktop, self.display) as editor:
            self.open_window()
            self.display.activate(editor.window)
            self.assert_closes()

    def test_by_a_program_that_starts(self):
        self.open_window()
        with Mousepad(self.desktop, self.display):
            self.wait_until_closed()

    def test_by_the_settings(self):
        self.open_window()
        self.display.press("ctrl+comma")
        self.wait_until_closed()

    def test_by_the_window_manager(self):
        window = self.open_window()
        self.display.message(window, "_NET_CLOSE_WINDOW", [0, 2, 0, 0, 0])
        self.assert_closes()

    def test_not_by_a_notification(self):
        self.desktop.spawn("dunst")
        window = self.open_window()
        retry_until(lambda: self.desktop.run("gdbus", "call", "--session", "--dest",
                                             "org.freedesktop.Notifications", "--object-path",
                                             "/org/freedesktop/Notifications", "--method",
                                             "org.freedesktop.Notifications.Notify", "mail", "0",
                                             "", "A letter", "has come", "[]", "{}", "10000",
                                             check=False),
                    lambda: self.display.find_window(window_class="dunst"), "the notification")
        self.assert_stays()
        self.assertTrue(self.display.is_active(window))

    def test_not_by_a_window_that_does_not_take_the_focus(self):
        window = self.open_window()
        self.show_window("shy", 900, 100)
        self.assert_stays()
        self.assertTrue(self.display.is_active(window))
        self.display.press("Escape")
        self.wait_until_closed()

    def test_not_by_a_click_inside(self):
        self.copy("an entry")
        self.open_window()
        for place in (ROW, (100 + 300, 150 + 30), (100 + 600, 150 + 78), (100 + 300, 150 + 300)):
            self.display.click(*place)
        self.assert_stays()

    def test_not_by_its_menu(self):
        self.copy("an entry")
        self.open_window()
        self.display.click(*ROW, button=3)
        menu = self.wait_for_menu()
        x, y, width, _ = self.display.place(menu)
        self.display.click(x + width // 2, y + SECOND_ITEM)
        self.wait_until_menu_closed()
        self.copy_after_paste("a sign of life")
        self.assertIsNotNone(self.history_window(), "the window has closed")

    def test_by_a_click_beside_its_menu(self):
        self.copy("an entry")
        self.open_window()
        self.display.click(*ROW, button=3)
        self.wait_for_menu()
        self.display.click(*DESKTOP)
        self.wait_until_menu_closed()
        self.wait_until_closed()

    def test_after_a_reversal_one_press_closes_once(self):
        window = self.open_window()
        count = self.triggered_count()
        self.display.press(self.hot_key)
        self.display.press(self.hot_key)
        wait_until(lambda: self.triggered_count() == count + 2, "both presses")
        self.assert_stays()
        # A window that is opened anew is another one to the server.
        self.assertEqual(window.id, self.history_window().id)
        self.display.wait_until_active(window)
        self.display.click(*DESKTOP)
        self.assert_closes()

    def test_taken_off_by_another_program_it_comes_by_the_next_press(self):
        window = self.open_window()
        window.unmap()
        self.display.connection.sync()
        with self.assertRaises(Late):
            wait_until(self.history_window, "the window to come by itself", 1.5)
        self.display.press(self.hot_key)
        self.assertEqual(FRAME, self.display.place(self.wait_for_history_window()))
        self.display.press(self.hot_key)
        self.wait_until_closed()

    def show_window(self, name, x, y):
        """One that the window manager shows without giving it the focus."""
        script = ("import sys, time\nfrom Xlib import X, Xatom, display\nd = display.Display()\n"
                  "s = d.screen()\nw = s.root.create_window(%d, %d, 200, 100, 0, s.root_depth,"
                  " background_pixel=s.white_pixel)\nw.set_wm_class('%s', '%s')\n"
                  "w.set_wm_hints(flags=1, input=False)\n"
                  "w.change_property(d.intern_atom('_NET_WM_USER_TIME'), Xatom.CARDINAL, 32, [0])\n"
                  "w.map()\nd.sync()\ntime.sleep(1000)\n" % (x, y, name, name))
        process = self.desktop.spawn("/usr/bin/python3", "-c", script)
        self.addCleanup(process.kill)
        self.display.wait_for_window(window_class=name)


class ComposedClosingTest(ClosingCase):
    """Where it fades, it can be turned to while it goes."""
    desktop_options = {"compositor": "picom"}
    test_after_a_reversal_one_press_closes_once = (
        ClosingTest.test_after_a_reversal_one_press_closes_once)
    test_by_a_click_on_the_desktop = ClosingTest.test_by_a_click_on_the_desktop


class PinnedTest(ClosingCase):
    def setUp(self):
        super().setUp()
        self.open_window()
        self.pin()

    def test_not_by_a_click_on_the_desktop(self):
        self.display.click(*DESKTOP)
        self.assert_stays()

    def test_not_by_another_program(self):
        with Mousepad(self.desktop, self.display) as editor:
            self.display.activate(editor.window)
            self.assert_stays()
            self.assertTrue(self.display.is_active(editor.window))
        self.assert_stays()

    def test_by_escape_in_the_empty_search_field(self):
        self.display.press("Escape")
        self.wait_until_closed()

    def test_not_by_escape_in_the_list(self):
        self.copy("an entry")
        self.display.click(*ROW)
        self.display.press("Escape")
        self.assert_stays()

    def test_by_the_hot_key(self):
        self.display.press(self.hot_key)
        self.wait_until_closed()

    def test_by_a_paste(self):
        self.copy("an entry")
        self.display.press("Return")
        self.program.wait_for_line("Item copied to clipboard")
        self.wait_until_closed()

    def test_the_next_one_is_not_pinned(self):
        self.display.press("Escape")
        self.wait_until_closed()
        self.open_window()
        self.display.click(*DESKTOP)
        self.wait_until_closed()


class StatusItemTest(ClosingCase):
    def test_a_click_on_it_closes_and_does_not_open_again(self):
        self.panel = Tint2(self.desktop, self.display, is_dark=False).start()
        self.addCleanup(self.panel.end)
        icon = wait_until(self.icon, "the icon", 15)
        self.open_window()
        self.display.click(*icon)
        self.wait_until_closed()
        self.copy("a sign of life")
        self.assertIsNone(self.history_window())
        self.display.click(*icon)
        self.wait_for_history_window()

    def icon(self):
        place = self.panel.place()
        found = find_icon(self.display, place) if place else None
        return found and (found.x + found.width // 2, found.y + found.height // 2)


if __name__ == "__main__":
    main()
