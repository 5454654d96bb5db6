#!/usr/bin/python3
"""What the desktop asks of our looks is followed by everything that is open, and at once."""
from gi.repository import Gio, GLib

from backdrop import Backdrop, Stripes
from case import main
from history_panel import GROUND_X, distance
from list_case import ListCase, text_entry
from settings_portal import SettingsPortal
from waiting import wait_until

LIGHT, DARK = (0xF6, 0xF6, 0xF8), (0x1E, 0x1F, 0x23)
LIGHT_RAISED, DARK_RAISED = (0xFB, 0xFB, 0xFC), (0x2A, 0x2B, 0x30)
LIGHT_SIDEBAR, DARK_SIDEBAR = (0xEC, 0xED, 0xF0), (0x26, 0x27, 0x2C)
WHITE, BLACK = (255, 255, 255), (0, 0, 0)
RIGHT_BUTTON = 3
ALERT_MIDDLE = 0.442  # Of the height of the window.


class AppearanceCase(ListCase):
    is_portal_silent = False

    def setUp(self):
        self.portal = SettingsPortal(self.desktop.env["DBUS_SESSION_BUS_ADDRESS"],
                                     self.is_portal_silent)
        self.addCleanup(self.portal.close)
        self.portal.prefer_dark(False)
        super().setUp()

    def entries(self):
        return [text_entry("second"), text_entry("first")]

    def pixel(self, x, y):
        """The red, green and blue of a place on the screen."""
        blue, green, red = self.display.pixels(x, y, 1, 1)[:3]
        return red, green, blue

    def in_window(self, x, y):
        return self.pixel(self.panel.x + x, self.panel.y + y)

    def wait_for_color(self, color, place, what):
        wait_until(lambda: place() == color,
                   lambda: f"{what} to be {color}; it is {place()}")

    def wait_for_ground(self, color):
        self.wait_for_color(color, lambda: self.in_window(340, 6), "the window")


