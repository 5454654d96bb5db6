"""How soon a chosen entry is where it was wanted.

Time counts from the Return key, and 400 ms of it are the program's own: it gives the focus back
after 250 ms and presses the keys 150 ms later.
"""
import time

import screenshot
from clients import Mousepad
from made_entries import MadeEntries
from paste_target import PasteTarget
from session import milliseconds
from waiting import wait_until
from window_figures import HOT_KEY, WindowFigures

PASTES = 20
LARGE_PASTES = 5
LARGE_LINE = "fifty bytes and not one more are on each line, ok\n"
LARGE_LINES = 200_000
PNG_MARK = b"\x89PNG\r\n"


class PasteFigures:
    def __init__(self, session):
        self.session = session
        self.program = session.program
        self.display = session.display
        self.window = WindowFigures(session)
        self.expected = b""  # What has to arrive.
        self.picture = None

    def rows(self):
        return (
            ("Return to the pasted text in another window", "460 ms", self.into_a_window),
            ("Return to the pasted text in a GTK editor, of which its title tells", "460 ms",
             self.into_an_editor),
            ("Return on 10 MB to the window hidden; to the pasted text", "",
             lambda: self.large("UTF8_STRING", self.add_large_text)),
            ("Return on a 4K picture to the window hidden; to the pasted JPEG, as it is kept", "",
             lambda: self.large("image/jpeg", self.add_picture)),
            ("Return on a 4K picture to the window hidden; to the pasted PNG, made of it", "",
             lambda: self.large("image/png", self.add_picture)),
        )

    def into_a_window(self):
        self.start_with(self.add_text)
        with PasteTarget(self.display) as target:
            return self.session.median(lambda: self.paste_into(target)[1], PASTES)

    def into_an_editor(self):
        self.start_with(self.add_text)
        with Mousepad(self.session.desktop, self.display) as editor:
            return self.session.median(lambda: self.paste_into_editor(editor), PASTES)

    def large(self, target_name, add):
        self.start_with(add)
        with PasteTarget(self.display, target_name) as target:
            times = [self.paste_into(target) for _ in range(LARGE_PASTES)]
        hidden, arrived = zip(*times)
        return f"{milliseconds(hidden)}; {milliseconds(arrived)}"

    # One paste

    def paste_into(self, target):
        """Seconds from Return until the window was hidden, and until what was pasted was there."""
        pressed_at, window = self.choose_newest()
        wait_until(lambda: not self.display.is_viewable(window), "the window to hide", every=0.0005)
        hidden_at = time.monotonic()
        arrival = target.wait_for_arrival()
        is_right = arrival and (arrival[1] == self.expected or arrival[1].startswith(PNG_MARK))
        self.session.settle(0.3)
        return hidden_at - pressed_at, arrival[0] - pressed_at if is_right else None

    def paste_into_editor(self, editor):
        pressed_at, _ = self.choose_newest()
        wait_until(lambda: self.is_changed(editor), "a change in the editor", every=0.0005)
        arrived_at = time.monotonic()
        self.session.settle(0.3)
        self.display.press("ctrl+z")
        wait_until(lambda: not self.is_changed(editor), "the change to be undone")
        return arrived_at - pressed_at

    def is_changed(self, editor):
        return self.display.title(editor.window).startswith("*")

    def choose_newest(self):
        """When Return was pressed, and the window in which that was."""
        *modifiers, key = HOT_KEY.split("+")
        with self.display.holding(*modifiers):
            self.display.press(key)
            window = wait_until(self.window.window, "the window to open")
            self.display.wait_until_active(window)
        self.session.settle(0.3)
        return self.display.press("Return"), window

    # The newest entry

    def start_with(self, add):
        self.session.fresh_start()
        self.program.end()
        self.expected = add(MadeEntries(self.program))
        self.program.start()
        self.session.settle()

    def add_text(self, made):
        return self.add_as_text(made, self.session.next_text())

    def add_large_text(self, made):
        return self.add_as_text(made, self.session.next_text() + "\n" + LARGE_LINE * LARGE_LINES)

    @staticmethod
    def add_as_text(made, text):
        made.add({"contentTypeRaw": "text", "stringValue": text})
        return text.encode()

    def add_picture(self, made):
        desktop = self.session.desktop
        if self.picture is None:
            path = desktop.path("kept.jpg")
            desktop.run("convert", screenshot.write(desktop, 0), "-quality", "90", path)
            with open(path, "rb") as file:
                self.picture = file.read()
        made.add_picture("kept.jpg", self.picture)
        return self.picture
