"""What every figure is measured with: a desktop, the program, and histories that it starts with."""
import os
import shutil
import statistics
import sys
import time

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
sys.path.insert(0, os.path.join(ROOT, "tests", "desktop"))

import corpus
from display import Display
from program import Program
from screen_watch import ScreenWatch
from selection_owner import SelectionOwner


class Session:
    """Each start of the program goes on a history of so many entries as it was made."""

    def __init__(self, desktop, program_path, repeats):
        self.desktop = desktop
        self.repeats = repeats
        self.display = Display(desktop.env["DISPLAY"])
        self.watch = ScreenWatch(desktop.env["DISPLAY"])
        self.owner = SelectionOwner(desktop.env["DISPLAY"])
        self.program = Program(desktop, program_path)
        self.count = None
        self.pristine = {}  # (entries, bytes of HTML in each): the data folder.
        self.copies = 0

    def end(self):
        self.program.end()

    # Starting

    def fresh_start(self, html_bytes=0):
        """Starts with a history of self.count entries, and lets the start come to rest."""
        pristine = self.pristine_data(html_bytes)
        self.program.end()
        shutil.rmtree(self.program.data)
        shutil.copytree(pristine, self.program.data)
        self.program.start()
        self.settle()

    def pristine_data(self, html_bytes):
        key = (self.count, html_bytes)
        if key not in self.pristine:
            self.pristine[key] = self.make_history(f"{self.count}-{html_bytes}", html_bytes)
        return self.pristine[key]

    def make_history(self, name, html_bytes):
        # The program makes the database; only it knows the schema.
        maker = Program(self.desktop, self.program.path, data=self.desktop.path(name))
        self.program.end()
        maker.start()
        maker.end()
        corpus.write_store(maker.store_path, self.count, html_bytes=html_bytes)
        corpus.write_settings(maker.settings_path)
        return maker.data

    def settle(self, seconds=1.0):
        """Lets work in the background end, so that it does not count for what comes next."""
        end = time.monotonic() + 30
        while time.monotonic() < end:
            before = self.program.cpu_nanoseconds()
            time.sleep(seconds)
            if self.program.cpu_nanoseconds() - before < 2_000_000:
                return

    # Measuring

    def next_text(self):
        """A text of 200 bytes that is like no other."""
        self.copies += 1
        return f"copy {self.copies} of this run {'abcdefghi ' * 20}"[:200].strip().ljust(200, "x")

    def median(self, measure, repeats=None):
        """The text of the median of measure(), which gives seconds, or None if nothing came."""
        return milliseconds([measure() for _ in range(repeats or self.repeats)])


def milliseconds(times):
    found = [t * 1000 for t in times if t is not None]
    if len(found) < len(times):
        return f"{len(times) - len(found)} of {len(times)} never came"
    return f"{statistics.median(found):.1f} ms ({min(found):.1f} to {max(found):.1f})"