class AppearanceTest(AppearanceCase):
    def test_the_choice_at_the_start_is_followed_by_the_window(self):
        self.program.end()
        self.portal.prefer_dark(True)
        self.program.start()
        self.open_list()
        self.wait_for_ground(DARK)

    def test_window_and_menu_change_while_they_are_open(self):
        self.open_list()
        self.wait_for_ground(LIGHT)
        self.panel.click_row(1, RIGHT_BUTTON)
        menu = self.wait_for_menu()
        x, y, width, _ = self.display.place(menu)
        edge = lambda: self.pixel(x + width // 2, y + 3)
        self.wait_for_color(LIGHT_RAISED, edge, "the menu")
        self.portal.prefer_dark(True)
        self.wait_for_ground(DARK)
        self.wait_for_color(DARK_RAISED, edge, "the menu")
        self.assertTrue(self.open_menus())

    def test_an_alert_changes_while_it_is_open(self):
        self.open_list()
        self.panel.click_row(1, RIGHT_BUTTON)
        self.wait_for_menu()
        self.display.type("n")  # A new tag.
        self.display.press("Return")
        self.wait_until_menu_closed()
        side = lambda: self.in_window(200, round(self.panel.height * ALERT_MIDDLE))
        self.wait_for_color(LIGHT_RAISED, side, "the alert")
        self.portal.prefer_dark(True)
        self.wait_for_color(DARK_RAISED, side, "the alert")
        self.display.type("travel")
        self.display.press("Return")
        wait_until(lambda: b"travel" in dict(self.program.rows("stringValue, tagsJSON"))["first"],
                   "the tag")

    def test_the_settings_change_while_they_are_open(self):
        self.open_list()
        self.display.press("ctrl+comma")
        window = self.display.wait_for_window(title="General")
        self.display.wait_until_active(window)
        x, y, _, height = self.display.place(window)
        sidebar = lambda: self.pixel(x + 90, y + height - 20)
        self.wait_for_color(LIGHT_SIDEBAR, sidebar, "the sidebar")
        self.portal.prefer_dark(True)
        self.wait_for_color(DARK_SIDEBAR, sidebar, "the sidebar")

    def test_the_accent_colors_the_selected_row(self):
        panel = self.open_list_at(0)
        ground = lambda: self.in_window(GROUND_X, 136)
        is_blue = lambda color: color[2] > color[0] + 60 and color[2] > color[1] + 60
        is_ochre = lambda color: color[0] > color[1] > color[2] + 40
        wait_until(lambda: is_blue(ground()), lambda: f"a blue row; it is {ground()}")
        self.portal.choose_accent(0.96, 0.77, 0)
        wait_until(lambda: is_ochre(ground()), lambda: f"an ochre row; it is {ground()}")
        wait_until(lambda: sum(ground()) < 303, lambda: f"white text to be readable on {ground()}")
        self.portal.choose_accent(-1, -1, -1)  # None.
        wait_until(lambda: is_blue(ground()), lambda: f"a blue row again; it is {ground()}")
        panel.wait_until_selected(0)

    def test_high_contrast_has_pure_grounds_and_strong_lines(self):
        self.open_list_at(0)
        self.portal.prefer_contrast(True)
        self.wait_for_ground(WHITE)
        self.settle()  # The selection may still be springing.
        for distance_from_edge in (0, 1):
            self.assertEqual(BLACK, self.in_window(340, distance_from_edge))
            self.assertEqual(BLACK, self.in_window(distance_from_edge, 250))
            row_line = self.in_window(340, 100 + 4 + distance_from_edge)
            self.assertLess(distance(BLACK, row_line), 6)
        self.assertEqual(WHITE, self.in_window(340, 2))
        self.portal.prefer_dark(True)
        self.wait_for_ground(BLACK)
        self.assertEqual(WHITE, self.in_window(340, 0))
        self.portal.prefer_contrast(False)
        self.wait_for_ground(DARK)

    def test_larger_texts_make_wider_pills(self):
        self.open_list()
        last = self.panel.pills()[-1]
        self.portal.scale_texts(1.25)
        wait_until(lambda: self.panel.pills()[-1] > last + 20,
                   lambda: f"wider pills; the last is at {self.panel.pills()[-1]}, was at {last}")
        self.portal.scale_texts(1.0)
        wait_until(lambda: self.panel.pills()[-1] == last, "the pills to be as they were")
        self.portal.scale_texts(50.0)
        wait_until(lambda: self.panel.pills()[-1] > last + 20, "wider pills")
        self.assertLess(self.panel.pills()[-1], self.panel.x + 680)

    def test_nonsense_changes_nothing(self):
        self.open_list()
        picture = self.panel.list_picture()
        for value in (GLib.Variant("s", "dark"), GLib.Variant("as", ["1"]), GLib.Variant("d", 1.0),
                      GLib.Variant("(ii)", (1, 1)), GLib.Variant("v", GLib.Variant("i", 1))):
            for key in ("color-scheme", "contrast", "accent-color", "reduced-motion"):
                self.portal.set("org.freedesktop.appearance", key, value)
            self.portal.set("org.gnome.desktop.interface", "text-scaling-factor",
                            GLib.Variant("s", "1.3"))
        self.portal.prefer_dark(True)  # What comes last is seen last.
        self.wait_for_ground(DARK)
        self.portal.prefer_dark(False)
        self.wait_for_ground(LIGHT)
        self.settle()
        self.assertEqual(picture, self.panel.list_picture())


class SilentPortalTest(AppearanceCase):
    is_portal_silent = True

    def test_a_portal_that_never_answers_is_not_waited_for(self):
        wait_until(lambda: self.portal.unanswered, "the question")
        self.open_list_at(1)
        self.wait_for_ground(LIGHT)
        self.portal.prefer_dark(True)  # It can still tell of changes.
        self.wait_for_ground(DARK)


class CompositorTest(AppearanceCase):
    """A compositor that comes or goes under the running program."""

    def corner(self):
        """What is between the rounder corner of a translucent window and the other one."""
        return self.in_window(7, 7)

    def backdrop(self):
        backdrop = Backdrop(self.desktop.env["DISPLAY"], top=(0, 90, 0), bottom=(0, 90, 0))
        self.addCleanup(backdrop.close)

    def is_translucent(self):
        green = self.corner()[1]
        return distance(self.corner(), (0, 90, 0)) < 30 and green > 60

    def start_compositor(self):
        compositor = self.desktop.spawn("picom", "--config", "/dev/null")
        wait_until(lambda: self.desktop.is_selection_owned("_NET_WM_CM_S0"), "the compositor")
        return compositor

    def end_compositor(self, compositor):
        compositor.terminate()
        compositor.wait()
        wait_until(lambda: not self.desktop.is_selection_owned("_NET_WM_CM_S0"), "its end")

    def test_the_next_opening_looks_right(self):
        self.backdrop()
        for _ in range(2):
            self.open_list()
            self.wait_for_ground(LIGHT)
            self.assertFalse(self.is_translucent(), self.corner())
            self.close_list()

            compositor = self.start_compositor()
            self.open_list()
            wait_until(self.is_translucent, lambda: f"a round corner; it is {self.corner()}")
            blended = self.in_window(340, 8)
            self.assertNotEqual(LIGHT, blended, "nothing shines through")
            self.assertLess(distance(LIGHT, blended), 40)
            self.close_list()
            self.end_compositor(compositor)

    def test_an_open_window_and_its_menus_stay_usable(self):
        self.backdrop()
        self.open_list()
        compositor = self.start_compositor()
        self.settle()
        self.wait_for_ground(LIGHT)
        self.panel.click_row(1, RIGHT_BUTTON)
        self.wait_for_menu()
        self.display.press("Escape")
        self.wait_until_menu_closed()
        self.close_list()

        self.open_list()
        self.end_compositor(compositor)
        self.settle()
        self.wait_for_ground(LIGHT)  # Nothing can shine through any more.
        self.panel.click_row(1, RIGHT_BUTTON)
        self.wait_for_menu()
        self.display.press("Escape")
        self.wait_until_menu_closed()


class BlurTest(AppearanceCase):
    """A compositor that blurs what shines through those windows which ask for it."""
    desktop_options = {"wm": "kwin_x11"}

    def setUp(self):
        super().setUp()
        stripes = Stripes(self.desktop.env["DISPLAY"])
        self.addCleanup(stripes.close)
        wait_until(lambda: self.desktop.is_selection_owned("_NET_WM_CM_S0"), "the compositor")

    def ask_kwin(self, what):
        self.portal.bus.call_sync(
            "org.kde.KWin", "/Effects", "org.kde.kwin.Effects", what, GLib.Variant("(s)", ("blur",)),
            None, Gio.DBusCallFlags.NONE, -1, None)

    def stripes(self):
        """How much two neighbouring lines differ, in the window where it is empty."""
        return distance(self.in_window(340, 400), self.in_window(340, 401))

    def lightness(self):
        return sum(self.in_window(340, 400))

    def test_blur_is_asked_for_as_long_as_it_is_offered(self):
        self.open_list()
        wait_until(lambda: self.stripes() > 15, lambda: f"stripes; {self.stripes()}")
        plain = self.lightness() + sum(self.in_window(340, 401))
        self.ask_kwin("loadEffect")
        wait_until(lambda: self.stripes() < 8, lambda: f"no stripes; {self.stripes()}")
        wait_until(lambda: 2 * self.lightness() < plain, "less to shine through than without blur")
        self.portal.prefer_contrast(True)
        self.wait_for_ground(WHITE)
        self.portal.prefer_contrast(False)
        wait_until(lambda: self.stripes() < 8, lambda: f"no stripes; {self.stripes()}")
        self.close_list()

        self.open_list()
        wait_until(lambda: self.stripes() < 8, lambda: f"no stripes; {self.stripes()}")
        self.ask_kwin("unloadEffect")
        wait_until(lambda: self.stripes() > 15, lambda: f"stripes; {self.stripes()}")

    def test_the_corners_are_not_blurred(self):
        self.ask_kwin("loadEffect")
        self.open_list()
        wait_until(lambda: self.stripes() < 8, lambda: f"no stripes; {self.stripes()}")
        corner = [self.in_window(2, y) for y in (2, 3)]
        self.assertGreater(distance(*corner), 600, corner)


if __name__ == "__main__":
    main()
