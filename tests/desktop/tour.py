#!/usr/bin/python3
"""The program at work on a desktop of its own: five things are copied in real programs, one is
found again and pasted into an editor. Prints a line a step, and leaves pictures.

    tour.py --program build/release/bin/tessarine --pictures build/tour

Ends with success only if what arrived in the editor is what was chosen.
"""
import argparse
import os
import signal
import sys

from backdrop import Backdrop
from clients import Mousepad, PCManFM, copy_by_xclip
from desktop import Desktop
from display import Display
from program import Program
from waiting import retry_until, wait_until

WINDOW_TITLE = "Clipboard History"
HOT_KEY = "alt+space"

TYPED = "the harbour opens at seven and the ferry leaves at eight"
LINK = "https://www.debian.org/releases/bookworm/"
FRAGMENT = "<p>Bring <b>bread</b>, <i>cheese</i> and two pears</p>"
FRAGMENT_TEXT = "Bring bread, cheese and two pears"
QUERY = "ferry"


class Tour:
    def __init__(self, desktop, program_path, pictures):
        self.desktop = desktop
        self.display = Display(desktop.env["DISPLAY"])
        self.backdrop = Backdrop(desktop.env["DISPLAY"])
        self.program = Program(desktop, program_path)
        self.pictures = pictures
        self.steps = 0

    def tell(self, text):
        self.steps += 1
        print(f"{self.steps:2}. {text}", flush=True)

    def take_picture(self, name):
        path = os.path.join(self.pictures, name + ".png")
        self.desktop.screenshot(path)
        self.tell(f"Picture: {os.path.relpath(path)}")

    def run(self):
        self.tell(f"A private desktop is up: openbox and picom on display "
                  f"{self.desktop.env['DISPLAY']}")
        self.program.start()
        self.tell("Tessarine runs; it says: " + self.program.lines[-1].text)
        self.copy_five_things()
        with Mousepad(self.desktop, self.display, name="notes.txt") as editor:
            self.display.move(editor.window, 70, 60, 700, 460)
            self.tell("An empty editor has the focus")
            self.find_and_choose()
            return self.compare(editor)

    # Copying

    def copy_five_things(self):
        self.type_and_copy_text()
        copy_by_xclip(self.desktop, LINK.encode())
        self.wait_for_entry("url", LINK)
        self.tell(f"xclip copied a link: {LINK}")
        copy_by_xclip(self.desktop, FRAGMENT.encode(), "text/html")
        self.wait_for_entry("text", FRAGMENT_TEXT)
        self.tell(f"xclip copied an HTML fragment: {FRAGMENT}")
        self.copy_picture()
        self.copy_file()

    def wait_for_entry(self, kind, text):
        self.program.wait_for_row(lambda *row: row == (kind, text), f"{kind} {text!r}",
                                  columns="contentTypeRaw, stringValue")

    def type_and_copy_text(self):
        with Mousepad(self.desktop, self.display, name="diary.txt") as editor:
            self.type_until_saved(editor, TYPED)
            editor.select_and_copy()
            self.wait_for_entry("text", TYPED)
        self.tell(f"mousepad copied what was typed into it: {TYPED}")

    def type_until_saved(self, editor, text):
        """An editor that has just started may swallow the first letters; then all is typed anew."""
        def type_all():
            editor.focus()
            self.display.press("ctrl+a")
            self.display.type(text)
            self.display.press("ctrl+s")
        retry_until(type_all, lambda: editor.saved_text().strip() == text, "the typed text")

    def copy_picture(self):
        path = self.desktop.path("picture.png")
        self.desktop.run("convert", "-size", "320x200", "plasma:tomato-steelblue", path)
        with open(path, "rb") as file:
            copy_by_xclip(self.desktop, file.read(), "image/png")
        self.program.wait_for_row(lambda kind: kind == "image", "a picture", "contentTypeRaw")
        self.tell("xclip copied a picture of 320 by 200 pixels")

    def copy_file(self):
        folder = self.desktop.path("home", "Documents")
        os.makedirs(folder)
        with open(os.path.join(folder, "timetable.csv"), "w", encoding="utf-8") as file:
            file.write("07:00,harbour\n08:00,ferry\n")
        with PCManFM(self.desktop, self.display, folder) as manager:
            manager.select_and_copy()
            self.wait_for_entry("file", "timetable.csv")
        self.tell("pcmanfm copied a file: timetable.csv")

    # Finding and pasting

    def find_and_choose(self):
        mark = self.program.mark()
        self.display.press(HOT_KEY)
        window = wait_until(lambda: self.display.find_window(title=WINDOW_TITLE), "the window")
        self.display.wait_until_active(window)
        self.tell("Alt+Space opened the window; it says: "
                  + self.program.wait_for_line("Total items: 5", since=mark).text)
        self.wait_until_still(window)
        self.take_picture("history")
        self.display.type(QUERY)
        self.wait_until_still(window)
        self.tell(f"Typed into the search field: {QUERY}")
        self.take_picture("search")
        self.display.press("Return")
        self.program.wait_for_line("Posted keyUp event", since=mark)
        self.tell("Return chose the entry; the window closed and the keystroke was sent")

    def wait_until_still(self, window):
        """Until two pictures of the window in a row are the same; its entrance is over then."""
        place = self.display.place(window)
        seen = [None]

        def is_still():
            earlier, seen[0] = seen[0], self.display.pixels(*place)
            return earlier == seen[0]
        wait_until(is_still, "the window to stand still", every=0.3)

    def compare(self, editor):
        arrived = editor.text_after_paste()
        self.take_picture("pasted")
        self.tell(f"The editor saved what arrived: {arrived}")
        if arrived != TYPED:
            print(f"FAILED: chosen was: {TYPED}", flush=True)
            return 1
        self.tell("That is what was chosen.")
        return 0

    def end(self):
        self.program.end()
        self.backdrop.close()
        self.display.close()


def main():
    parser = argparse.ArgumentParser(description="Shows the program at work, without a screen.")
    parser.add_argument("--program", required=True)
    parser.add_argument("--pictures", required=True, help="the folder for the pictures")
    options = parser.parse_args()
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(128 + signal.SIGTERM))
    os.makedirs(options.pictures, exist_ok=True)
    with Desktop(compositor="picom") as desktop:
        tour = Tour(desktop, os.path.abspath(options.program), os.path.abspath(options.pictures))
        try:
            return tour.run()
        except (AssertionError, RuntimeError) as problem:
            print(f"FAILED: {problem}", flush=True)
            tour.desktop.screenshot(os.path.join(options.pictures, "failed.png"))
            return 1
        finally:
            tour.end()


if __name__ == "__main__":
    sys.exit(main())
