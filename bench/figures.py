#!/usr/bin/python3
"""Measures the program from outside, on a private desktop with openbox, and prints a table.

    figures.py [--program build/release/bin/tessarine] [--count 10000] [--repeats 15] [--only TEXT]

Times are medians. "Drawn" is the moment at which the server reported the drawing after which the
rows looked as they finally do. The keys come by XTEST, the copies from a client of our own, and the
moment from which time counts is the one at which they are sent.
"""
import argparse
import os
import shutil
import signal
import sqlite3
import statistics
import sys
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
sys.path.insert(0, os.path.join(ROOT, "tests", "desktop"))
sys.dont_write_bytecode = True

import corpus
from desktop import Desktop
from display import Display
from program import STARTED, Program
from screen_watch import Area, ScreenWatch
from selection_owner import SelectionOwner
from waiting import wait_until

WINDOW_TITLE = "Clipboard History"
HOT_KEY = "alt+space"
SEARCH_KEY = "q"
LETTERS_200 = "abcdefghi " * 20


class BareWaker:
    """A process that wakes twice a second, as the program does, and does nothing at all. Waking
    costs more on some machines than what is done awake."""

    def __enter__(self):
        self.pid = os.fork()
        if self.pid == 0:
            while True:
                time.sleep(0.5)
        return self

    def __exit__(self, *_):
        os.kill(self.pid, signal.SIGKILL)
        os.waitpid(self.pid, 0)

    def cpu_nanoseconds(self):
        with open(f"/proc/{self.pid}/schedstat", encoding="utf-8") as source:
            return int(source.read().split()[0])


