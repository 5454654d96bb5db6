"""What a copy costs, and how soon it is in the history and on the disk.

The copies come from a client of our own, and time counts from the moment at which the server is told
of them.
"""
import contextlib
import os
import sqlite3
import statistics
import time

import screenshot
from main_thread import MainThreadWatch
from session import milliseconds
from waiting import wait_until
from window_figures import WindowFigures

NEWEST = ("SELECT {} FROM ClipboardHistoryRecord WHERE deletedAt IS NULL "
          "ORDER BY timestamp DESC LIMIT 1")
SCREENSHOTS = 5
LARGE_LINES = 200_000


class CopyFigures:
    def __init__(self, session):
        self.session = session
        self.program = session.program
        self.screenshots = []

    def rows(self):
        return (
            ("selection taken with 200 bytes to entry in the list", "8 ms", self.copy_to_list),
            ("the same, to the row in the database", "40 ms", self.copy_to_row),
            ("10 MB to entry in the list; main thread away", "100 ms; 10 ms",
             self.large_copy_to_list),
            ("200 copies at 20 ms distance: kept", "200", lambda: self.kept_copies(0.020)),
            ("200 copies at 5 ms distance: kept", "later 200", lambda: self.kept_copies(0.005)),
            ("CPU per captured 200-byte text, whole program", "3 ms", self.cpu_per_copy),
            ("bytes written per captured 200-byte text (wchar)", "12 kB", self.bytes_written),
            ("screenshot as PNG to entry, file, thumbnail; CPU; main thread away",
             "200 ms; 0.5 s; 10 ms", self.screenshot),
            ("the same with the window open", "", self.screenshot_with_window),
        )

    def copy_to_list(self):
        def arrived(_):
            line = self.program.wait_for_line("New clipboard item", since=self.mark, seconds=5)
            return line.time
        self.session.fresh_start()
        return self.timed_copies(arrived)

    def large_copy_to_list(self):
        self.session.fresh_start()
        with MainThreadWatch(self.program.pid) as watch:
            answer = self.session.median(self.copy_large_text)
        return f"{answer}; {watch.longest * 1000:.1f} ms"

    def copy_large_text(self):
        mark, path = self.program.mark(), self.session.desktop.path("large-text")
        with open(path, "w", encoding="utf-8") as file:
            file.write(f"{self.session.next_text()}\n" +
                       "fifty bytes and not one more are on each line, ok\n" * LARGE_LINES)
        client, copied_at = self.own_by_xclip(path, "UTF8_STRING")
        line = self.program.wait_for_line("New clipboard item", since=mark, seconds=5)
        self.session.settle(0.5)
        client.terminate()
        client.wait()
        return line.time - copied_at

    def own_by_xclip(self, path, target):
        """The client, and the moment at which it owned the clipboard."""
        display = self.session.display
        owner = display.selection_owner()
        client = self.session.desktop.spawn("xclip", "-quiet", "-selection", "clipboard",
                                            "-target", target, "-in", path)
        wait_until(lambda: display.selection_owner() not in (0, owner),
                   "xclip to own the clipboard", every=0.0002)
        return client, time.monotonic()

    def copy_to_row(self):
        self.session.fresh_start()
        with self.reading() as store:
            return self.timed_copies(lambda text: self.row_at(store, text))

    def row_at(self, store, text):
        end = time.monotonic() + 5
        while time.monotonic() < end:
            if store.execute(NEWEST.format("stringValue")).fetchone()[0] == text:
                return time.monotonic()
            time.sleep(0.0003)
        return None

    def timed_copies(self, arrived):
        """The median time from a copy to arrived(text), which gives the moment."""
        def once():
            self.mark = self.program.mark()
            text = self.session.next_text()
            copied_at = self.session.owner.own_text(text)
            arrived_at = arrived(text)
            self.session.settle(0.2)
            return arrived_at and arrived_at - copied_at
        return self.session.median(once)

    def send(self, count, distance):
        """Copies texts, that far apart in seconds; returns them, and how long it took."""
        texts = [self.session.next_text() for _ in range(count)]
        first = last = self.session.owner.own_text(texts[0])
        for text in texts[1:]:
            # From the last one, and not from the first: a stall of ours is not made up for by haste.
            time.sleep(max(0, last + distance - time.monotonic()))
            last = self.session.owner.own_text(text)
        return texts, last - first

    def kept_copies(self, distance):
        self.session.fresh_start()
        texts, seconds = self.send(200, distance)
        self.session.settle()
        kept = len(set(texts) & set(self.program.texts()))
        return f"{kept} of 200 (sent in {seconds:.2f} s)"

    def cpu_per_copy(self):
        self.session.fresh_start()
        copies, distance = 200, 0.050
        idle = self.cpu_of(lambda: time.sleep(copies * distance))
        busy = self.cpu_of(lambda: self.send(copies, distance))
        return f"{(busy - idle) / copies / 1e6:.2f} ms (mean of {copies})"

    def cpu_of(self, act):
        before = self.program.cpu_nanoseconds()
        act()
        time.sleep(0.2)
        return self.program.cpu_nanoseconds() - before

    def bytes_written(self):
        self.session.fresh_start()
        copies = 100
        before = self.program.status_number("io", "wchar")
        for _ in range(copies):
            text = self.session.next_text()
            self.session.owner.own_text(text)
            self.program.wait_for_text(text)
        self.session.settle()
        written = self.program.status_number("io", "wchar") - before
        return f"{written / copies / 1000:.1f} kB (mean of {copies})"

    def reading(self):
        return contextlib.closing(
            sqlite3.connect(f"file:{self.program.store_path}?mode=ro", uri=True))

    # A large picture

    def screenshot(self):
        self.session.fresh_start()
        return self.screenshot_now()

    def screenshot_with_window(self):
        self.session.fresh_start()
        window = WindowFigures(self.session)
        window.open_and_settle()
        answer = self.screenshot_now()
        window.close_window()
        return answer

    def screenshot_now(self):
        if not self.screenshots:
            self.screenshots = [screenshot.write(self.session.desktop, number)
                                for number in range(SCREENSHOTS)]
        with self.reading() as store:
            measured = [self.copy_screenshot(store, path) for path in self.screenshots]
        times, cpu, away, has_files = zip(*measured)
        size = statistics.mean(os.path.getsize(path) for path in self.screenshots)
        return (f"{milliseconds(times)}; {statistics.median(cpu) / 1e9:.2f} s; "
                f"{max(away) * 1000:.1f} ms ({size / 1e6:.1f} MB"
                f"{'' if all(has_files) else '; NO FILES: only the row was waited for'})")

    def copy_screenshot(self, store, path):
        """Seconds until all is stored, nanoseconds of the processors, the longest time in seconds
        that the main thread was away from its events, and whether there are files."""
        self.session.settle(0.5)
        known = self.newest_picture(store)
        cpu = self.program.cpu_nanoseconds()
        with MainThreadWatch(self.program.pid) as watch:
            client, copied_at = self.own_by_xclip(path, "image/png")
            wait_until(lambda: self.newest_picture(store) != known, "the row of the picture", 20,
                       every=0.001)
            names = self.newest_picture(store)[1:]
            has_files = all(name and os.path.exists(os.path.join(self.program.images_path, name))
                            for name in names)
            stored_at = time.monotonic()
            self.session.settle(0.5)
        cpu = self.program.cpu_nanoseconds() - cpu
        client.terminate()
        client.wait()
        return stored_at - copied_at, cpu, watch.longest, has_files

    @staticmethod
    def newest_picture(store):
        return store.execute(
            "SELECT id, imageFileName, imageThumbnailFileName FROM ClipboardHistoryRecord "
            "WHERE contentTypeRaw = 'image' ORDER BY rowid DESC LIMIT 1").fetchone()
