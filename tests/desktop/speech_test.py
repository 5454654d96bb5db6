#!/usr/bin/python3
"""The history window as those know it who hear it: with a real bus of assistive programs, and the
library by which screen readers use it."""
import os
import re
import signal

from case import DesktopTest, main
from clients import Mousepad
from desktop import descendants_of
from list_case import ListCase, tag_settings, text_entry
from screen_reader import ScreenReader
from waiting import wait_until

AGE = re.compile(r", 1 hour ago")
# In which nothing is found by name: they hold others together.
HOLDERS = ("filler", "separator")


class SpeechCase(ListCase):
    def entries(self):
        return [text_entry("the line"), text_entry("another line", "red", is_favorite=True),
                text_entry("https://example.org/", kind="url"), text_entry("last of all")]

    def setUp(self):
        # It is there before the program.
        self.reader = ScreenReader(self.desktop)
        self.addCleanup(self.reader.close)
        super().setUp()
        self.lines = []

    def open_heard(self):
        self.open_window()
        wait_until(lambda: self.reader.find("list"), "the list to be told of")
        self.heard()

    def heard(self):
        self.lines += self.reader.heard()
        return self.lines

    def wait_to_hear(self, event, role, name):
        def is_heard():
            return any(told[:2] == (event, role) and name in told[2] for told in self.heard())

        wait_until(is_heard, lambda: f"{event} of {role} {name!r}; heard was {self.lines}")
        self.lines = []

    def assert_all_named(self, places):
        nameless = [place for place in places
                    if not place["name"] and place["role"] not in HOLDERS]
        self.assertEqual([], nameless)
        self.assertEqual([], [place for place in places
                              if "focusable" in place["states"] and not place["name"]])


class SpeechTest(SpeechCase):
    settings = tag_settings("red", "green", "blue", "black", "white", "yellow")

    def test_everything_has_its_role_its_name_and_its_state(self):
        self.open_heard()
        places = self.reader.everything()
        self.assert_all_named(places)
        told = {(place["role"], place["name"]): place for place in places}
        self.assertIn("active", told["frame", "Clipboard History"]["states"])
        field = told["text", "Search"]
        for state in ("focused", "focusable", "editable", "showing", "enabled"):
            self.assertIn(state, field["states"])
        self.assertIn(("image", "Search"), told)
        self.assertIn("checked", told["radio button", "All"]["states"])
        for name in ("Text", "Image", "File", "Link", "Favorite", "red"):
            self.assertNotIn("checked", told["radio button", name]["states"])
        more = next(place for place in places if place["name"].startswith("More tags: "))
        self.assertIn("expandable", more["states"])
        self.assertNotIn("expanded", more["states"])
        self.assertNotIn("checked", told["check box", "Pin window"]["states"])
        rows = [place for place in places if place["role"] == "list item"]
        self.assertEqual(
            ["Text, the line", "Text, another line, tagged red", "Link, https://example.org/",
             "Text, last of all"], [AGE.split(row["name"])[0] for row in rows])
        self.assertTrue(rows[1]["name"].endswith(", favorite"), rows[1])
        self.assertEqual([(0, 4), (1, 4), (2, 4), (3, 4)],
                         [(row["index"], row["siblings"]) for row in rows])
        for row in rows:
            self.assertIn("selectable", row["states"])
            self.assertNotIn("selected", row["states"])

    def test_the_pin_and_a_pill_are_pressed(self):
        self.open_heard()
        self.assertTrue(self.reader.act("check box", "Pin window", "Toggle"))
        self.wait_to_hear("checked", "check box", "Pin window")
        self.assertTrue(self.reader.act("radio button", "Favorite", "Press"))
        self.wait_to_hear("checked", "radio button", "Favorite")
        rows = [place["name"] for place in self.reader.everything()
                if place["role"] == "list item"]
        self.assertEqual(1, len(rows), rows)

    def test_keys_are_heard_where_they_work(self):
        self.open_heard()
        self.display.press("Down")
        self.wait_to_hear("focused", "list item", "the line")
        self.display.press("Down")
        self.wait_to_hear("focused", "list item", "another line")
        chosen = self.reader.find("list item", "another line")
        self.assertIn("focused", chosen["states"])
        self.assertIn("selected", chosen["states"])
        self.display.type("line")
        self.wait_to_hear("focused", "text", "Search")
        self.wait_to_hear("property-change:accessible-description", "text", "Results: 2")
        self.assertEqual("line", self.reader.find("text", "Search")["text"])

    def test_an_empty_list_can_be_read(self):
        self.open_heard()
        self.display.type("nowhere")
        self.wait_to_hear("property-change:accessible-description", "text",
                          "Nothing matches “nowhere”")
        text = self.reader.find("label", "Nothing matches “nowhere”")
        self.assertEqual("Esc clears the search", text["description"])

    def test_a_row_is_pasted_by_its_action(self):
        with Mousepad(self.desktop, self.display) as editor:
            self.open_heard()
            mark = self.program.mark()
            self.assertTrue(self.reader.act("list item", "another line", "Press"))
            self.program.wait_for_line("Simulated Cmd+V paste completed", since=mark)
            self.wait_until_closed()
            self.assertEqual("another line", editor.text_after_paste())

    def test_a_row_is_found_by_ear_and_pasted(self):
        with Mousepad(self.desktop, self.display) as editor:
            self.open_heard()
            for name in ("the line", "another line", "https://example.org/"):
                self.display.press("Down")
                self.wait_to_hear("focused", "list item", name)
            mark = self.program.mark()
            self.display.press("Return")
            self.program.wait_for_line("Simulated Cmd+V paste completed", since=mark)
            self.assertEqual("https://example.org/", editor.text_after_paste())

    def test_the_row_menu_and_the_alert_are_heard(self):
        self.open_heard()
        self.assertTrue(self.reader.act("list item", "the line", "ShowMenu"))
        self.wait_for_menu()
        self.wait_to_hear("focused", "menu item", "Paste")
        entries = self.reader.around_focus()
        self.assert_all_named(entries)
        self.assertEqual(["Paste", "Copy", "Favorite", "Tags", "New Tag…", "Delete"],
                         [entry["name"] for entry in entries if entry["role"] == "menu item"])
        self.assertTrue(self.reader.act_beside_focus("New Tag…", "Press"))
        self.wait_to_hear("focused", "text", "New Tag")
        places = self.reader.everything()
        self.assert_all_named(places)
        alert = next(place for place in places if place["role"] == "dialog")
        self.assertEqual("New Tag", alert["name"])
        self.assertIn("modal", alert["states"])
        within = places[places.index(alert):]
        buttons = [place["name"] for place in within if place["role"] == "push button"]
        self.assertEqual(["OK", "Cancel"], buttons)

    def test_a_copy_that_comes_is_told(self):
        self.open_heard()
        self.copy("fresh from another program")
        wait_until(lambda: self.reader.find("list item", "fresh from another program"), "the row")
        self.wait_to_hear("children-changed:add", "list", "")

    def test_it_ends_while_it_is_listened_to(self):
        self.open_heard()
        self.assertEqual(0, self.program.end())


