"""How soon the window shows what a person asked for.

"Drawn" is the moment at which the server reported the drawing after which the rows looked as they
finally do.
"""
from screen_watch import Area
from waiting import wait_until

WINDOW_TITLE = "Clipboard History"
HOT_KEY = "alt+space"


class WindowFigures:
    def __init__(self, session):
        self.session = session
        self.display = session.display
        self.watch = session.watch

    def rows(self):
        return (
            ("hot key to window mapped and drawn", "20 ms", self.hot_key_to_frame),
            ("the same, first opening after a start", "45 ms", self.first_opening),
        )

    def hot_key_to_frame(self):
        self.session.fresh_start()
        return self.opening(self.prepare_opening)

    def first_opening(self):
        """The very first opening after a start, which people meet as well."""
        self.session.fresh_start()
        return self.opening(self.session.fresh_start)

    def opening(self, prepare):
        # The window opens at the place where it was, so its rows are known before.
        area, wanted = self.open_and_settle()
        return self.drawn_after(lambda: self.display.press(HOT_KEY), area, wanted, prepare)

    def prepare_opening(self):
        self.close_window()
        self.session.settle(0.3)

    def drawn_after(self, act, area, wanted, prepare):
        """The median time from act(), which gives its moment, to the area looking as wanted."""
        def once():
            prepare()
            old = self.watch.settled_picture(area)
            self.watch.forget()
            acted_at = act()
            drawn_at = self.watch.wait_for_picture(area, wanted, old)
            return drawn_at and drawn_at - acted_at
        answer = self.session.median(once)
        self.close_window()
        return answer

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
