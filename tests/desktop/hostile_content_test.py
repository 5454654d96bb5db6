#!/usr/bin/python3
"""Copies of contents that are made to cost much."""
import os

from case import main
from clients import copy_by_xclip
from hostile_case import HostileTest
from pictures import png_of

LARGE_BYTES = 300_000_000
NESTED = 100_000

XML_BOMB = (b'<?xml version="1.0"?>\n<!DOCTYPE html [\n<!ENTITY a0 "a">\n'
            + b"".join(b'<!ENTITY a%d "%s">\n' % (level, b"&a%d;" % (level - 1) * 10)
                       for level in range(1, 12))
            + b"]>\n<html><body><p>&a11;</p></body></html>")


class HostileContentTest(HostileTest):
    def check_content(self, data, target):
        self.check(lambda: copy_by_xclip(self.desktop, data, target))

    def test_three_hundred_megabytes_of_text(self):
        line = b"a line that comes again and again, so many times that it hurts\n"
        data = line * (LARGE_BYTES // len(line))
        path = self.desktop.path("large.txt")
        with open(path, "wb") as file:
            file.write(data)
        self.addCleanup(os.remove, path)
        mark = self.program.mark()
        self.check(lambda: self.desktop.spawn("xclip", "-selection", "clipboard", "-in", path), 60)
        self.program.wait_for_line("New clipboard item", since=mark)
        self.program.wait_for_row(lambda size: size == len(data) - 1, "the large text",
                                  "length(CAST(stringValue AS BLOB))", seconds=60)

    def test_an_xml_bomb_as_html(self):
        self.check_content(XML_BOMB, "text/html")

    def test_an_xml_bomb_as_a_picture(self):
        self.check_content(XML_BOMB.replace(b"DOCTYPE html", b"DOCTYPE svg")
                           .replace(b"<html><body><p>", b"<svg><text>")
                           .replace(b"</p></body></html>", b"</text></svg>"), "image/svg+xml")

    def test_html_of_a_hundred_thousand_nested_elements(self):
        self.check_content(b"<div>" * NESTED + b"deep" + b"</div>" * NESTED, "text/html")

    def test_html_of_a_hundred_thousand_nested_tables(self):
        self.check_content(b"<table><tr><td>" * NESTED + b"deep", "text/html")

    def test_rtf_of_a_hundred_thousand_nested_groups(self):
        self.check_content(b"{\\rtf1 " + b"{\\b " * NESTED + b"deep" + b"}" * NESTED + b"}",
                           "text/rtf")

    def test_a_small_file_that_is_a_huge_picture(self):
        side = 16_000
        self.check_content(png_of(side, side, bytes(3 * side * side)), "image/png")

    def test_a_picture_that_is_cut_off(self):
        whole = png_of(2000, 2000, os.urandom(3 * 2000 * 2000))
        self.check_content(whole[:len(whole) // 2], "image/png")


if __name__ == "__main__":
    main()
