#!/usr/bin/python3
"""An owner of the clipboard that does not keep to the rules costs its own copy, and nothing else."""
import os
import statistics
import sys

from case import DesktopTest, main
from screen_watch import Area, ScreenWatch
from waiting import wait_until

HOSTILE_OWNER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "hostile_owner.py")
REACTION_SECONDS = 0.050


class HostileOwnerTest(DesktopTest):
    def setUp(self):
        super().setUp()
        self.program.start()
        self.copy("beta")
        self.copy("alpha")
        self.watch = ScreenWatch(self.desktop.env["DISPLAY"])
        self.addCleanup(self.watch.close)

    def start_hostile_owner(self, mode):
        before = self.display.selection_owner()
        owner = self.desktop.spawn(sys.executable, "-B", HOSTILE_OWNER, mode,
                                   "--offer", "UTF8_STRING:=" + "what never comes through " * 200)
        self.addCleanup(owner.wait, 5)
        self.addCleanup(owner.terminate)
        wait_until(lambda: self.display.selection_owner() != before, "the owner to take over")

    def reaction_times(self, count):
        """Times from a key in the search field to the changed list; two entries take turns."""
        window = self.open_window()
        x, y, width, height = self.display.place(window)
        rows = Area(x + 8, y + 110, width - 16, height - 130)
        seen = self.watch.settled_picture(rows)
        times = []
        for number in range(count):
            self.watch.forget()
            pressed_at = self.display.press("b" if number % 2 == 0 else "BackSpace")
            drawn_at = self.watch.wait_for_change(rows, seen)
            self.assertIsNotNone(drawn_at, "the window does not react")
            times.append(drawn_at - pressed_at)
            seen = self.watch.settled_picture(rows, quiet=0.05)
        self.display.press("Escape")
        return times

    def check(self, mode):
        self.start_hostile_owner(mode)
        times = self.reaction_times(20)
        print(f"{mode}: a key shows after {statistics.median(times) * 1000:.0f} ms, "
              f"at most {max(times) * 1000:.0f} ms", flush=True)
        self.assertLess(statistics.median(times), REACTION_SECONDS)
        # A machine that is busy elsewhere may hold up one frame; an owner may not hold up any.
        self.assertLess(max(times), 10 * REACTION_SECONDS)
        self.copy("the next copy")

    def test_one_that_never_answers(self):
        self.check("silent")

    def test_one_that_only_says_what_it_has(self):
        self.check("mute")

    def test_one_that_stops_half_way(self):
        self.check("half")

    def test_one_that_trickles(self):
        self.check("trickle")

    def test_one_that_dies_when_asked(self):
        self.check("dying")

    def test_one_that_dies_half_way(self):
        self.check("halfdying")


if __name__ == "__main__":
    main()
