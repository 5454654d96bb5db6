#!/usr/bin/python3
"""A text of 50 MB comes in and goes out in pieces, and comes through whole."""
import hashlib

from case import DesktopTest, main
from clients import copy_by_xclip, read_by_xclip

SIZE = 50 * 1000 * 1000


def large_text():
    lines, size, number = [], 0, 0
    while size < SIZE:
        line = f"line {number}: a rather large text is made of many small lines\n"
        lines.append(line)
        size += len(line)
        number += 1
    return "".join(lines).strip().encode()


class LargeTextTest(DesktopTest):
    def test_fifty_megabytes_in_and_out(self):
        text = large_text()
        digest = hashlib.sha256(text).hexdigest()
        self.program.start()
        self.copy("a small text before")

        copy_by_xclip(self.desktop, text)
        self.program.wait_for_row(lambda size: size == len(text), "the large text",
                                  "length(CAST(stringValue AS BLOB))", seconds=60)
        stored = self.program.rows("stringValue")[0][0]
        self.assertEqual(digest, hashlib.sha256(stored.encode()).hexdigest())

        # Taken by another first, so that what comes back can only be what the program serves.
        self.copy("a small text behind")
        self.choose("rather large")
        self.wait_until_closed()
        given = read_by_xclip(self.desktop)
        self.assertEqual(len(text), len(given))
        self.assertEqual(digest, hashlib.sha256(given).hexdigest())

        self.copy_after_paste("the next copy")
        self.assert_alive()


if __name__ == "__main__":
    main()
