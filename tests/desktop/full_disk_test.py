#!/usr/bin/python3
"""A full disk costs what is copied while it is full its place in the store, and nothing else."""
import random

from case import DesktopTest, main
from clients import read_by_xclip
from disks import SmallDisk
from pictures import noise_png
from waiting import wait_until

MEGABYTES = 8
NOT_STORED = "Failed to persist clipboard item: "


class FullDiskTest(DesktopTest):
    def setUp(self):
        super().setUp()
        self.disk = SmallDisk(self.program.env["XDG_DATA_HOME"], MEGABYTES)
        self.addCleanup(self.disk.remove)
        self.addCleanup(self.program.end)
        self.clipboard = self.owner()
        self.copies = 0
        self.program.start()

    def copy_text(self, word, size=5000):
        """Has a text taken in; whether it is stored is another matter."""
        mark = self.program.mark()
        self.clipboard.own_text(f"{word} " + "and so on " * (size // 10) + "end")
        self.program.wait_for_line("New clipboard item: text", since=mark)
        return mark

    def copy_until_nothing_is_stored(self):
        """Returns the words of two texts that are only in memory."""
        self.disk.fill()

        def is_refused():
            self.copies += 1
            mark = self.copy_text(f"filler{self.copies}")
            return self.comes_to_nothing(mark)
        # The log has room of its own for some more.
        wait_until(is_refused, "the disk to be full", 60, every=0)
        for word in ("lonely", "second"):
            mark = self.copy_text(word)
            self.program.wait_for_line(NOT_STORED, since=mark)
        return "lonely", "second"

    def comes_to_nothing(self, mark):
        """Whether the copy since the mark failed to be stored; waits for one or the other."""
        word = f"filler{self.copies} "
        return wait_until(
            lambda: (self.program.find_line(NOT_STORED, mark) and "refused")
            or (any((text or "").startswith(word) for text in self.program.texts()) and "stored"),
            "the copy to be stored or refused") == "refused"

    def assert_store_takes_copies(self):
        for number in range(3):
            mark = self.program.mark()
            self.copy_text(f"fresh{number}")
            self.program.wait_for_row(lambda text: (text or "").startswith(f"fresh{number} "),
                                      "a new text")
            self.assertIsNone(self.program.find_line(NOT_STORED, since=mark))

    def wait_for_clipboard(self, beginning):
        """A text is on it a moment later than the program says so."""
        wait_until(lambda: read_by_xclip(self.desktop).decode().startswith(beginning),
                   f"{beginning!r} on the clipboard")

    def test_the_history_goes_on_in_memory_and_later_on_disk(self):
        self.copy("stored before")
        lonely, second = self.copy_until_nothing_is_stored()
        self.assert_alive()

        for word in (lonely, second):
            self.choose(word)
            self.wait_until_closed()
            self.wait_for_clipboard(word + " ")
        self.copy_after_a_paste_in_vain()

        self.disk.make_room()
        self.assert_store_takes_copies()
        self.assert_intact()

        stored = self.program.texts()
        self.assertIn("stored before", stored)
        self.assertEqual(0, self.program.end())
        self.program.start()
        self.assertIn(f"Loaded {len(stored)} items from disk", self.program.output())
        self.assertEqual(stored, self.program.texts())

    def copy_after_a_paste_in_vain(self):
        """Behind a paste no copy is looked at for a moment; returns once one is, and is refused."""
        mark = self.program.mark()

        def is_taken():
            self.clipboard.own_text("behind the paste")
            try:
                return self.program.wait_for_line("New clipboard item: text", mark, seconds=1)
            except AssertionError:
                return None
        wait_until(is_taken, "a copy behind the paste to be taken in", 20)
        self.program.wait_for_line(NOT_STORED, since=mark)

    def test_a_program_that_starts_on_a_full_disk_shows_its_history(self):
        self.copy("stored before")
        self.assertEqual(0, self.program.end())
        self.disk.fill()
        self.program.start()
        self.assertIn("Loaded 1 items from disk", self.program.output())
        self.copy_text("lonely")
        self.choose("stored")
        self.wait_for_clipboard("stored before")

    def test_a_picture_without_room_stays_in_memory(self):
        rng = random.Random(1)
        self.clipboard.own({"image/png": noise_png(rng, 100, 100)})
        picture = self.program.wait_for_row(lambda kind, _: kind == "image", "a picture",
                                            "contentTypeRaw, imageFileName")[1]
        self.copy_until_nothing_is_stored()
        mark = self.program.mark()
        self.clipboard.own({"image/png": noise_png(rng, 120, 110)})
        self.program.wait_for_line("New clipboard item: image", since=mark)
        self.program.wait_for_line(NOT_STORED, since=mark)
        if picture:
            for line in ("Failed to save image as JPEG, fallback to TIFF",
                         "Failed to save fallback TIFF image: ", "Failed to save thumbnail: "):
                self.program.wait_for_line(line, since=mark)
        else:
            print("NOT VERIFIED: no picture was put into a file", flush=True)

        self.choose("")  # The picture is the newest.
        given = read_by_xclip(self.desktop, "image/png")
        self.assertTrue(given.startswith(b"\x89PNG"), given[:20])
        self.copy_after_a_paste_in_vain()
        self.disk.make_room()
        self.assert_store_takes_copies()
        self.assert_intact()


if __name__ == "__main__":
    main()
