#!/usr/bin/python3
"""The history window stands on a real screen in all its states, and pictures of it are left for
people to look at."""
import argparse
import os
import shutil
import struct
import subprocess
import sys
import unittest

from desktop import Desktop
from screen_scale import set_font_resolution

COMPOSITOR = "picom --config /dev/null --backend xrender"
WIDTH, HEIGHT = 800, 604
MAIN_SIZES = {
    "mixed": (WIDTH, HEIGHT), "selected": (WIDTH, HEIGHT), "menu": (WIDTH, 752),
    "limit": (WIDTH, HEIGHT), "pill-focused": (WIDTH, HEIGHT),
}
ALL_SIZES = {
    **MAIN_SIZES, "whole": (WIDTH, None), "overflow-menu": (900, HEIGHT),
    **dict.fromkeys(
        ["empty", "search", "search-nothing", "tag", "pinned", "pin-focused", "thumbnails",
         "tags-none", "tags-long", "tags-many",
         "filter-all", "filter-text", "filter-image", "filter-file", "filter-link",
         "filter-favorite"], (WIDTH, HEIGHT)),
}
WHOLE_HEIGHTS = {"en": 924, "zh": 852}  # With all entries in sight.

arguments = None


def size_of_picture(path):
    with open(path, "rb") as file:
        head = file.read(24)
    if head[:8] != b"\x89PNG\r\n\x1a\n":
        raise ValueError(f"{path} is no PNG file")
    return struct.unpack(">II", head[16:24])


class ScreensTest(unittest.TestCase):
    """Each scale has a folder of its own until all is done; what is left there is complete."""

    def take(self, scale, compositor, mode, what=""):
        suffix = "" if scale == 1 else f"@{scale}x"
        made = os.path.join(arguments.directory, f"making-{mode}{suffix}")
        shutil.rmtree(made, ignore_errors=True)
        with Desktop(compositor=compositor, size="1840x1900") as desktop:
            set_font_resolution(desktop, 96 * scale)
            ended = subprocess.run(
                [arguments.program, made, suffix, mode, what], env=desktop.env, timeout=200,
                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                check=False)
        self.assertEqual((0, ""), (ended.returncode, ended.stdout.decode()))
        return made, suffix

    def move_in_place(self, made, suffix, sizes, scale, infix=""):
        """Looks at the pictures, and puts them where they are looked for."""
        expected = {}
        for name, (width, height) in sizes.items():
            for language, whole_height in WHOLE_HEIGHTS.items():
                size = round(width * scale), round((height or whole_height) * scale)
                for scheme in ("light", "dark"):
                    expected[f"history-{name}{infix}-{scheme}-{language}{suffix}.png"] = size
        self.assertEqual(sorted(expected), sorted(os.listdir(made)))
        for file, size in expected.items():
            path = os.path.join(made, file)
            self.assertEqual(size, size_of_picture(path), file)
            os.replace(path, os.path.join(arguments.directory, file))
        os.rmdir(made)

    def test_with_a_compositor(self):
        for scale in (1, 2):
            with self.subTest(scale=scale):
                made, suffix = self.take(scale, COMPOSITOR, "composited")
                self.move_in_place(made, suffix, ALL_SIZES, scale)

    def test_with_a_compositor_at_an_odd_scale(self):
        made, suffix = self.take(1.25, COMPOSITOR, "composited", "mixed,selected,menu,search")
        sizes = {name: ALL_SIZES[name] for name in ("mixed", "selected", "menu", "search")}
        self.move_in_place(made, suffix, sizes, 1.25)

    def test_without_a_compositor(self):
        for scale in (1, 2):
            with self.subTest(scale=scale):
                made, suffix = self.take(scale, None, "plain")
                self.move_in_place(made, suffix, MAIN_SIZES, scale, "-plain")

    def test_in_high_contrast(self):
        made, suffix = self.take(2, COMPOSITOR, "contrast", ",".join(MAIN_SIZES))
        self.move_in_place(made, suffix, MAIN_SIZES, 2, "-contrast")


def main():
    global arguments
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True)
    parser.add_argument("--directory", required=True, help="where the pictures go")
    arguments, rest = parser.parse_known_args()
    os.makedirs(arguments.directory, exist_ok=True)
    unittest.main(argv=sys.argv[:1] + rest, verbosity=2)


if __name__ == "__main__":
    main()
