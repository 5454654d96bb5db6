#!/usr/bin/python3
"""Nothing is taken of what is copied while an ignored application has the focus."""
import json
import os

from case import DesktopTest, main
from clients import FeatherPad, Mousepad, read_by_xclip
from waiting import wait_until

IDENTIFIER = "org.xfce.mousepad"
NOTICE = f"Ignored clipboard change from app: Mousepad ({IDENTIFIER})"
IGNORED_TEXT = "of the ignored editor"
OTHER_TEXT = "of the other editor"


class IgnoredAppTest(DesktopTest):
    def start(self, *identifiers):
        apps = [{"name": "An editor", "bundleIdentifier": identifier} for identifier in identifiers]
        self.program.write_settings({"privacy.ignored_apps": json.dumps(apps)})
        self.program.start()

    def ignored_editor(self):
        return Mousepad(self.desktop, self.display, IGNORED_TEXT)

    def other_editor(self):
        return FeatherPad(self.desktop, self.display, OTHER_TEXT)

    def check_ignored(self, *identifiers):
        self.start(*identifiers)
        with self.ignored_editor() as editor:
            editor.select_and_copy()
            self.program.wait_for_line(NOTICE)
        self.copy("the next copy")
        self.assertEqual(["the next copy"], self.program.texts())
        self.assertNotIn(IGNORED_TEXT[:8], self.program.output())

    def test_its_copies_are_not_taken(self):
        self.check_ignored(IDENTIFIER)

    def test_the_case_and_blanks_around_its_identifier_do_not_matter(self):
        self.check_ignored("org.example.other", " Org.XFCE.Mousepad ")

    def test_with_an_empty_list_every_copy_is_taken(self):
        self.start()
        with self.ignored_editor() as editor:
            editor.select_and_copy()
            self.program.wait_for_text(IGNORED_TEXT)

    def test_its_copy_is_not_taken_later_when_it_is_in_the_background(self):
        self.start(IDENTIFIER)
        with self.other_editor() as other, self.ignored_editor() as ignored:
            ignored.select_and_copy()
            self.program.wait_for_line(NOTICE)
            other.select_and_copy()
            self.program.wait_for_text(OTHER_TEXT)
        self.assertEqual([OTHER_TEXT], self.program.texts())

    def test_its_copy_goes_with_it(self):
        self.start(IDENTIFIER)
        with self.ignored_editor() as editor:
            editor.select_and_copy()
            self.program.wait_for_line(NOTICE)
            editor.process.kill()
            editor.process.wait(10)
        # Who is answered knows that the end of the editor was dealt with before.
        client = os.path.join(os.path.dirname(os.path.abspath(__file__)), "leaving_client.py")
        self.assertEqual(b"refused\n", self.desktop.run("/usr/bin/python3", "-B", client, "save"))
        self.assertEqual(b"", read_by_xclip(self.desktop))
        self.assertEqual([], self.program.rows())

    # What counts is who had the focus when the copy was made

    def test_a_copy_made_before_it_came_to_the_front_is_taken(self):
        self.start(IDENTIFIER)
        with self.ignored_editor() as ignored, self.other_editor() as other:
            other.select_and_copy()
            ignored.focus()
            entry = self.program.wait_for_entry(OTHER_TEXT, "sourceAppBundleID")
        self.assertEqual("featherpad", entry.sourceAppBundleID)

    def test_a_copy_of_its_own_is_not_taken_though_another_came_to_the_front(self):
        self.start(IDENTIFIER)
        with self.other_editor() as other, self.ignored_editor() as ignored:
            ignored.select_and_copy()
            other.focus()
            self.program.wait_for_line(NOTICE)
        self.copy("the next copy")
        self.assertEqual(["the next copy"], self.program.texts())

    def copy_slowly(self, text, then):
        """Takes the clipboard, and answers for its contents only when then() is done."""
        owner = self.owner()
        owner.hold()
        owner.own_text(text)
        wait_until(lambda: owner.held, "a question for the contents")
        then()
        owner.release()

    def test_a_slow_copy_made_before_it_came_to_the_front_is_taken(self):
        self.start(IDENTIFIER)
        with self.other_editor() as other, self.ignored_editor() as ignored:
            other.focus()
            self.copy_slowly("a slow copy", then=ignored.focus)
            entry = self.program.wait_for_entry("a slow copy", "sourceAppBundleID")
        self.assertEqual("featherpad", entry.sourceAppBundleID)

    def test_a_slow_copy_of_its_own_is_not_taken_though_another_came_to_the_front(self):
        self.start(IDENTIFIER)
        with self.other_editor() as other, self.ignored_editor() as ignored:
            ignored.focus()
            self.copy_slowly("a slow copy", then=other.focus)
            self.program.wait_for_line(NOTICE)
            self.copy("the next copy")
        self.assertEqual(["the next copy"], self.program.texts())


if __name__ == "__main__":
    main()
