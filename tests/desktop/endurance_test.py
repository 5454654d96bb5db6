#!/usr/bin/python3
"""Long use: a large history, thousands of copies, and many sudden ends."""
import os
import sys

sys.path.append(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "bench"))

import corpus
from case import DesktopTest, main
from clients import Mousepad

COPIES = 2000
KILLS = 25


class EnduranceTest(DesktopTest):
    def fill_history(self):
        """Ten thousand entries, the most that the history holds."""
        self.program.start()
        self.program.end()
        corpus.write_store(self.program.store_path, 10_000)
        corpus.write_settings(self.program.settings_path)
        self.program.start()

    def test_an_entry_of_ten_thousand_is_found_and_pasted(self):
        self.fill_history()
        self.program.wait_for_line("Loaded 10000 items from disk")
        oldest = self.program.texts()[-1]
        words = " ".join(oldest.split()[:4])
        with Mousepad(self.desktop, self.display) as editor:
            mark = self.choose("".join(c for c in words if c.isalpha() or c == " "))
            self.program.wait_for_line("Posted keyUp event", since=mark)
            self.assertEqual(oldest, editor.text_after_paste())

    def test_a_full_history_makes_room_for_new_copies(self):
        self.fill_history()
        before = self.program.texts()
        for number in range(20):
            self.copy(f"copied into a full history: {number}")
        self.assertEqual(10_000, len(self.program.texts()))
        self.assertEqual(before[:10_000 - 20], self.program.texts()[20:])

    def test_thousands_of_copies_are_kept_and_leave_nothing_behind(self):
        self.program.start()
        self.program.end()
        corpus.write_settings(self.program.settings_path)
        self.program.start()
        owner = self.owner()
        self.copy_many(owner, 0)  # What grows in here is needed once: caches, queues, the list.
        descriptors = len(os.listdir(f"/proc/{self.program.pid}/fd"))
        anonymous = self.program.status_number("smaps_rollup", "Anonymous")
        self.copy_many(owner, COPIES)
        self.assertEqual([f"one of thousands: {n}" for n in reversed(range(2 * COPIES))],
                         self.program.texts())
        self.assertEqual(descriptors, len(os.listdir(f"/proc/{self.program.pid}/fd")))
        grown = self.program.status_number("smaps_rollup", "Anonymous") - anonymous
        self.assertLess(grown, 8 * 1024, "kB more after as many copies again")

    def copy_many(self, owner, first):
        for number in range(first, first + COPIES):
            mark = self.program.mark()
            owner.own_text(f"one of thousands: {number}")
            self.program.wait_for_line("New clipboard item: text", since=mark)
        self.program.wait_for_text(f"one of thousands: {first + COPIES - 1}")

    def test_many_sudden_ends_cost_nothing_that_was_stored(self):
        expected = []
        for number in range(KILLS):
            self.program.start()
            text = f"copied before sudden end {number}"
            self.copy(text)
            self.program.kill()
            self.program.end()
            expected.insert(0, text)
        self.assert_intact()
        self.assertEqual(expected, self.program.texts())


if __name__ == "__main__":
    main()
