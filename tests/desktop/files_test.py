#!/usr/bin/python3
"""Files that are copied in a file manager are copied by the next one that they are pasted into,
even if they were moved in between."""
import os

from case import DesktopTest, main
from clients import PCManFM, Thunar
from waiting import wait_until

CONTENT = b"what the report says"


class FilesTest(DesktopTest):
    def setUp(self):
        super().setUp()
        self.source = self.folder("source")
        self.target = self.folder("target")
        self.program.start()

    def folder(self, name):
        path = os.fsencode(self.desktop.path(self._testMethodName + "-" + name))
        os.makedirs(path)
        return path

    def copy_file(self, name, stored_name=None):
        """Has a file manager copy a file of this name, and returns its path and its bookmark."""
        path = os.path.join(self.source, name)
        with open(path, "wb") as file:
            file.write(CONTENT)
        stored_name = stored_name or name.decode()
        with PCManFM(self.desktop, self.display, os.fsdecode(self.source)) as manager:
            manager.select_and_copy()
            row = self.program.wait_for_row(lambda text, *_: text == stored_name, stored_name,
                                            "stringValue, fileBookmarkData")
        return path, row[1]

    def paste_file(self, query, manager_class=PCManFM):
        """Chooses the entry by a search, and returns the name of the file that a file manager makes
        of it in its empty folder."""
        with manager_class(self.desktop, self.display, os.fsdecode(self.target)) as manager:
            manager.focus()
            mark = self.choose(query)
            self.program.wait_for_line("Posted keyUp event", since=mark)
            self.wait_until_closed()
            return wait_until(self.pasted_name, lambda: f"a file, not {os.listdir(self.target)}")

    def pasted_name(self):
        names = os.listdir(self.target)
        if len(names) != 1:
            return None
        with open(os.path.join(self.target, names[0]), "rb") as file:
            return names[0] if file.read() == CONTENT else None

    def test_a_file_that_stayed_where_it_was(self):
        self.copy_file(b"a report.txt")
        self.assertEqual(b"a report.txt", self.paste_file("report"))

    def test_a_file_into_another_file_manager(self):
        path, _ = self.copy_file(b"a report.txt")
        self.assertEqual(b"a report.txt", self.paste_file("report", Thunar))
        self.assertTrue(os.path.exists(path))

    def test_a_file_renamed_since_it_was_copied(self):
        path, bookmark = self.copy_file(b"a report.txt")
        os.rename(path, os.path.join(self.source, b"the last report.txt"))
        self.assertEqual(b"the last report.txt", self.paste_file("report"))
        self.program.wait_for_row(lambda renewed: renewed != bookmark, "a new bookmark",
                                  "fileBookmarkData")

    def test_a_file_moved_to_another_folder_since_it_was_copied(self):
        path, _ = self.copy_file(b"a report.txt")
        folder = self.folder("other")
        os.rename(path, os.path.join(folder, b"a report.txt"))
        self.assertEqual(b"a report.txt", self.paste_file("report"))

    def test_a_file_after_a_new_start(self):
        path, _ = self.copy_file(b"a report.txt")
        self.program.end()
        os.rename(path, os.path.join(self.source, b"the last report.txt"))
        self.program.start()
        self.assertEqual(b"the last report.txt", self.paste_file("report"))

    def test_a_file_whose_name_is_no_utf_8(self):
        self.copy_file(b"a r\xe9port.txt", "a r\ufffdport.txt")
        self.assertEqual(b"a r\xe9port.txt", self.paste_file("port"))

    def test_a_file_whose_name_needs_care(self):
        name = "50%25 of # the report?\nÜbersicht 文字.txt".encode()
        self.copy_file(name)
        self.assertEqual(name, self.paste_file("report"))


if __name__ == "__main__":
    main()
