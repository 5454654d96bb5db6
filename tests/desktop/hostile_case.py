"""The common ground of the tests with troublesome copies: the window goes on to react, the next
copies are captured, and no memory is kept."""
import statistics
import time

from case import DesktopTest
from screen_watch import Area, ScreenWatch
from waiting import wait_until

REACTION_SECONDS = 0.050
NEXT_COPIES = 10
KEPT_KILOBYTES = 16 * 1024


class HostileTest(DesktopTest):
    def setUp(self):
        super().setUp()
        self.program.start()
        self.copy("beta")
        self.copy("alpha")
        self.watch = ScreenWatch(self.desktop.env["DISPLAY"])
        self.addCleanup(self.watch.close)

    def check(self, trouble, count=20):
        """trouble() begins while the window is open; the window is watched for so many keys."""
        before = self.anonymous()
        rows = self.rows_of(self.open_window())
        seen = self.watch.settled_picture(rows)
        trouble()
        times = self.reaction_times(rows, seen, count)
        self.display.press("Escape")
        self.wait_until_closed()
        print(f"{self._testMethodName}: a key shows after {statistics.median(times) * 1000:.0f} ms, "
              f"at most {max(times) * 1000:.0f} ms", flush=True)
        self.assertLess(statistics.median(times), REACTION_SECONDS)
        # A machine that is busy elsewhere may hold up one frame; an owner may not hold up any.
        self.assertLess(max(times), 10 * REACTION_SECONDS)
        self.check_next_copies()
        wait_until(lambda: self.anonymous() < before + KEPT_KILOBYTES,
                   lambda: f"memory to be given back: {before} kB became {self.anonymous()} kB", 20)
        self.assert_alive()

    def rows_of(self, window):
        x, y, width, height = self.display.place(window)
        return Area(x + 8, y + 110, width - 16, height - 130)

    def anonymous(self):
        return self.program.status_number("smaps_rollup", "Anonymous")

    def reaction_times(self, rows, seen, count):
        """Times from a key in the search field to the changed list; two entries take turns."""
        times = []
        for number in range(count):
            self.watch.forget()
            pressed_at = self.display.press("b" if number % 2 == 0 else "BackSpace")
            drawn_at = self.watch.wait_for_change(rows, seen)
            self.assertIsNotNone(drawn_at, "the window does not react")
            times.append(drawn_at - pressed_at)
            seen = self.watch.settled_picture(rows, quiet=0.05)
        return times

    def check_next_copies(self):
        owner = self.owner()
        texts = [f"copied behind it: {number}" for number in range(NEXT_COPIES)]
        for text in texts:
            mark, copied_at = self.program.mark(), owner.own_text(text)
            line = self.program.wait_for_line(text, since=mark)
            self.assertLess(line.time - copied_at, 10 * REACTION_SECONDS, text)
            time.sleep(0.020)
        self.program.wait_for_text(texts[-1])
        self.assertEqual(texts[::-1], self.program.texts()[:NEXT_COPIES])
