"""How soon the window shows what a person asked for.

"Drawn" is the moment at which the server reported the drawing after which the rows looked as they
finally do. The window comes gradually; its first frame has everything in it, though faintly.
"""
import time

from main_thread import MainThreadWatch
from opening_watch import OpeningWatch
from screen_watch import Area
from session import milliseconds
from waiting import wait_until

WINDOW_TITLE = "Clipboard History"
HOT_KEY = "alt+space"
# Of a window without a saved frame.
WINDOW_WIDTH, WINDOW_HEIGHT = 680, 500
ENTRANCE_SECONDS = 0.28
OPENING_SECONDS = 0.4


class WindowFigures:
    def __init__(self, session):
        self.session = session
        self.display = session.display
        self.watch = session.watch

    def rows(self):
        return (
            ("hot key to the first complete frame of an opening", "20 ms", self.hot_key_to_frame),
            ("the same, first opening after a start", "45 ms", self.first_opening),
            ("from frame to frame of an opening", "95 % within 20 ms", self.frames_of_opening),
            ("main thread away at most in the frames of an opening", "16 ms",
             self.away_in_opening),
        )

    def hot_key_to_frame(self):
        self.session.fresh_start()
        return self.first_frame(self.prepare_opening)

    def first_opening(self):
        """The very first opening after a start, which people meet as well."""
        return self.first_frame(self.session.fresh_start)

    def first_frame(self, prepare):
        def once():
            prepare()
            pressed_at, frames = self.frames()
            return frames[0] - pressed_at if frames else None
        return self.session.median(once)

    def frames_of_opening(self):
        self.session.fresh_start()
        gaps = []
        for _ in range(self.session.repeats):
            self.prepare_opening()
            _, frames = self.frames()
            # Behind the entrance the window is drawn only where something changes.
            entrance = [at for at in frames if at - frames[0] < ENTRANCE_SECONDS]
            gaps += [after - before for before, after in zip(entrance, entrance[1:])]
        self.close_window()
        return f"{milliseconds(gaps)} of {len(gaps)}"

    def away_in_opening(self):
        """From the first frame on; the time to build the window is part of what comes before."""
        self.session.fresh_start()
        longest = []
        for _ in range(self.session.repeats):
            self.prepare_opening()
            self.display.press(HOT_KEY)
            wait_until(self.window, "the window to open")
            with MainThreadWatch(self.session.program.pid) as watch:
                time.sleep(ENTRANCE_SECONDS)
            longest.append(watch.longest)
        self.close_window()
        return milliseconds(longest)

    def frames(self):
        """Opens the window; returns when the key was sent, and when frames were drawn."""
        watch = OpeningWatch(self.session.desktop.env["DISPLAY"], WINDOW_WIDTH, WINDOW_HEIGHT)
        watch.forget()
        pressed_at = self.display.press(HOT_KEY)
        frames = watch.frames(OPENING_SECONDS)
        watch.close()
        self.close_window()
        return pressed_at, frames

    def prepare_opening(self):
        self.close_window()
        self.session.settle(0.3)

    # Steps

    def window(self):
        return self.display.find_window(title=WINDOW_TITLE)

    def close_window(self):
        if self.window():
            self.display.press(HOT_KEY)
            wait_until(lambda: self.window() is None, "the window to close")

    def open_and_settle(self):
        """Opens the window anew; returns where its rows are, and how they look."""
        self.close_window()
        self.display.press(HOT_KEY)
        window = wait_until(self.window, "the window to open")
        self.display.wait_until_active(window)
        area = self.area()
        return area, self.watch.settled_picture(area)

    def area(self):
        """Where the rows are, without the frame and the scroll bar."""
        x, y, width, height = self.display.place(self.window())
        return Area(x + 8, y + 104, width - 40, height - 104 - 28)

    def type(self, word):
        """Returns when the first key was sent."""
        return [self.display.press(letter) for letter in word][0]