class Bench:
    def __init__(self, desktop, options):
        self.desktop = desktop
        self.count = options.count
        self.repeats = options.repeats
        self.idle_seconds = options.idle
        self.display = Display(desktop.env["DISPLAY"])
        self.watch = ScreenWatch(desktop.env["DISPLAY"])
        self.owner = SelectionOwner(desktop.env["DISPLAY"])
        self.program = Program(desktop, os.path.abspath(options.program))
        self.copies = 0

    # Preparations

    def prepare_history(self):
        """A data folder with the corpus; later starts get a copy of it as it was."""
        self.program.start()
        self.program.end()
        size = corpus.write_store(self.program.store_path, self.count)
        corpus.write_settings(self.program.settings_path)
        self.pristine = self.program.data + ".pristine"
        shutil.copytree(self.program.data, self.pristine)
        print(f"{self.count} entries, {size / 1e6:.1f} MB of text", flush=True)

    def fresh_start(self):
        self.program.end()
        shutil.rmtree(self.program.data)
        shutil.copytree(self.pristine, self.program.data)
        self.program.start()

    def settle(self, seconds=1.0):
        """Lets start-up work in the background end, so that it does not count for the next."""
        end = time.monotonic() + 30
        while time.monotonic() < end:
            before = self.program.cpu_nanoseconds()
            time.sleep(seconds)
            if self.program.cpu_nanoseconds() - before < 2_000_000:
                return

    def next_text(self):
        self.copies += 1
        return (f"copy {self.copies} of this run {LETTERS_200}")[:200].strip().ljust(200, "x")

    def median(self, measure):
        times = [measure() for _ in range(self.repeats)]
        found = [t for t in times if t is not None]
        if len(found) < len(times):
            return f"{len(times) - len(found)} of {len(times)} never came"
        found = [t * 1000 for t in found]
        return (f"{statistics.median(found):.1f} ms "
                f"({min(found):.1f} to {max(found):.1f})")

    # The rows of the table

    def start(self):
        def once():
            self.program.end()
            started_at = time.monotonic()
            self.program.start()
            return self.program.find_line(STARTED).time - started_at
        return self.median(once)

    def window(self):
        return self.display.find_window(title=WINDOW_TITLE)

    def rows_area(self):
        """Where the window will be: it opens at the place where it was."""
        window = self.window()
        x, y, width, height = self.display.place(window)
        # Without the frame, the search field with its caret, and the scroll bar.
        return Area(x + 8, y + 104, width - 40, height - 104 - 28)

    def close_window(self):
        if self.window():
            self.display.press(HOT_KEY)
            wait_until(lambda: self.window() is None, "the window to close")

    def open_and_settle(self):
        self.close_window()
        self.display.press(HOT_KEY)
        window = wait_until(self.window, "the window to open")
        self.display.wait_until_active(window)
        area = self.rows_area()
        return area, self.watch.settled_picture(area)

    def hot_key_to_frame(self):
        self.fresh_start()
        self.settle()
        area, wanted = self.open_and_settle()

        def once():
            self.close_window()
            self.settle(0.3)
            old = self.watch.settled_picture(area)
            self.watch.forget()
            pressed_at = self.display.press(HOT_KEY)
            drawn_at = self.watch.wait_for_picture(area, wanted, old)
            return drawn_at and drawn_at - pressed_at
        answer = self.median(once)
        self.close_window()
        return answer

    def first_opening(self):
        """The very first opening after a start, which people meet as well."""
        self.fresh_start()
        area, wanted = self.open_and_settle()

        def once():
            self.fresh_start()
            self.settle(0.5)
            old = self.watch.settled_picture(area)
            self.watch.forget()
            pressed_at = self.display.press(HOT_KEY)
            drawn_at = self.watch.wait_for_picture(area, wanted, old)
            return drawn_at and drawn_at - pressed_at
        answer = self.median(once)
        self.close_window()
        return answer

    def key_to_narrowed_list(self):
        self.fresh_start()
        self.settle()
        area, whole = self.open_and_settle()
        self.display.press(SEARCH_KEY)
        narrowed = self.watch.settled_picture(area)
        if narrowed == whole:
            return "the search changes nothing that can be seen"

        def once():
            # Opened anew each time, so that it is the first letter with nothing prepared by another.
            self.close_window()
            self.open_and_settle()
            self.settle(0.3)
            self.watch.forget()
            pressed_at = self.display.press(SEARCH_KEY)
            drawn_at = self.watch.wait_for_picture(area, narrowed, whole)
            return drawn_at and drawn_at - pressed_at
        answer = self.median(once)
        self.close_window()
        return answer

    def copy_to_list(self):
        self.fresh_start()
        self.settle()

        def once():
            mark = self.program.mark()
            copied_at = self.owner.own_text(self.next_text())
            line = self.program.wait_for_line("New clipboard item", since=mark, seconds=5)
            self.settle(0.2)
            return line.time - copied_at
        return self.median(once)

    def copy_to_row(self):
        self.fresh_start()
        self.settle()
        store = sqlite3.connect(f"file:{self.program.store_path}?mode=ro", uri=True)

        def once():
            text = self.next_text()
            copied_at = self.owner.own_text(text)
            end = time.monotonic() + 5
            while time.monotonic() < end:
                newest = store.execute("SELECT stringValue FROM ClipboardHistoryRecord "
                                       "WHERE deletedAt IS NULL ORDER BY timestamp DESC LIMIT 1")
                if newest.fetchone()[0] == text:
                    row_at = time.monotonic()
                    self.settle(0.2)
                    return row_at - copied_at
                time.sleep(0.0003)
            return None
        answer = self.median(once)
        store.close()
        return answer

    def kept_copies(self, distance):
        self.fresh_start()
        self.settle()
        texts = [self.next_text() for _ in range(200)]
        first = last = self.owner.own_text(texts[0])
        for text in texts[1:]:
            # From the last one, and not from the first: a stall of ours is not made up for by haste.
            time.sleep(max(0, last + distance - time.monotonic()))
            last = self.owner.own_text(text)
        self.settle()
        kept = len(set(texts) & set(self.program.texts()))
        return f"{kept} of 200 (sent in {last - first:.2f} s)"

    def bytes_written(self):
        self.fresh_start()
        self.settle()
        copies = 100
        before = self.program.status_number("io", "wchar")
        for _ in range(copies):
            text = self.next_text()
            self.owner.own_text(text)
            self.program.wait_for_text(text)
        self.settle()
        written = self.program.status_number("io", "wchar") - before
        return f"{written / copies / 1000:.1f} kB (mean of {copies})"

    def memory(self):
        self.fresh_start()
        self.settle()
        anonymous = self.program.status_number("smaps_rollup", "Anonymous")
        pss = self.program.status_number("smaps_rollup", "Pss")
        return f"{anonymous / 1024:.1f} MiB; PSS {pss / 1024:.1f} MiB"

    def memory_after_search(self):
        self.fresh_start()
        self.open_and_settle()
        self.display.type("qua")
        self.settle()
        self.close_window()
        self.settle()
        anonymous = self.program.status_number("smaps_rollup", "Anonymous")
        pss = self.program.status_number("smaps_rollup", "Pss")
        return f"{anonymous / 1024:.1f} MiB; PSS {pss / 1024:.1f} MiB"

    def idle(self):
        self.fresh_start()
        self.settle()
        with BareWaker() as waker:
            floor = waker.cpu_nanoseconds()
            cpu, switches = self.program.cpu_nanoseconds(), self.program.voluntary_switches()
            time.sleep(self.idle_seconds)
            cpu = self.program.cpu_nanoseconds() - cpu
            switches = self.program.voluntary_switches() - switches
            floor = waker.cpu_nanoseconds() - floor
        return (f"{cpu / 1e6:.1f} ms; {switches} "
                f"(a process that wakes as often and does nothing: {floor / 1e6:.1f} ms)")

    def rows(self):
        """What is measured, what to reach now, how."""
        return (
            ("start to fully initialized", "150 ms", self.start),
            ("hot key to window mapped and drawn", "40 ms", self.hot_key_to_frame),
            ("the same, first opening after a start", "", self.first_opening),
            ("first letter in the search field to narrowed list drawn", "60 ms",
             self.key_to_narrowed_list),
            ("selection taken with 200 bytes to entry in the list", "15 ms", self.copy_to_list),
            ("the same, to the row in the database", "40 ms", self.copy_to_row),
            ("200 copies at 20 ms distance: kept", "200", lambda: self.kept_copies(0.020)),
            ("200 copies at 5 ms distance: kept", "later 200", lambda: self.kept_copies(0.005)),
            ("bytes written per captured 200-byte text", "40 kB", self.bytes_written),
            ("anonymous memory, window never shown", "90 MiB", self.memory),
            ("the same, after a search and the window closed", "", self.memory_after_search),
            (f"idle, {self.idle_seconds} s: CPU; voluntary switches", "5 ms; 200", self.idle),
        )


def main():
    parser = argparse.ArgumentParser(description="Measures the program and prints a table.")
    parser.add_argument("--program", default=os.path.join(ROOT, "build/release/bin/tessarine"))
    parser.add_argument("--count", type=int, default=10_000, help="entries of the history")
    parser.add_argument("--repeats", type=int, default=15)
    parser.add_argument("--idle", type=int, default=60, help="seconds of the idle measurement")
    parser.add_argument("--only", help="measure only the rows with this text")
    options = parser.parse_args()
    with Desktop() as desktop:
        bench = Bench(desktop, options)
        bench.prepare_history()
        print(f"{'What':<58} {'Reach':<10} Measured")
        for what, goal, measure in bench.rows():
            if options.only and options.only not in what:
                continue
            print(f"{what:<58} {goal:<10} {measure()}", flush=True)
        bench.program.end()


if __name__ == "__main__":
    main()
