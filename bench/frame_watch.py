"""Whether frames come as soon as they are wished for, while something else goes on."""
import time

from background import Background
from screen_watch import ScreenWatch

WHEEL_DISTANCE = 0.008
WHEEL_DOWN = 5


class FrameWatch(Background):
    """longest is the longest time from a wish for a frame to a frame, in seconds."""

    def __init__(self, display_name, area):
        super().__init__()
        self.watch = ScreenWatch(display_name)
        self.area = area
        self.longest = 0.0
        self.wished_at = None

    def wish(self):
        self.wished_at = self.wished_at or time.monotonic()

    def step(self):
        drawn_at = self.watch.next_damage(self.area, time.monotonic() + 0.1)
        if drawn_at and self.wished_at:
            self.longest = max(self.longest, drawn_at - self.wished_at)
            self.wished_at = None

    def close(self):
        self.watch.close()


class TurningWheel(Background):
    """The wheel turns down in small steps, each of which wants a frame."""

    def __init__(self, display, frames):
        super().__init__()
        self.display = display
        self.frames = frames

    def step(self):
        self.frames.wish()
        self.display.turn_wheel(WHEEL_DOWN)
        time.sleep(WHEEL_DISTANCE)
