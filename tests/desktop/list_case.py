"""The common ground of the tests of the list: a history that is there from the start, and what a
person sees of it."""
import json
import uuid

from case import DesktopTest
from clients import read_by_xclip
from history_panel import HistoryPanel
from made_entries import MadeEntries
from waiting import wait_until


def text_entry(text, *tags, kind="text", is_favorite=False):
    return {"contentTypeRaw": kind, "stringValue": text, "isFavorite": int(is_favorite),
            "tagsJSON": json.dumps(tags).encode()}


def tag_settings(*names):
    """As the program keeps them; it gives the colours itself."""
    tags = [{"id": str(uuid.uuid4()).upper(), "name": name, "color": "red"} for name in names]
    return {"custom.tags.v2": json.dumps(tags)}


class ListCase(DesktopTest):
    settings = {}

    def entries(self):
        """As text_entry() makes them, the newest first."""
        raise NotImplementedError

    def setUp(self):
        super().setUp()
        self.program.write_settings(self.settings)
        self.program.start()  # It makes the database; only it knows the schema.
        self.program.end()
        MadeEntries(self.program).add(*reversed(self.entries()))
        self.program.start()

    def open_list(self):
        """With the focus in the search field, as the window opens."""
        self.panel = HistoryPanel(self.display, self.open_window())
        self.settle()
        return self.panel

    def open_list_at(self, row):
        """With the focus in the list, and that row selected."""
        panel = self.open_list()
        panel.click_row(row)
        panel.wait_until_selected(row)
        return panel

    def close_list(self):
        while self.history_window():
            self.display.press("Escape")
            self.settle()

    def settle(self):
        """Until two pictures of the list in a row are the same: nothing fades or moves. They are
        further apart than the ground of the selected row rests at the height of its spring's swing,
        and a blinking caret is as it was now and then."""
        seen = [None]

        def is_still():
            earlier, seen[0] = seen[0], self.panel.list_picture()
            return earlier == seen[0]
        wait_until(is_still, "the window to stand still", every=0.3)

    def assert_window_stays(self):
        """Looks once everything has had its effect."""
        self.settle()
        self.assertIsNotNone(self.history_window())
        self.display.wait_until_active(self.panel.window)

    def paste(self, press="Return"):
        """Chooses by that key, and returns the text that is on the clipboard then."""
        mark = self.program.mark()
        self.display.press(press)
        return self.pasted(mark)

    def pasted(self, mark):
        self.program.wait_for_line("Item copied to clipboard", since=mark)
        self.wait_until_closed()
        return read_by_xclip(self.desktop).decode()

    def wait_for_texts(self, texts):
        wait_until(lambda: self.program.texts() == texts,
                   lambda: f"{texts} in the store; there are {self.program.texts()}")

    def favorites(self):
        return [text for text, is_favorite in self.program.rows("stringValue, isFavorite")
                if is_favorite]

    def wait_for_favorites(self, texts):
        wait_until(lambda: self.favorites() == texts,
                   lambda: f"{texts} as favourites; there are {self.favorites()}")
