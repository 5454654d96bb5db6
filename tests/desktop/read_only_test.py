#!/usr/bin/python3
"""A data folder that cannot be written: the history is shown, goes on in memory, and is written
again once that is possible."""
import os

from case import DesktopTest, main
from clients import read_by_xclip
from disks import LockedFolder, SmallDisk

NOT_STORED = "Failed to persist clipboard item: "


class ReadOnlyTest(DesktopTest):
    def setUp(self):
        super().setUp()
        self.clipboard = self.owner()

    def copy_in_vain(self, text):
        """Has a text taken in that cannot be stored."""
        mark = self.program.mark()
        self.clipboard.own_text(text)
        self.program.wait_for_line("New clipboard item: text", since=mark)
        self.program.wait_for_line(NOT_STORED, since=mark)

    def assert_choice_gives(self, query, text):
        self.choose(query)
        self.wait_until_closed()
        self.assertEqual(text, read_by_xclip(self.desktop).decode())

    def fill_history(self):
        self.program.start()
        for number in range(3):
            self.copy(f"stored {number}")

    def check_start_on_read_only_disk(self):
        self.program.start()
        self.assertIn("Loaded 3 items from disk", self.program.output())
        self.copy_in_vain("lonely")
        self.copy_in_vain("second")
        self.assert_choice_gives("stored 1", "stored 1")
        self.assert_choice_gives("lonely", "lonely")

    def test_a_history_on_a_disk_that_is_read_only(self):
        disk = SmallDisk(self.program.env["XDG_DATA_HOME"], 8)
        self.addCleanup(disk.remove)
        self.addCleanup(self.program.end)
        self.fill_history()
        self.assertEqual(0, self.program.end())
        disk.make_read_only()
        self.check_start_on_read_only_disk()
        disk.make_writable()
        self.copy_after_paste("stored again")
        self.assertEqual(["stored again", "stored 2", "stored 1", "stored 0"],
                         self.program.texts())
        self.assert_intact()

    def test_a_history_on_a_disk_that_went_read_only_in_a_crash(self):
        disk = SmallDisk(self.program.env["XDG_DATA_HOME"], 8)
        self.addCleanup(disk.remove)
        self.addCleanup(self.program.end)
        self.fill_history()
        self.program.kill()
        self.program.end()
        self.assertTrue(os.path.getsize(self.program.store_path + "-wal"))
        disk.make_read_only()
        self.check_start_on_read_only_disk()

    def test_a_disk_that_goes_read_only_meanwhile(self):
        self.fill_history()
        folder = LockedFolder(os.path.dirname(self.program.store_path))
        try:
            self.copy_in_vain("lonely")
            self.copy_in_vain("second")
            self.assert_alive()
            self.assert_choice_gives("stored 1", "stored 1")
            self.assert_choice_gives("lonely", "lonely")
        finally:
            folder.unlock()
        self.copy_after_paste("stored again")
        self.assertEqual(["stored again", "stored 2", "stored 1", "stored 0"],
                         self.program.texts())
        self.assert_intact()
        self.assertEqual(0, self.program.end())
        self.program.start()
        self.assertIn("Loaded 4 items from disk", self.program.output())


if __name__ == "__main__":
    main()
