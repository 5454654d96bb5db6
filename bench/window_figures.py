"""How soon the window shows what a person asked for.

"Drawn" is the moment at which the server reported the drawing after which the rows looked as they
finally do.
"""
import corpus
from screen_watch import Area
from waiting import wait_until

WINDOW_TITLE = "Clipboard History"
HOT_KEY = "alt+space"
SEARCH_KEY = "q"
LETTERS = "abcdefghijklmnopqrstuvwxyz"


def absent_word(texts):
    """A word that is in no text, though all but its last letter is in some."""
    everything = "\n".join(texts).lower()
    word = SEARCH_KEY
    while True:
        longer = [word + letter for letter in LETTERS if word + letter in everything]
        if len(word) >= 4 and len(longer) < len(LETTERS):
            return next(word + letter for letter in LETTERS if word + letter not in longer)
        word = longer[len(longer) // 2]


class WindowFigures:
    def __init__(self, session):
        self.session = session
        self.display = session.display
        self.watch = session.watch

    def rows(self):
        return (
            ("hot key to window mapped and drawn", "20 ms", self.hot_key_to_frame),
            ("the same, first opening after a start", "45 ms", self.first_opening),
            ("first letter in the search field to narrowed list drawn", "60 ms",
             lambda: self.search(SEARCH_KEY)),
            ("a word that is not there, typed at once, to empty list drawn", "",
             lambda: self.search(absent_word(corpus.corpus(self.session.count)))),
            ("its letters after the first, typed 0.3 s later, to empty list drawn", "",
             lambda: self.search(absent_word(corpus.corpus(self.session.count)), already=1)),
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

    def search(self, word, already=0):
        """The last letters of a word, of which so many stand in the search field before."""
        self.session.fresh_start()
        area, whole = self.open_and_settle()
        self.type(word)
        narrowed = self.watch.settled_picture(area)
        if narrowed == whole:
            return "the search changes nothing that can be seen"

        def prepare():
            # Opened anew each time, so that nothing was prepared by an earlier search.
            self.open_and_settle()
            if already:
                self.type(word[:already])
            self.session.settle(0.3)
        return self.drawn_after(lambda: self.type(word[already:]), area, narrowed, prepare)

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
        x, y, width, height = self.display.place(window)
        # Without the frame, the search field with its caret, and the scroll bar.
        area = Area(x + 8, y + 104, width - 40, height - 104 - 28)
        return area, self.watch.settled_picture(area)

    def type(self, word):
        """Returns when the first key was sent."""
        return [self.display.press(letter) for letter in word][0]
