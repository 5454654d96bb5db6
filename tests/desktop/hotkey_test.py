#!/usr/bin/python3
"""The hot key on real desktops: taken and freed, held, on other keyboards, and beside other programs
that want the keyboard."""
import os
import re
import shutil
import signal
import tempfile

from case import HOT_KEY, OTHER_HOT_KEY_SETTINGS, DesktopTest, main
from clients import Mousepad, XTerm
from desktop import OPENBOX_CONFIGURATION, without_keybinding
from waiting import Late, retry_until, wait_until
from Xlib import X

# X numbers of keys.
ALT, CONTROL, SPACE, LETTER_V = 64, 37, 65, 55

REGISTERED = "Hotkey registered successfully"
REFUSED = "Failed to register hotkey: 10"
TRIGGERED = "Hotkey triggered"


class HotkeyTest(DesktopTest):
    def tearDown(self):
        self.desktop.run("setxkbmap", "us")

    def triggered_count(self):
        return self.program.output().count(TRIGGERED)

    def test_a_held_key_counts_once(self):
        self.program.start()
        self.desktop.run("xset", "r", "rate", "50", "50")
        self.addCleanup(self.desktop.run, "xset", "r", "rate")
        self.display.hold("alt")
        self.display.hold("space")
        try:
            # Fifty repeats of it.
            with self.assertRaises(Late):
                wait_until(lambda: self.triggered_count() > 1, "a second press", seconds=1)
        finally:
            self.display.let_go("space")
            self.display.let_go("alt")
        self.wait_for_history_window()
        self.assertEqual(1, self.triggered_count())
        self.display.press(HOT_KEY)
        self.wait_until_closed()

    def test_it_works_on_other_keyboards(self):
        self.program.write_settings(OTHER_HOT_KEY_SETTINGS)
        self.program.start()
        for layouts, group in (("ru", 0), ("us,ru", 0), ("us,ru", 1), ("cn", 0)):
            with self.subTest(layouts=layouts, group=group):
                self.desktop.run("setxkbmap", layouts)
                self.lock_group(group)
                self.display.press_keys([CONTROL, ALT, LETTER_V])
                self.wait_for_history_window()
                self.display.press_keys([CONTROL, ALT, LETTER_V])
                self.wait_until_closed()

    def lock_group(self, group):
        self.desktop.run(
            "python3", "-c", "import ctypes, sys\nx = ctypes.CDLL('libX11.so.6')\n"
            "x.XOpenDisplay.restype = ctypes.c_void_p\nd = ctypes.c_void_p(x.XOpenDisplay(None))\n"
            "x.XkbLockGroup(d, 0x100, int(sys.argv[1]))\nx.XSync(d, 0)\n", str(group))

    def test_a_key_of_another_program_is_taken_when_that_gives_it_back(self):
        code = self.display.keycode("space")
        self.display.root.grab_key(code, X.Mod1Mask, False, X.GrabModeAsync, X.GrabModeAsync)
        self.display.connection.sync()
        self.program.start()
        self.program.wait_for_line(REFUSED)
        self.display.root.ungrab_key(code, X.Mod1Mask)
        self.display.connection.sync()
        with XTerm(self.desktop, self.display):
            self.program.wait_for_line(REGISTERED)
            self.open_window()

    def test_a_menu_of_another_program_keeps_the_key_until_it_closes(self):
        self.program.start()
        self.program.wait_for_line("While a menu of another program is open, all keys go to it")
        with Mousepad(self.desktop, self.display):
            self.open_foreign_menu()
            self.display.press(HOT_KEY)
            self.display.press("Escape")
            wait_until(self.is_keyboard_free, "the menu to give the keyboard back")
            self.open_window()
            self.assertEqual(1, self.triggered_count())

    def test_a_window_opened_beside_a_menu_gets_the_keys_when_it_closes(self):
        self.copy_after_start("an entry")
        with Mousepad(self.desktop, self.display):
            self.open_foreign_menu()
            self.desktop.spawn(self.program.path, env=self.program.env)
            self.wait_for_history_window()
            with self.assertRaises(Late):
                self.wait_until_closed(seconds=1)
            self.display.press("Escape")
            wait_until(self.is_keyboard_free, "the menu to give the keyboard back")
            self.display.press("Return")
            self.program.wait_for_line("Item copied to clipboard")

    def open_foreign_menu(self):
        """Looks for its window: asking for the keyboard could take that from the menu. An editor
        that has just come up lets the first keys fall."""
        retry_until(lambda: self.display.press("alt+f"), self.display.is_menu_open, "the menu")
        self.assertFalse(self.is_keyboard_free())

    def is_keyboard_free(self):
        status = self.display.root.grab_keyboard(
            False, X.GrabModeAsync, X.GrabModeAsync, X.CurrentTime)
        self.display.connection.ungrab_keyboard(X.CurrentTime)
        self.display.connection.sync()
        return status == X.GrabSuccess

    def test_a_grab_of_the_keyboard_does_not_close_the_window(self):
        self.copy_after_start("an entry")
        window = self.open_window()
        status = self.display.root.grab_keyboard(
            False, X.GrabModeAsync, X.GrabModeAsync, X.CurrentTime)
        self.assertEqual(X.GrabSuccess, status)
        try:
            # A program that takes the keyboard is no window that takes the focus.
            with self.assertRaises(Late):
                self.wait_until_closed(seconds=1)
        finally:
            self.display.connection.ungrab_keyboard(X.CurrentTime)
            self.display.connection.sync()
        self.assertTrue(self.display.is_active(window))
        self.display.press("Return")
        self.program.wait_for_line("Item copied to clipboard")

    def test_it_closes_the_window_whose_menu_is_open(self):
        self.copy_after_start("an entry")
        for _ in range(3):
            self.open_window()
            self.display.press("Down")
            self.display.press("Menu")
            self.wait_for_menu()
            count = self.triggered_count()
            self.display.press(HOT_KEY)
            self.wait_until_closed()
            self.wait_until_menu_closed()
            self.assertEqual(count + 1, self.triggered_count())

    def test_a_program_that_its_terminal_stops_holds_up_no_keys(self):
        self.program.is_job = True
        self.program.start()
        with XTerm(self.desktop, self.display) as terminal:
            self.stop_program()
            self.display.press(HOT_KEY)
            self.display.type("typed meanwhile")
            self.display.press("Return")
            wait_until(lambda: "typed meanwhile" in terminal.written_text(),
                       lambda: f"the keys; there is {terminal.written_text()}")
            self.assertTrue(self.is_keyboard_free())
            mark = self.program.mark()
            self.continue_program()
            self.program.wait_for_line(REGISTERED, since=mark)
            self.open_window()
            self.assertEqual(1, self.triggered_count())

    def test_keys_held_back_go_on_when_the_program_is_stopped(self):
        self.program.is_job = True
        self.program.start()
        with XTerm(self.desktop, self.display):
            self.display.hold("alt")
            self.display.hold("space")
            try:
                self.stop_program()
                self.assertTrue(self.is_keyboard_free())
            finally:
                self.display.let_go("space")
                self.display.let_go("alt")
                mark = self.program.mark()
                self.continue_program()
            self.program.wait_for_line(REGISTERED, since=mark)
            self.copy("what it deals with later than with the press")
            if self.triggered_count():
                self.wait_for_history_window()
                self.display.press("Escape")
                self.wait_until_closed()
            count = self.triggered_count()
            self.open_window()
            wait_until(lambda: self.triggered_count() == count + 1, "one more press to be told")

    def stop_program(self):
        self.program.process.send_signal(signal.SIGTSTP)
        wait_until(lambda: self.program.status_text("status", "State") == "T (stopped)",
                   "the program to be stopped")

    def continue_program(self):
        self.program.process.send_signal(signal.SIGCONT)

    def copy_after_start(self, text):
        self.program.start()
        self.copy(text)


