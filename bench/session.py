"""What every figure is measured with: a desktop, the program, and histories that it starts with."""
import math
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


ENOUGH_FOR_SHARES = 40


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
        self.pristine = {}  # (entries, what they are made of): the data folder.
        self.copies = 0

    def end(self):
        self.program.end()

    # Starting

    def fresh_start(self, html_bytes=0, is_marked=False, has_pictures=False):
        """Starts with a history of self.count entries, and lets the start come to rest. In a marked
        one some entries are favourites, and some have a tag."""
        pristine = self.pristine_data(html_bytes, is_marked, has_pictures)
        self.program.end()
        shutil.rmtree(self.program.data)
        shutil.copytree(pristine, self.program.data)
        self.program.start()
        self.settle()

    def pristine_data(self, *recipe):
        key = (self.count, *recipe)
        if key not in self.pristine:
            self.pristine[key] = self.make_history("-".join(map(str, key)), *recipe)
        return self.pristine[key]

    def make_history(self, name, html_bytes, is_marked, has_pictures):
        # The program makes the database; only it knows the schema.
        maker = Program(self.desktop, self.program.path, data=self.desktop.path(name))
        self.program.end()
        maker.start()
        maker.end()
        corpus.write_store(maker.store_path, self.count, html_bytes=html_bytes)
        if has_pictures:
            names = corpus.make_some_pictures(maker.store_path)
            self.write_pictures(maker.images_path, names)
        tags = corpus.mark_some(maker.store_path) if is_marked else ()
        corpus.write_settings(maker.settings_path, tags)
        return maker.data

    def write_pictures(self, folder, names):
        """One picture under all the names, and thumbnails of it as the program makes them."""
        os.makedirs(folder, exist_ok=True)
        whole, thumbnail = (self.desktop.path(name) for name in ("whole.jpg", "thumbnail.jpg"))
        self.desktop.run("convert", "-size", "320x200", "plasma:tomato-steelblue", whole)
        self.desktop.run("convert", whole, "-resize", "200x200", "-quality", "70", thumbnail)
        for name in names:
            os.link(whole, os.path.join(folder, name + ".jpg"))
            os.link(thumbnail, os.path.join(folder, name + "_thumb.jpg"))

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
    found = sorted(t * 1000 for t in times if t is not None)
    if len(found) < len(times):
        return f"{len(times) - len(found)} of {len(times)} never came"
    text = f"{statistics.median(found):.1f} ms ({found[0]:.1f} to {found[-1]:.1f}"
    if len(found) >= ENOUGH_FOR_SHARES:
        text += f"; 95 % within {found[math.ceil(0.95 * len(found)) - 1]:.1f}"
    return text + ")"
