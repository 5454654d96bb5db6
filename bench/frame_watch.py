"""Whether frames come as soon as they are wished for, while something else goes on."""
import threading
import time

from screen_watch import ScreenWatch

WHEEL_DISTANCE = 0.008
WHEEL_DOWN = 5


class FrameWatch:
    """Use as a context manager; longest is the longest time from a wish for a frame to one."""

    def __init__(self, display_name, area):
        self.watch = ScreenWatch(display_name)
        self.area = area
        self.longest = 0.0
        self.wished_at = None
        self.is_ending = False
        self.thread = threading.Thread(target=self.look)

    def __enter__(self):
        self.thread.start()
        return self

    def __exit__(self, *_):
        self.is_ending = True
        self.thread.join()
        self.watch.close()

    def wish(self):
        self.wished_at = self.wished_at or time.monotonic()

    def look(self):
        while not self.is_ending:
            drawn_at = self.watch.next_damage(self.area, time.monotonic() + 0.1)
            if drawn_at and self.wished_at:
                self.longest = max(self.longest, drawn_at - self.wished_at)
                self.wished_at = None


class TurningWheel:
    """Use as a context manager: the wheel turns down in small steps, each of which wants a frame."""

    def __init__(self, display, frames):
        self.display = display
        self.frames = frames
        self.is_ending = False
        self.thread = threading.Thread(target=self.turn)

    def __enter__(self):
        self.thread.start()
        return self

    def __exit__(self, *_):
        self.is_ending = True
        self.thread.join()

    def turn(self):
        while not self.is_ending:
            self.frames.wish()
            self.display.turn_wheel(WHEEL_DOWN)
            time.sleep(WHEEL_DISTANCE)
