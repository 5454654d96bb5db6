#!/usr/bin/python3
"""The icon in the tray, its menu and the keys of the windows: what a person does without the hot
key."""
import re

from case import DesktopTest, main
from clients import Mousepad, copy_by_xclip, read_by_xclip
from panels import LxqtPanel, Tint2, XfcePanel, find_icon
from paste_case import CHOSEN, PasteCase
from waiting import retry_until, wait_until

ICON_TITLE = "Tessarine"


class ShellTest(DesktopTest):
    desktop_options = {"tray": "tint2"}

    def setUp(self):
        super().setUp()
        self.program.start()
        self.icon = self.display.wait_for_window(title=ICON_TITLE)

    # Steps

    def click_icon(self, button=1):
        x, y, width, height = self.display.place(self.icon)
        self.display.click(x + width // 2, y + height // 2, button)

    def open_by_icon(self):
        self.click_icon()
        return self.wait_for_history_window()

    def open_menu(self):
        self.click_icon(button=3)
        self.wait_for_menu()

    def choose_in_menu(self, *keys):
        """Opens the menu of the icon, and presses the keys there."""
        self.open_menu()
        for key in keys:
            self.display.press(key)
        self.wait_until_menu_closed()

    def pin(self, window):
        x, y, width, _ = self.display.place(window)
        pin_from_the_right, pin_from_the_top = 26, 40
        self.display.click(x + width - pin_from_the_right, y + pin_from_the_top)
        self.cut_in_the_field("pinned")  # Keys come after the click, so that it is over then.

    def cut_in_the_field(self, text):
        self.display.type(text)
        self.display.press("ctrl+a")
        self.display.press("ctrl+x")
        wait_until(lambda: read_by_xclip(self.desktop) == text.encode(), f"{text!r} to be cut")

    def open_menu_of_pauses(self):
        if self.display.menus():
            self.display.press("Escape")
            wait_until(lambda: not self.display.menus(), "the menus to close")
        self.choose_in_menu("Down", "Down", "Right")

    def wait_until_icon_says(self, description):
        """The words for those who do not see the picture."""
        wait_until(lambda: self.display.title(self.icon) == description, description)

    def assert_stays_closed(self, mark):
        """A copy that comes later is in the history, so that an earlier click is over, too."""
        self.copy("copied after that")
        self.assertIsNone(self.history_window())
        self.assertIsNone(self.program.find_line("Showing clipboard history window", since=mark))

    # Clicks

    def test_a_click_opens_and_another_closes(self):
        self.open_by_icon()
        mark = self.program.mark()
        self.click_icon()
        self.wait_until_closed()
        self.assert_stays_closed(mark)

    def test_a_click_closes_a_pinned_window(self):
        window = self.open_by_icon()
        self.pin(window)
        self.display.click(5, 5)
        self.copy("copied after the click")
        self.assertIsNotNone(self.history_window())
        mark = self.program.mark()
        self.click_icon()
        self.wait_until_closed()
        self.assert_stays_closed(mark)

    # The menu

    def test_the_menu_opens_the_history(self):
        self.choose_in_menu("Down", "Return")
        self.wait_for_history_window()

    def test_the_menu_ends_the_program(self):
        self.copy("kept")
        self.choose_in_menu("Up", "Return")
        self.assertEqual(0, self.program.wait_for_exit())
        self.assertEqual(["kept"], self.program.texts())

    def test_a_press_elsewhere_closes_the_menu(self):
        self.open_menu()
        self.display.click(5, 5)
        self.wait_until_menu_closed()
        self.assert_alive()

    def test_nothing_is_recorded_in_a_pause(self):
        self.choose_in_menu("Down", "Down", "Right", "Down", "Return")  # For 15 minutes.
        self.wait_until_icon_says("Tessarine: Paused")
        copy_by_xclip(self.desktop, b"a secret of the pause")
        self.choose_in_menu("Down", "Down", "Right", "Return")  # Resume.
        self.wait_until_icon_says("Tessarine")
        self.copy("after the pause")
        self.assertEqual(["after the pause"], self.program.texts())

    # Settings

    def wait_for_settings(self):
        window = self.display.wait_for_window(title="General")
        self.display.wait_until_active(window)
        return window

    def test_the_menu_opens_the_settings(self):
        self.open_by_icon()
        self.choose_in_menu("Down", "Down", "Down", "Return")
        self.wait_for_settings()
        self.wait_until_closed()

    def test_the_window_opens_the_settings_by_its_key(self):
        self.open_by_icon()
        self.display.press("ctrl+comma")
        self.wait_for_settings()
        self.wait_until_closed()

    def test_a_second_start_brings_back_the_settings(self):
        self.choose_in_menu("Down", "Down", "Down", "Return")
        settings = self.wait_for_settings()
        with Mousepad(self.desktop, self.display) as editor:
            editor.focus()
            mark = self.program.mark()
            self.desktop.run(self.program.path, env=self.program.env)
            self.display.wait_until_active(settings)
            self.assert_stays_closed(mark)

    def test_keys_work_in_the_settings(self):
        self.choose_in_menu("Down", "Down", "Down", "Return")
        self.wait_for_settings()
        self.display.press("ctrl+q")
        self.assertEqual(0, self.program.wait_for_exit())

    def test_another_language_is_there_at_once(self):
        self.choose_in_menu("Down", "Down", "Right", "Return")  # Pause.
        self.wait_until_icon_says("Tessarine: Paused")
        self.choose_in_menu("Down", "Down", "Down", "Return")
        self.wait_for_settings()
        self.display.press("Tab")
        self.display.press("space")
        wait_until(self.open_menus, "the languages to choose from")
        self.display.press("Down")
        self.display.press("Return")
        self.wait_until_icon_says("Tessarine: 已暂停")
        self.click_icon()
        self.display.wait_for_window(title="剪贴板历史")

    # Keys

    def test_the_window_ends_the_program_by_its_key(self):
        self.copy("kept")
        self.open_by_icon()
        self.display.press("ctrl+q")
        self.assertEqual(0, self.program.wait_for_exit())
        self.assertEqual(["kept"], self.program.texts())

    def test_the_window_hides_by_its_key(self):
        self.open_by_icon()
        self.display.press("ctrl+h")
        self.wait_until_closed()
        self.assert_alive()

    def test_text_keys_work_in_the_search_field(self):
        self.open_by_icon()
        self.cut_in_the_field("lighthouse")
        self.program.wait_for_text("lighthouse")
        self.display.press("ctrl+v")
        self.display.type("s")  # Nothing is called so, if the text came back once and whole.
        mark = self.program.mark()
        self.display.press("Return")
        self.copy("copied meanwhile")
        self.assertIsNone(self.program.find_line("Item copied to clipboard", since=mark))
        self.display.press("BackSpace")
        self.display.press("Return")
        self.program.wait_for_line("Item copied to clipboard", since=mark)

    def test_the_list_gets_its_keys(self):
        """The application's shortcuts for text are not in the way of a list."""
        self.copy("an entry")
        self.open_by_icon()
        for key in ("Tab", "Tab", "Down", "ctrl+c", "Return"):
            self.display.press(key)
        self.program.wait_for_line("Item copied to clipboard")


class PanelCase(DesktopTest):
    panel_type = LxqtPanel

    def setUp(self):
        super().setUp()
        self.panel = self.panel_type(self.desktop, self.display, is_dark=False).start()
        self.addCleanup(self.panel.end)

    def middle_of_icon(self):
        icon = wait_until(lambda: find_icon(self.display, self.panel.place()), "the icon")
        return icon.x + icon.width // 2, icon.y + icon.height // 2

    def click_until(self, condition, what, button=1):
        """A panel that has just come up lets the first clicks fall."""
        x, y = self.middle_of_icon()
        retry_until(lambda: self.display.click(x, y, button), condition, what, patience=3.0)

    def open_by_icon(self):
        self.click_until(self.history_window, "the history window")
        self.wait_for_history_window()

    def choose_in_menu(self, *keys):
        self.click_until(lambda: self.display.is_menu_open() or self.open_menus(), "the menu",
                         button=3)
        for key in keys:
            self.display.press(key)

    def open_by_menu(self):
        self.choose_in_menu("Down", "Return")
        self.wait_for_history_window()


class PasteFromPanel:
    """The panel is in between, and yet an entry goes where the person was before."""

    def test_opened_by_the_icon(self):
        self.assert_pastes_into_an_editor(self.open_by_icon)

    def test_opened_by_the_menu(self):
        self.assert_pastes_into_an_editor(self.open_by_menu)

    def assert_pastes_into_an_editor(self, open_history):
        with Mousepad(self.desktop, self.display) as editor:
            mark = self.program.mark()
            open_history()
            self.assertTrue(self.program.find_line("Recorded previous app: Mousepad", since=mark))
            self.display.type("quick")
            self.display.press("Return")
            self.wait_for_paste(mark)
            self.assertEqual(CHOSEN, editor.text_after_paste())


class PasteFromTint2Test(PasteFromPanel, PanelCase, PasteCase):
    panel_type = Tint2


class PasteFromLxqtPanelTest(PasteFromPanel, PanelCase, PasteCase):
    panel_type = LxqtPanel


class PauseFromPanel:
    """The panel draws the menu, in which one entry takes the place of another."""

    def test_nothing_is_recorded_in_a_pause(self):
        self.program.start()
        for _ in range(2):
            self.choose_first_of_pauses()
            self.wait_until_icon_says("Tessarine: Paused")
            copy_by_xclip(self.desktop, b"a secret of the pause")
            self.choose_first_of_pauses()
            self.wait_until_icon_says("Tessarine")
        self.copy("after the pauses")
        self.assertEqual(["after the pauses"], self.program.texts())

    def choose_first_of_pauses(self):
        # A panel that draws its menu anew, since the entries have changed, drops keys.
        retry_until(self.open_menu_of_pauses, lambda: len(self.display.menus()) > 1,
                    "the menu of the pauses", patience=2.0)
        self.display.press("Return")
        wait_until(lambda: not self.display.menus(), "the menus to close")

    def open_menu_of_pauses(self):
        if self.display.menus():
            self.display.press("Escape")
            wait_until(lambda: not self.display.menus(), "the menus to close")
        self.choose_in_menu("Down", "Down", "Right")

    def wait_until_icon_says(self, description):
        wait_until(lambda: f"<'{description}'>" in self.ask(
            self.address_of_item(), "/StatusNotifierItem", "org.kde.StatusNotifierItem",
            "IconAccessibleDesc"), description)

    def address_of_item(self):
        items = self.ask("org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
                         "org.kde.StatusNotifierWatcher", "RegisteredStatusNotifierItems")
        return re.search(r":[0-9.]+", items).group()

    def ask(self, destination, path, interface, name):
        """What gdbus prints for the property."""
        return self.desktop.run(
            "gdbus", "call", "--session", "--dest", destination, "--object-path", path,
            "--method", "org.freedesktop.DBus.Properties.Get", interface, name).decode()


class PauseFromLxqtPanelTest(PauseFromPanel, PanelCase):
    panel_type = LxqtPanel


class PauseFromXfcePanelTest(PauseFromPanel, PanelCase):
    panel_type = XfcePanel


class SlowClickTest(PanelCase):
    """A click that is let go only when its press has already closed the history."""

    def setUp(self):
        super().setUp()
        self.program.start()

    def test_it_leaves_the_history_closed(self):
        x, y = self.middle_of_icon()
        self.open_by_icon()
        mark = self.program.mark()
        self.display.press_button()
        self.wait_until_closed()
        self.display.let_go_of_button()
        self.copy("copied after the click")
        self.assertIsNone(self.history_window())
        self.display.click(x, y)
        self.wait_for_history_window()
        shown = [line for line in self.program.lines[mark:]
                 if "Showing clipboard history window" in line.text]
        self.assertEqual(1, len(shown))


if __name__ == "__main__":
    main()