class ChineseSpeechTest(SpeechCase):
    settings = {"AppLanguage": "chinese"}

    def test_everything_is_named_in_chinese(self):
        self.display.press(self.hot_key)
        wait_until(lambda: self.reader.find("list"), "the list to be told of")
        places = self.reader.everything()
        self.assert_all_named(places)
        told = {(place["role"], place["name"]) for place in places}
        for named in (("frame", "剪贴板历史"), ("text", "搜索"), ("image", "搜索"),
                      ("panel", "筛选"), ("radio button", "全部"), ("check box", "固定窗口")):
            self.assertIn(named, told)
        rows = [place["name"] for place in places if place["role"] == "list item"]
        self.assertRegex(rows[1], r"^文本, another line, 标签red, 1小时前, 已收藏$")


class HungBusTest(DesktopTest):
    """Screen readers are reached through services that may hang; the window must not."""

    def setUp(self):
        super().setUp()
        self.reader = ScreenReader(self.desktop)
        self.addCleanup(self.reader.close)

    def hang(self, service):
        found = [pid for pid in descendants_of(os.getpid()) if service in command_of(pid)]
        self.assertTrue(found, f"{service} does not run")
        for pid in found:
            os.kill(pid, signal.SIGSTOP)
            self.addCleanup(os.kill, pid, signal.SIGCONT)

    def open_and_close(self):
        self.open_window()
        self.display.press("Escape")
        self.wait_until_closed()

    def test_a_service_that_hangs_at_the_start(self):
        self.hang("at-spi-bus-launcher")
        self.program.start()
        self.program.wait_for_line("The accessibility bus does not answer")
        self.open_and_close()

    def test_a_bus_that_hangs_later(self):
        self.program.start()
        self.open_and_close()
        self.hang("at-spi2/accessibility.conf")
        self.open_and_close()
        self.assertEqual(0, self.program.end())


def command_of(pid):
    with open(f"/proc/{pid}/cmdline", encoding="utf-8", errors="replace") as file:
        return file.read()


if __name__ == "__main__":
    main()
