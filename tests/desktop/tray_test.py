#!/usr/bin/python3
"""The status item in the trays of real panels: it is seen, it can be clicked, and it comes back."""
import os

from case import HOT_KEY, DesktopTest, main
from panels import LxqtPanel, Tint2, Trayer, XfcePanel, find_icon
from waiting import retry_until, wait_until

NO_TRAY = "ERROR: Failed to create status item!"
IN_TRAY = "Status item created successfully"


class TrayTest(DesktopTest):
    """Steps; the panel of the class is started by each test as it needs it."""
    panel_type = None

    def setUp(self):
        super().setUp()
        self.panel = None
        self.addCleanup(lambda: self.panel and self.panel.end())

    def start_panel(self, panel_type=None, is_dark=False):
        self.panel = (panel_type or self.panel_type)(self.desktop, self.display, is_dark).start()

    def icon(self):
        place = self.panel.place()
        return find_icon(self.display, place) if place else None

    def wait_for_icon(self):
        return wait_until(self.icon, "an icon on the panel", 15)

    def wait_for_legible_icon(self):
        def is_legible():
            icon = self.icon()
            return icon and abs(icon.ink - icon.ground) > 150 and icon
        icon = wait_until(is_legible, lambda: f"a legible icon; there is {self.icon()}", 15)
        self.assertGreaterEqual(min(icon.width, icon.height), 10)
        self.assertLess(icon.width, 40, "there is more than one icon")
        return icon

    def click_icon(self, button=1):
        icon = self.wait_for_icon()
        self.display.click(icon.x + icon.width // 2, icon.y + icon.height // 2, button)

    def click_until(self, condition, what, button=1):
        """Panels that have just come up let the first clicks fall."""
        retry_until(lambda: self.click_icon(button), condition, what, patience=3.0)

    def is_menu_open(self):
        """Whether the panel shows a menu, or the program one of its own."""
        return self.display.is_menu_open() or self.open_menus()


class EveryPanel:
    """What holds for each of them."""

    def test_a_dark_icon_on_a_light_panel(self):
        self.start_panel(is_dark=False)
        self.program.start()
        self.program.wait_for_line(IN_TRAY)
        icon = self.wait_for_legible_icon()
        self.assertLess(icon.ink, icon.ground)

    def test_a_light_icon_on_a_dark_panel(self):
        self.start_panel(is_dark=True)
        self.program.start()
        icon = self.wait_for_legible_icon()
        self.assertGreater(icon.ink, icon.ground)

    def test_a_left_click_opens_and_closes(self):
        self.start_panel()
        self.program.start()
        self.click_until(self.history_window, "the history window")
        self.wait_for_history_window()
        self.click_icon()
        self.wait_until_closed()
        self.click_icon()
        self.wait_for_history_window()

    def test_the_window_from_the_tray_gets_the_keys(self):
        self.start_panel()
        self.program.start()
        self.copy("an entry")
        self.click_until(self.history_window, "the history window")
        self.wait_for_history_window()
        self.display.press("Return")
        self.program.wait_for_line("Item copied to clipboard")

    def test_an_entry_of_the_menu_works(self):
        self.start_panel()
        self.program.start()
        mark = self.program.mark()
        self.click_until(self.is_menu_open, "the menu", button=3)
        self.display.press("Down")
        self.display.press("Return")
        self.program.wait_for_line("Showing clipboard history window...", mark)
        self.wait_for_history_window()

    def test_quit_in_the_menu_ends_the_program(self):
        self.start_panel()
        self.program.start()
        self.click_until(self.is_menu_open, "the menu", button=3)
        self.display.press("Up")
        self.display.press("Return")
        self.assertEqual(0, self.program.wait_for_exit())
        wait_until(lambda: self.icon() is None, "the icon to go")

    def test_a_panel_that_comes_late(self):
        self.program.start()
        self.program.wait_for_line(NO_TRAY)
        self.start_panel()
        self.wait_for_legible_icon()
        self.click_until(self.history_window, "the history window")

    def test_a_panel_that_starts_anew(self):
        self.start_panel()
        self.program.start()
        self.wait_for_legible_icon()
        self.panel.end()
        self.assertIsNone(self.display.find_window(window_class="tessarine"),
                          "what the panel let go of lies on the desktop")
        self.start_panel(is_dark=True)
        self.wait_for_legible_icon()
        self.click_until(self.history_window, "the history window")


class Tint2Test(EveryPanel, TrayTest):
    panel_type = Tint2


class ComposedTint2Test(TrayTest):
    """Gives its icons a visual with alpha."""
    desktop_options = {"compositor": "picom"}
    panel_type = Tint2
    test_a_dark_icon_on_a_light_panel = EveryPanel.test_a_dark_icon_on_a_light_panel
    test_a_light_icon_on_a_dark_panel = EveryPanel.test_a_light_icon_on_a_dark_panel


class TrayerTest(EveryPanel, TrayTest):
    panel_type = Trayer


class XfcePanelTest(EveryPanel, TrayTest):
    panel_type = XfcePanel


class LxqtPanelTest(EveryPanel, TrayTest):
    panel_type = LxqtPanel


class ChangingPanelsTest(TrayTest):
    def test_an_item_only_host_that_comes_after_a_tray(self):
        self.start_panel(Tint2)
        tint2 = self.panel
        self.addCleanup(tint2.end)
        self.program.start()
        self.wait_for_legible_icon()
        self.panel = LxqtPanel(self.desktop, self.display, False)
        self.panel.start()
        window = lambda: self.display.find_window(window_class="tessarine")
        wait_until(lambda: window() is None, "the icon to leave the tray")
        self.panel.end()
        self.panel = tint2
        wait_until(window, "the icon to be back in the tray")
        self.wait_for_legible_icon()

    def test_a_panel_that_turns_dark(self):
        self.start_panel(XfcePanel)
        self.program.start()
        self.wait_for_legible_icon()
        self.panel.set_dark(True)
        # The desktop tells nobody; the next window that gets the focus has it looked at.
        self.display.press(HOT_KEY)
        self.wait_for_history_window()
        icon = self.wait_for_legible_icon()
        self.assertGreater(icon.ink, icon.ground)

    def test_without_any_panel_the_program_works(self):
        self.program.start()
        self.program.wait_for_line(NO_TRAY)
        self.assertIsNone(self.program.find_line(IN_TRAY))
        self.copy("an entry")
        self.open_window()
        self.display.press("Return")
        self.program.wait_for_line("Item copied to clipboard")


class LostBusTest(TrayTest):
    def test_the_icon_moves_to_the_tray_when_the_bus_ends(self):
        self.start_panel(LxqtPanel)
        self.program.start()
        self.wait_for_legible_icon()
        tray = Tint2(self.desktop, self.display, False).start()
        self.addCleanup(tray.end)
        bus = next(process for process in self.desktop.started
                   if os.path.basename(process.args[0]) == "dbus-daemon")
        bus.kill()
        wait_until(lambda: self.display.find_window(window_class="tessarine"),
                   "the icon in the tray")
        self.assert_alive()


class LostDisplayTest(TrayTest):
    def test_the_program_quits_in_order_when_its_connection_ends(self):
        self.start_panel(Tint2)
        self.program.start()
        self.wait_for_legible_icon()
        self.copy("an entry")
        self.display.find_window(window_class="tessarine").kill_client()
        self.display.connection.flush()
        self.assertEqual(self.program.wait_for_exit(), 1)
        self.assertEqual(self.program.output().count("The display has ended the connection"), 1)
        self.assertEqual(self.program.texts(), ["an entry"])


if __name__ == "__main__":
    main()