class TakenHotkeyTest(DesktopTest):
    """Under a window manager that opens the window menu with the key."""

    @classmethod
    def setUpClass(cls):
        folder = tempfile.mkdtemp(prefix="tessarine-openbox-")
        cls.addClassCleanup(shutil.rmtree, folder)
        cls.configuration = os.path.join(folder, "rc.xml")
        cls.desktop_options = {"wm": "openbox --config-file " + cls.configuration}
        cls.bind_key()
        super().setUpClass()
        cls.desktop.spawn("dunst", "-print")
        # Asking the service itself would have the bus start another one.
        wait_until(lambda: b"true" in cls.desktop.run(
            "gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path", "/",
            "--method", "org.freedesktop.DBus.NameHasOwner", "org.freedesktop.Notifications"),
            "dunst")

    @classmethod
    def bind_key(cls):
        shutil.copy(OPENBOX_CONFIGURATION, cls.configuration)

    def free_key(self):
        with open(OPENBOX_CONFIGURATION, encoding="utf-8") as file:
            configuration = without_keybinding(file.read(), "A-space")
        with open(self.configuration, "w", encoding="utf-8") as file:
            file.write(configuration)
        self.addCleanup(self.desktop.run, "openbox", "--reconfigure")
        self.addCleanup(self.bind_key)
        self.desktop.run("openbox", "--reconfigure")

    def shown(self):
        """The titles that dunst has shown so far."""
        return re.findall(r"summary: '(.*)'", self.desktop.log_of("dunst"))

    def test_the_person_is_told_once(self):
        self.desktop.run("dunstify", "earlier")  # Behind what other tests have caused.
        wait_until(lambda: "earlier" in self.shown(), self.shown)
        before = len(self.shown())
        self.program.start()
        self.program.wait_for_line(REFUSED)
        wait_until(lambda: len(self.shown()) > before, "a notification")
        self.display.wait_for_window(window_class="Dunst")
        self.assertIn("body: 'Another program has this key combination. Choose another one under "
                      "Settings > Shortcuts.'", self.desktop.log_of("dunst"))

        self.program.end()
        self.program.start()
        self.program.wait_for_line(REFUSED)
        self.desktop.run("dunstify", "later")
        wait_until(lambda: "later" in self.shown(), self.shown)
        self.assertEqual(["Alt+Space does not open the clipboard history", "later"],
                         self.shown()[before:])

    def test_without_the_key_the_history_opens_by_a_second_start(self):
        self.program.start()
        self.program.wait_for_line(REFUSED)
        self.desktop.spawn(self.program.path, env=self.program.env)
        self.wait_for_history_window()

    def test_the_key_is_taken_once_it_is_freed(self):
        self.program.start()
        self.program.wait_for_line(REFUSED)
        mark = self.program.mark()
        self.free_key()
        self.program.wait_for_line(REGISTERED, since=mark)
        self.open_window()


if __name__ == "__main__":
    main()
