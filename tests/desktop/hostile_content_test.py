#!/usr/bin/python3
"""Copies of contents that are made to cost much."""
import os

from case import main
from clients import copy_by_xclip
from hostile_case import HostileTest
from hostile_contents import CONTENTS, large_text_file


class HostileContentTest(HostileTest):
    def check_content(self, name):
        content = next(content for content in CONTENTS if content.name == name)
        data = content.data()
        self.check(lambda: copy_by_xclip(self.desktop, data, content.target))

    def test_three_hundred_megabytes_of_text(self):
        path = large_text_file(self.desktop)
        mark = self.program.mark()
        self.check(lambda: self.desktop.spawn("xclip", "-selection", "clipboard", "-in", path), 60)
        self.program.wait_for_line("Detected: Text/URL - 'a line that comes again", since=mark)
        # The line end behind the last line is no part of the entry.
        self.program.wait_for_row(lambda size: size == os.path.getsize(path) - 1, "the large text",
                                  "length(CAST(stringValue AS BLOB))", seconds=60)

    def test_an_xml_bomb_as_html(self):
        self.check_content("xml_bomb")

    def test_an_xml_bomb_as_a_picture(self):
        self.check_content("svg_bomb")

    def test_html_of_a_hundred_thousand_nested_elements(self):
        self.check_content("elements")

    def test_html_of_a_hundred_thousand_nested_tables(self):
        self.check_content("tables")

    def test_rtf_of_a_hundred_thousand_nested_groups(self):
        self.check_content("groups")

    def test_a_small_file_that_is_a_huge_picture(self):
        self.check_content("huge_picture")

    def test_a_picture_that_is_cut_off(self):
        self.check_content("half_a_picture")


if __name__ == "__main__":
    main()
