#!/usr/bin/python3
"""The program ends by signal 9 in the midst of copying, again and again: what had reached the store
stays there, with its pictures, and the next start finds a history that is whole.

    crash_test.py --program build/release/bin/tessarine [--rounds 20] [--captures 1000] [--seed N]
"""
import os
import random
import sqlite3
import statistics
import sys
import time

sys.path.append(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "bench"))

import case
import corpus
from case import DesktopTest, add_upkeep_option, main
from pictures import noise_png
from store_watch import StoreWatch
from stored_history import StoredHistory
from waiting import wait_until

CAPACITY = 1000  # Of a history whose limit was never changed.
OLD_PICTURES = 300
OLD_PICTURE_DATE = "1999-12-31_23-59-59"
TEXT_BYTES = (20, 50_000)
PICTURE_SHARE = 0.04
RECOPY_SHARE = 0.1
# Generous: it tells a copy that never comes from one that a busy machine holds up.
LONGEST_SECONDS = 10.0


class Contents:
    """What is copied: texts of all sizes, now and then a picture or something copied before."""

    def __init__(self, rng):
        self.rng = rng
        self.earlier = []

    def __next__(self):
        if self.earlier and self.rng.random() < RECOPY_SHARE:
            return self.rng.choice(self.earlier)
        new = self.picture() if self.rng.random() < PICTURE_SHARE else self.text()
        self.earlier.append(new)
        return new

    def picture(self):
        width, height = self.rng.randint(16, 160), self.rng.randint(16, 160)
        return {"image/png": noise_png(self.rng, width, height)}

    def text(self):
        smallest, largest = TEXT_BYTES
        size = int(smallest * (largest / smallest) ** self.rng.random())
        pieces = [self.rng.randbytes(10).hex()]
        pieces += ["and so on"] * (max(0, size - len(pieces[0])) // 10)
        return {"UTF8_STRING": " ".join(pieces).encode()}


class CrashTest(DesktopTest):
    def setUp(self):
        super().setUp()
        seed = case.arguments.seed
        if seed is None:
            seed = random.randrange(1_000_000)
        print(f"--seed {seed}", flush=True)
        self.rng = random.Random(seed)
        self.contents = Contents(self.rng)
        self.clipboard = self.owner()
        self.delays = []  # From each copy that was waited for to its row, in seconds.
        self.copies = 0

    def test_sudden_ends_lose_nothing_that_was_stored(self):
        self.program.start()
        self.program.end()
        # As many entries as there can be, so that each copy pushes one out.
        corpus.write_store(self.program.store_path, CAPACITY)
        captured = 0
        for number in range(case.arguments.rounds):
            with self.subTest(round=number):
                captured += self.crash_and_check()
        print(f"{case.arguments.rounds} sudden ends during {self.copies} copies; "
              f"{captured} rows seen in the store", flush=True)
        print(f"from the copy to its row: median {statistics.median(self.delays) * 1000:.0f} ms, "
              f"at most {max(self.delays) * 1000:.0f} ms ({len(self.delays)} copies)", flush=True)
        self.assertLess(max(self.delays), LONGEST_SECONDS)

    # One round

    def crash_and_check(self):
        """Returns how many rows were seen to reach the store, all of which were there afterwards."""
        self.make_oldest_entries_pictures()
        started_at = time.time_ns() // 1000
        self.program.start()
        watch = StoreWatch(self.program.store_path)
        known = len(watch.ids)
        self.copy_until_the_crash(watch)
        watch.close()
        self.program.end()

        history = StoredHistory.of(self.program)
        self.assertEqual(["ok"], history.integrity)
        self.assert_nothing_is_lost(history, watch.ids, started_at)
        self.assertEqual(set(), history.missing_files(), "live rows name files that are gone")
        self.assert_captured_pictures_have_files(history)
        self.assert_next_start_is_clean(history)
        self.assert_sweep_leaves_only_named_files()
        return len(watch.ids) - known

    def copy_until_the_crash(self, watch):
        crash_at = self.rng.randint(1, case.arguments.captures)
        for number in range(1, crash_at + 1):
            content = next(self.contents)
            copied_at = self.clipboard.own(content)
            self.copies += 1
            if number == crash_at:
                break
            if self.rng.random() < 0.5:
                self.wait_for_row_of(content, copied_at, watch)
            else:
                time.sleep(self.rng.uniform(0, 0.01))
        # Around the moment in which the copy is taken in and written.
        time.sleep(self.rng.expovariate(1 / 0.002))
        self.program.kill()

    def wait_for_row_of(self, content, copied_at, watch):
        # The hash of a picture is that of its pixels in a form that is not known here.
        wanted = "image"
        if "UTF8_STRING" in content:
            wanted = corpus.content_hash(content["UTF8_STRING"].decode())
        wait_until(lambda: watch.seen_at.get(wanted, 0) > copied_at,
                   lambda: f"a row; the program printed:\n{self.program.output()[-2000:]}",
                   LONGEST_SECONDS, every=0.0005)
        self.delays.append(watch.seen_at[wanted] - copied_at)

    # What must be true after it

    def assert_nothing_is_lost(self, history, seen_ids, started_at):
        """A row that was seen is an entry still, or it was replaced by a newer copy of the same or
        fell out at the end of a full history."""
        self.assertEqual(set(), seen_ids - {row.id for row in history.rows}, "rows have vanished")
        newest_of = {}
        for row in history.rows:
            newest_of.setdefault(row.content_hash, row)
        live = history.live
        oldest_kept = live[CAPACITY - 1].timestamp if len(live) >= CAPACITY else 0
        for row in history.rows:
            if row.deleted_at is None or row.deleted_at < started_at:
                continue
            is_replaced = newest_of[row.content_hash].timestamp > row.timestamp
            self.assertTrue(is_replaced or row.timestamp < oldest_kept, f"{row} was deleted")

    def assert_captured_pictures_have_files(self, history):
        pictures = [row for row in history.live
                    if row.kind == "image" and not (row.picture or "").startswith(OLD_PICTURE_DATE)]
        without = [row for row in pictures if not row.picture or not row.thumbnail]
        if without and len(without) == len(pictures):
            print(f"NOT VERIFIED: no picture was put into a file ({len(pictures)})", flush=True)
            return
        self.assertEqual([], without, "pictures have no file or no thumbnail")

    def assert_next_start_is_clean(self, history):
        self.program.start()
        loaded = min(len(history.live), CAPACITY)
        self.assertIn(f"Loaded {loaded} items from disk", self.program.output())
        self.assertEqual(0, self.program.end())
        failures = [line.text for line in self.program.lines if line.text.startswith("Failed to ")]
        self.assertEqual([], failures)

    def assert_sweep_leaves_only_named_files(self):
        self.program.do_upkeep(case.arguments.upkeep, "limit")
        history = StoredHistory.of(self.program)
        self.assertEqual(set(), history.missing_files(), "the sweep removed files that rows name")
        self.assertEqual(set(), history.unnamed_files(), "files that no row names outlive a sweep")

    # What is there before it

    def make_oldest_entries_pictures(self):
        """Lets the entries that fall out next be pictures with files, since they have most to
        leave behind."""
        store = sqlite3.connect(self.program.store_path)
        oldest = store.execute(
            "SELECT id FROM (SELECT id, contentTypeRaw FROM ClipboardHistoryRecord "
            "WHERE deletedAt IS NULL ORDER BY timestamp LIMIT ?) WHERE contentTypeRaw = 'text'",
            (OLD_PICTURES,)).fetchall()
        with store:
            for (identity,) in oldest:
                base = f"{OLD_PICTURE_DATE}_{self.rng.randbytes(4).hex().upper()}"
                names = (base + ".jpg", base + "_thumb.jpg")
                for name in names:
                    with open(os.path.join(self.program.images_path, name), "wb") as file:
                        file.write(b"the bytes of a picture")
                store.execute(
                    "UPDATE ClipboardHistoryRecord SET contentTypeRaw = 'image', "
                    "stringValue = NULL, imageFileName = ?, imageThumbnailFileName = ?, "
                    "contentHash = ? WHERE id = ?", (*names, base, identity))
        store.close()


def add_options(parser):
    add_upkeep_option(parser)
    parser.add_argument("--rounds", type=int, default=20)
    parser.add_argument("--captures", type=int, default=1000, help="the most in one round")
    parser.add_argument("--seed", type=int, help="repeats the contents and moments of a run")


if __name__ == "__main__":
    main(add_options)
