#!/usr/bin/python3
"""What is stored is for its owner only, whatever the session gives to others by itself."""
import os
import random
import stat

import case
from case import DesktopTest, add_upkeep_option, main
from pictures import noise_png

DIRECTORY_MODE = 0o700
FILE_MODE = 0o600


def wrong_modes(paths, wanted):
    modes = {path: stat.S_IMODE(os.stat(path).st_mode) for path in paths}
    return [f"{path}: {mode:o}" for path, mode in modes.items() if mode != wanted]


class PermissionsTest(DesktopTest):
    def setUp(self):
        super().setUp()
        self.clipboard = self.owner()

    def assert_private(self, what):
        """Looks at every file and folder that the program made; returns the paths of the files."""
        paths, wrong = [], []
        for top in (os.path.dirname(self.program.store_path),
                    os.path.dirname(self.program.settings_path)):
            for folder, _, names in os.walk(top):
                # A lock on the settings comes and goes, and says nothing.
                files = [os.path.join(folder, name) for name in names
                         if not name.endswith(".lock")]
                wrong += wrong_modes([folder], DIRECTORY_MODE) + wrong_modes(files, FILE_MODE)
                paths += files
        self.assertEqual([], wrong, what)
        return paths

    def use_history(self, name):
        """Has every kind of file written that there is."""
        self.copy(f"a text of {name}")
        self.clipboard.own({"image/png": noise_png(random.Random(name), 50, 40)})
        self.program.wait_for_row(lambda kind: kind == "image", "a picture", "contentTypeRaw")
        self.move_window()

    def move_window(self):
        """Its new place goes to the settings."""
        window = self.open_window()
        x, y, width, height = self.display.place(window)
        self.display.move(window, x + 40, y + 30, width, height)
        self.display.press(case.HOT_KEY)
        self.wait_until_closed()

    def check(self, what):
        paths = self.assert_private(what)
        self.assertIn(self.program.store_path + "-wal", paths)
        self.assertIn(self.program.store_path + "-shm", paths)
        self.assertTrue(any(os.path.dirname(path) == self.program.images_path for path in paths))

    def check_umask(self, umask):
        self.program.umask = umask
        self.program.start()
        self.use_history(f"umask {umask:03o}")
        self.check("while the program runs")
        self.program.do_upkeep(case.arguments.upkeep, "clear")
        self.use_history("compaction")
        self.check("after compaction")
        self.assertEqual(0, self.program.end())
        self.assertIn(self.program.settings_path, self.assert_private("after the end"))

    def test_files_are_private_where_others_may_do_all(self):
        self.check_umask(0o000)

    def test_files_are_private_where_others_may_do_nothing(self):
        self.check_umask(0o077)

    def test_files_are_usable_where_nobody_may_do_anything(self):
        self.check_umask(0o777)

    def test_what_was_open_to_others_is_closed_to_them(self):
        self.program.start()
        self.use_history("before")
        self.program.kill()
        self.program.end()
        for top in (os.path.dirname(self.program.store_path),
                    os.path.dirname(self.program.settings_path)):
            for folder, _, names in os.walk(top):
                os.chmod(folder, 0o777)
                for name in names:
                    os.chmod(os.path.join(folder, name), 0o666)
        self.program.umask = 0o000
        self.program.start()
        self.use_history("after")
        self.check("that was open to others")


if __name__ == "__main__":
    main(add_upkeep_option)
