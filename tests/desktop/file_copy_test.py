#!/usr/bin/python3
"""Files that are copied or cut in a file manager become one entry."""
import json
import os
import urllib.parse

from case import DesktopTest, main
from clients import PCManFM, Thunar, copy_by_xclip, read_by_xclip

ODD_NAMES = (b"a report.txt", "Übersicht.tar.gz".encode(), "文字.md".encode(), b"50% of it.txt",
             b"no. #1.txt", b"two\nlines.txt", b"a r\xe9port.txt", b"%41.txt")


def readable(name):
    return name.decode("utf-8", "replace")


def stored_path(path):
    """The path as a text in which each byte that is no UTF-8 has a private character."""
    return "".join(chr(ord(letter) - 0xDC00 + 0xEF00) if 0xDC80 <= ord(letter) <= 0xDCFF else letter
                   for letter in os.fsdecode(path))


def extension(name):
    _, dot, rest = name.lstrip(b".").rpartition(b".")
    return readable(rest) if dot else ""


class PCManFMCopyTest(DesktopTest):
    manager = PCManFM

    def setUp(self):
        super().setUp()
        self.program.start()

    def folder_with(self, *names):
        folder = os.path.join(os.fsencode(self.program.data), os.urandom(4).hex().encode())
        os.makedirs(folder)
        for name in names:
            with open(os.path.join(folder, name), "w", encoding="utf-8") as file:
                file.write("contents")
        return folder

    def offered_paths(self):
        """In the order in which the file manager tells them."""
        addresses = read_by_xclip(self.desktop, "text/uri-list").rstrip(b"\0").split()
        return [urllib.parse.unquote_to_bytes(address).removeprefix(b"file://")
                for address in addresses]

    def check(self, folder, *names, cut=False):
        with self.manager(self.desktop, self.display, os.fsdecode(folder)) as manager:
            if cut:
                manager.select_and_cut()
            else:
                manager.select_and_copy()
            paths = self.offered_paths()
            self.assertCountEqual([os.path.join(folder, name) for name in names], paths)
            self.check_entry(paths)
        self.program.wait_for_line(f"Detected: File(s) - {len(names)} items remote=false")

    def check_entry(self, paths):
        names = [os.path.basename(path) for path in paths]
        entry = self.program.wait_for_entry(
            ", ".join(readable(name) for name in names), "contentTypeRaw", "filePath",
            "fileTypesJSON", "fileBookmarkData", "sourceAppBundleID")
        self.assertEqual("file", entry.contentTypeRaw)
        self.assertEqual(stored_path(paths[0]), entry.filePath)
        self.assertEqual([extension(name) for name in names], json.loads(entry.fileTypesJSON))
        self.assertIsNotNone(entry.fileBookmarkData)
        self.assertEqual(self.manager.window_class, entry.sourceAppBundleID)

    def test_a_copied_file(self):
        self.check(self.folder_with(b"a report.txt"), b"a report.txt")

    def test_a_cut_file(self):
        folder = self.folder_with(b"a report.txt")
        self.check(folder, b"a report.txt", cut=True)
        self.assertTrue(os.path.exists(os.path.join(folder, b"a report.txt")))

    def test_several_copied_files(self):
        names = (b"a report.txt", b"b.tar.gz", b"no extension")
        self.check(self.folder_with(*names), *names)

    def test_several_cut_files(self):
        names = (b"a report.txt", b"b.tar.gz", b"no extension")
        self.check(self.folder_with(*names), *names, cut=True)

    def test_a_folder(self):
        folder = self.folder_with()
        os.makedirs(os.path.join(folder, b"letters"))
        self.check(folder, b"letters")

    def test_files_whose_names_need_care(self):
        self.check(self.folder_with(*ODD_NAMES), *ODD_NAMES)

    def test_a_file_whose_name_needs_care(self):
        for name in ODD_NAMES:
            with self.subTest(name=name):
                self.check(self.folder_with(name), name)


class ThunarCopyTest(PCManFMCopyTest):
    manager = Thunar


class FileAddressTest(DesktopTest):
    def test_the_address_of_a_file_that_is_gone_is_no_file(self):
        self.program.start()
        copy_by_xclip(self.desktop, b"file:///nowhere/at/all.txt\r\n", "text/uri-list")
        self.program.wait_for_line("Detected: ")
        self.assertIsNone(self.program.find_line("Detected: File(s)"))


if __name__ == "__main__":
    main()
