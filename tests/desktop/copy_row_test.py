#!/usr/bin/python3
"""From the menu of a row an entry is copied, for the person to paste it by hand, and a file is shown
where it lies."""
import contextlib
import os
import random
import urllib.parse

from case import DesktopTest, main
from clients import Mousepad, copy_by_xclip, read_by_xclip
from history_panel import HistoryPanel
from made_entries import MadeEntries
from pictures import noise_png
from waiting import wait_until

RIGHT_BUTTON = 3
# From the top of a menu without a shadow to the middle of its entries.
FIRST_ENTRY = 19
COPY = FIRST_ENTRY + 28
COPY_OF_A_FILE = FIRST_ENTRY + 28 + 11 + 28
SHOW_FILE = FIRST_ENTRY

ODD_NAME = "50% of \"it\" #1 ü.txt"


class RowMenuCase(DesktopTest):
    def setUp(self):
        super().setUp()
        self.program.start()  # It makes the database; only it knows the schema.
        self.program.end()
        self.entries = MadeEntries(self.program)

    def make_file(self, name):
        folder = self.desktop.path("home", "folder " + os.urandom(4).hex())
        os.makedirs(folder)
        path = os.path.join(folder, name)
        with open(path, "w", encoding="utf-8") as file:
            file.write("contents")
        return path

    def copy_file(self, path):
        address = "file://" + urllib.parse.quote(path)
        copy_by_xclip(self.desktop, address.encode(), "text/uri-list")
        self.program.wait_for_text(os.path.basename(path))

    def add_file(self, path):
        """An entry that knows the path and nothing else."""
        self.entries.add({"contentTypeRaw": "file", "filePath": path,
                          "stringValue": os.path.basename(path)})

    def offered_address(self):
        address = read_by_xclip(self.desktop, "text/uri-list").decode().strip("\0\r\n")
        return urllib.parse.unquote(address)

    def choose(self, entry, row=0):
        """Opens the history, and clicks that place of the menu of the row; returns the window."""
        window = self.open_window()
        HistoryPanel(self.display, window).click_row(row, RIGHT_BUTTON)
        x, y, width, _ = self.display.place(self.wait_for_menu())
        self.display.click(x + width // 2, y + entry)
        self.wait_until_menu_closed()
        return window


class CopyRowTest(RowMenuCase):
    def setUp(self):
        super().setUp()
        self.entries.add({"contentTypeRaw": "text", "stringValue": "the oldest"})

    @contextlib.contextmanager
    def copied_row(self, entry, row=0):
        """Copies, and sees to it at the end that nothing but the clipboard has changed."""
        self.program.start()
        before = self.program.rows("id, timestamp, updatedAt")
        owner = self.display.selection_owner()
        mark = self.program.mark()
        window = self.choose(entry, row)
        wait_until(lambda: self.display.selection_owner() not in (0, owner), "the copy")
        yield
        self.assertTrue(self.display.is_viewable(window))
        self.assertTrue(self.display.is_active(window))
        # What another program copies later is an entry, so that ours would be one by then.
        self.copy_after_paste("copied later")
        self.assertEqual(before, self.program.rows("id, timestamp, updatedAt")[1:])
        self.assertIsNone(self.program.find_line("Simulated Cmd+V", since=mark))

    def test_an_older_text_in_all_its_forms(self):
        html, rtf = b"<b>older</b>", b"{\\rtf1 older}"
        self.entries.add({"contentTypeRaw": "text", "stringValue": "older",
                          "htmlRepresentation": html, "rtfRepresentation": rtf},
                         {"contentTypeRaw": "text", "stringValue": "newer"})
        with self.copied_row(COPY, row=1):
            self.assertEqual(b"older", read_by_xclip(self.desktop))
            self.assertEqual(html, read_by_xclip(self.desktop, "text/html"))
            self.assertEqual(rtf, read_by_xclip(self.desktop, "text/rtf"))

    def test_a_text_is_pasted_by_hand(self):
        self.program.start()
        with Mousepad(self.desktop, self.display) as editor:
            self.choose(COPY)
            wait_until(lambda: read_by_xclip(self.desktop) == b"the oldest", "the copy")
            self.display.press("Escape")
            self.wait_until_closed()
            self.display.wait_until_active(editor.window)
            self.display.press("ctrl+v")
            self.assertEqual("the oldest", editor.text_after_paste())

    def test_a_picture_as_tiff_and_as_png(self):
        picture = self.desktop.path("picture.png")
        with open(picture, "wb") as file:
            file.write(noise_png(random.Random(7), 300, 200))
        stored = self.desktop.path("picture.jpg")
        self.desktop.run("convert", picture, stored)
        with open(stored, "rb") as file:
            self.entries.add_picture("picture.jpg", file.read())
        with self.copied_row(COPY):
            for target in ("image/tiff", "image/png"):
                taken = self.desktop.path("taken." + target.split("/")[1])
                with open(taken, "wb") as file:
                    file.write(read_by_xclip(self.desktop, target))
                self.assertEqual(self.pixels(stored), self.pixels(taken), target)

    def pixels(self, path):
        return self.desktop.run("convert", path, "-alpha", "off", "-depth", "8", "rgb:-")

    def test_a_picture_whose_entry_is_deleted_then(self):
        self.entries.add_picture("picture.png", noise_png(random.Random(8), 300, 200))
        self.program.start()
        window = self.choose(COPY)
        wait_until(lambda: read_by_xclip(self.desktop, "image/png"), "the copy")
        HistoryPanel(self.display, window).click_row(0)
        self.display.press("Delete")
        wait_until(lambda: not os.listdir(self.program.images_path), "the picture's file to go")
        self.assertTrue(read_by_xclip(self.desktop, "image/tiff"))

    def test_a_file(self):
        path = self.make_file(ODD_NAME)
        self.add_file(path)
        with self.copied_row(COPY_OF_A_FILE):
            self.assertEqual("file://" + path, self.offered_address())
            self.assertTrue(read_by_xclip(self.desktop, "x-special/gnome-copied-files")
                            .startswith(b"copy\nfile:///"))


class ShowFileCase(RowMenuCase):
    def show(self):
        """Returns the path, and the window of the file manager."""
        path = self.make_file(ODD_NAME)
        with open(os.path.join(os.path.dirname(path), "another"), "w", encoding="utf-8"):
            pass
        self.program.start()
        self.copy_file(path)
        self.choose(SHOW_FILE)
        self.wait_until_closed()
        folder = os.path.basename(os.path.dirname(path))
        return path, self.display.wait_for_window(title=folder, seconds=30)


class ShowFileTest(ShowFileCase):
    def test_the_file_manager_comes_to_the_front_with_the_file_selected(self):
        path, window = self.show()
        self.display.wait_until_active(window)
        before = self.display.selection_owner()

        def is_copied():
            self.display.press("ctrl+c")
            return self.display.selection_owner() not in (0, before)
        wait_until(is_copied, "the selected files to be copied", every=0.3)
        self.assertEqual("file://" + path, self.offered_address())

    def test_a_file_that_is_gone_changes_nothing(self):
        path = self.make_file("gone")
        self.program.start()
        self.copy_file(path)
        os.remove(path)
        self.assert_nothing_is_shown()

    def test_a_file_of_which_only_the_path_is_known_changes_nothing(self):
        self.add_file(self.make_file("another perhaps"))
        self.program.start()
        self.assert_nothing_is_shown()

    def assert_nothing_is_shown(self):
        window = self.choose(SHOW_FILE)
        # A key that is typed later arrives in the window.
        self.display.type("still")
        self.assertTrue(self.display.is_active(window))


class ShowFileWithoutBusTest(ShowFileCase):
    desktop_options = {"bus": False}

    def test_the_folder_is_opened(self):
        self.show()
        self.assert_alive()


if __name__ == "__main__":
    main()
