"""Where the history window stands, and moving it as a person does."""
import re

from case import OTHER_HOT_KEY, OTHER_HOT_KEY_SETTINGS, DesktopTest
from waiting import wait_until

WIDTH, DEFAULT_HEIGHT, LEAST_HEIGHT = 680, 500, 244
HEAD_Y = 14
STRIP_Y = 3
FRAME_KEY = "ClipboardSearchWindowFrame"


class PlacementCase(DesktopTest):
    """Steps. Places and sizes are in the screen's own pixels."""

    hot_key = OTHER_HOT_KEY  # No window manager has it.
    scale = 1

    def start_program(self, frame=None):
        settings = dict(OTHER_HOT_KEY_SETTINGS)
        if frame:
            settings[FRAME_KEY] = "{{%d, %d}, {%d, %d}}" % frame
        self.program.write_settings(settings)
        if self.scale != 1:
            self.program.env["QT_SCALE_FACTOR"] = str(self.scale)
        self.program.start()

    def assert_saved(self, frame):
        wait_until(lambda: self.saved_frame() == frame,
                   lambda: f"{frame} to be saved; it is {self.saved_frame()}", 5)

    def saved_frame(self):
        with open(self.program.settings_path, encoding="utf-8") as file:
            line = next((line for line in file if line.startswith(FRAME_KEY)), "")
        return tuple(map(int, re.findall(r"-?\d+", line))) or None

    def open_and_drag(self, place):
        """What the program is told while it opens is another matter than what comes later."""
        x, y, width, height = place
        window = self.open_window()
        self.wait_for_place(window, place)
        self.drag(self.in_head(window), (-10, 0))
        self.wait_for_place(window, (x - 10, y, width, height))
        self.drag(self.in_head(window), (10, 0))
        self.wait_for_place(window, place)
        return window

    def close_window(self):
        self.display.press(self.hot_key)
        self.wait_until_closed()

    def let_the_program_learn(self):
        """The hot key comes to it on another road than what the server and the window manager tell,
        and might be faster."""
        self.copy("what it deals with later than with what it was told before")

    def wait_for_place(self, window, place):
        wait_until(lambda: self.display.place(window) == place,
                   lambda: f"the window at {place}; it is at {self.display.place(window)}", 5)

    def assert_opens_at(self, place):
        window = self.open_window()
        self.wait_for_place(window, place)
        return window

    def drag(self, start, travel, steps=6):
        """By hand: a press, some moves, and letting go."""
        self.begin_drag(start, travel, steps)
        self.display.let_go_of_button()

    def begin_drag(self, start, travel, steps=6):
        self.display.move_pointer(*start)
        self.display.press_button()
        for step in range(1, steps + 1):
            self.display.move_pointer(start[0] + travel[0] * step // steps,
                                      start[1] + travel[1] * step // steps)

    def in_head(self, window):
        x, y, width, _ = self.display.place(window)
        return x + width // 2, y + round(HEAD_Y * self.scale)

    def on_top_strip(self, window):
        x, y, width, _ = self.display.place(window)
        return x + width // 2, y + round(STRIP_Y * self.scale)

    def on_bottom_strip(self, window):
        x, y, width, height = self.display.place(window)
        return x + width // 2, y + height - round(STRIP_Y * self.scale)
