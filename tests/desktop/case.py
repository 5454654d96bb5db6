"""The common ground of the desktop tests: a private desktop for each class, and a fresh history and
a fresh start of the program for each test."""
import argparse
import functools
import os
import shutil
import sys
import unittest

from clients import copy_by_xclip
from desktop import Desktop
from display import Display
from program import Program, connected
from selection_owner import SelectionOwner
from waiting import retry_until, wait_until

WINDOW_TITLE = "Clipboard History"
HOT_KEY = "alt+space"
OTHER_HOT_KEY = "ctrl+alt+v"
OTHER_HOT_KEY_SETTINGS = {"HotkeySettings": '{"keyCode":9,"modifiers":6144}'}

arguments = None


def showing_the_scene(test):
    """What was on the screen and in the output when the test failed, since both are gone later."""
    @functools.wraps(test)
    def with_scene(self):
        try:
            test(self)
        except unittest.SkipTest:
            raise
        except BaseException:
            self.show_scene(test.__name__)
            raise
    return with_scene


class DesktopTest(unittest.TestCase):
    desktop_options = {}
    hot_key = HOT_KEY

    def __init_subclass__(cls, **options):
        super().__init_subclass__(**options)
        # Those of a mixed-in class too; those of a base class have it already.
        for name in dir(cls):
            member = getattr(cls, name)
            if name.startswith("test_") and not hasattr(member, "__wrapped__"):
                setattr(cls, name, showing_the_scene(member))

    @classmethod
    def setUpClass(cls):
        cls.desktop = Desktop(**cls.desktop_options)
        cls.desktop.__enter__()
        cls.addClassCleanup(cls.desktop.__exit__)
        cls.display = Display(cls.desktop.env["DISPLAY"])
        cls.addClassCleanup(cls.display.close)

    def setUp(self):
        self.program = Program(self.desktop, arguments.program,
                               data=self.desktop.path(self._testMethodName))
        self.addCleanup(self.leave)

    def leave(self):
        self.program.end()
        shutil.rmtree(self.program.data, ignore_errors=True)

    def show_scene(self, name):
        print(f"--- the program printed in {name}:\n{self.program.output()}\n---", flush=True)
        try:
            print("--- the windows:", *self.display.scene(), sep="\n", flush=True)
        except Exception as problem:  # The failure itself is what must be told.
            print(f"--- no windows: {problem}", flush=True)
        if arguments.pictures:
            picture = os.path.join(arguments.pictures, f"{type(self).__name__}.{name}.png")
            try:
                self.desktop.screenshot(picture)
                print(f"--- the screen: {picture}", flush=True)
            except Exception as problem:  # The failure itself is what must be told.
                print(f"--- no picture: {problem}", flush=True)

    # Steps that many tests share

    def copy(self, text):
        """Has xclip copy the text, and returns once the database holds it."""
        copy_by_xclip(self.desktop, text.encode())
        self.program.wait_for_text(text)

    def copy_after_paste(self, text):
        """The same for the moments behind a paste, in which no copy is looked at."""
        retry_until(lambda: copy_by_xclip(self.desktop, text.encode()),
                    lambda: text in self.program.texts(), f"a row with {text!r}")

    def owner(self):
        owner = SelectionOwner(self.desktop.env["DISPLAY"])
        self.addCleanup(owner.close)
        return owner

    def history_window(self):
        return self.display.find_window(title=WINDOW_TITLE)

    def open_window(self):
        """Presses the hot key, and returns the window once it has the focus.

        Alt is let go only then, as people do it: a program that saw it go down and up, and nothing
        in between, would go to its menu bar.
        """
        *modifiers, key = self.hot_key.split("+")
        with self.display.holding(*modifiers):
            self.display.press(key)
            window = self.wait_for_history_window()
        # The program may hold the keyboard a moment longer than the window waits for the focus, and
        # a click that still counts as one with Alt is the window manager's.
        wait_until(lambda: not any(map(self.display.is_held, modifiers)),
                   "the hot key to be let go of", 5)
        return window

    def strike(self, *names):
        """Presses the hot key and then the other keys, all in one go: the server has them before
        any program hears of the first one."""
        self.display.press_all_at_once(self.hot_key, names)

    def wait_for_history_window(self, seconds=5.0):
        window = wait_until(self.history_window, "the history window", seconds)
        self.display.wait_until_active(window, seconds)
        return window

    def wait_until_closed(self, seconds=5.0):
        wait_until(lambda: self.history_window() is None, "the history window to close", seconds)

    def open_menus(self):
        """The windows of the program's menus; no window manager puts a frame around them."""
        return [window for window in self.display.root.query_tree().children
                if self.display.is_unframed(window)
                and self.display.window_class(window)[1] == "tessarine"]

    def wait_for_menu(self):
        return wait_until(self.open_menus, "the menu to open")[0]

    def wait_until_menu_closed(self):
        wait_until(lambda: not self.open_menus(), "the menu to close")

    def choose(self, query):
        """Opens the window, types the query, and presses Return."""
        mark = self.program.mark()
        self.open_window()
        self.display.type(query)
        self.display.press("Return")
        self.program.wait_for_line("Item copied to clipboard", since=mark)
        return mark

    def assert_intact(self):
        with connected(self.program.store_path) as store:
            self.assertEqual([("ok",)], store.execute("PRAGMA integrity_check").fetchall())

    def assert_alive(self):
        self.assertTrue(self.program.is_running(), "the program has ended")


def add_upkeep_option(parser):
    parser.add_argument("--upkeep", required=True, help="the program HistoryUpkeep")


def main(add_options=None):
    """Runs the tests of the script; add_options(parser) can declare options of its own, which are
    in arguments then."""
    global arguments
    parser = argparse.ArgumentParser()
    if add_options:
        add_options(parser)
    parser.add_argument("--program", required=True)
    parser.add_argument("--pictures", help="a folder for pictures of failed tests")
    arguments, rest = parser.parse_known_args()
    arguments.program = os.path.abspath(arguments.program)
    unittest.main(module="__main__", argv=sys.argv[:1] + rest, verbosity=2)
