"""The frames in which a window opens: each drawing of the whole window, with or without a compositor."""
import select
import time

from Xlib import X, display
from Xlib.ext import damage

# What is drawn in a window is drawn in its frame, too, and both tell of it.
ONE_FRAME = 0.004
# A window cut to a shape is drawn in pieces, of which the largest is nearly all of it.
WHOLE = 0.8


class OpeningWatch:
    """Looks at the drawing of windows of one size, from the moment at which they are made."""

    def __init__(self, display_name, width, height):
        self.width, self.height = width, height
        self.connection = display.Display(display_name)
        self.connection.set_error_handler(lambda *_: None)
        self.connection.damage_query_version()
        self.damage_kind = self.connection.extension_event.DamageNotify
        self.connection.screen().root.change_attributes(event_mask=X.SubstructureNotifyMask)
        self.connection.sync()

    def close(self):
        self.connection.close()

    def forget(self):
        """Drops what has happened so far."""
        self.connection.sync()
        while self.connection.pending_events():
            self.connection.next_event()

    def frames(self, seconds):
        """The monotonic times of the frames within the next so many seconds."""
        times = []
        end = time.monotonic() + seconds
        while (left := end - time.monotonic()) > 0:
            if not self.connection.pending_events():
                select.select([self.connection], [], [], left)
            while self.connection.pending_events():
                event = self.connection.next_event()
                now = time.monotonic()
                if event.type == X.CreateNotify:
                    self.watch(event.window)
                elif event.type == self.damage_kind and self.is_whole(event.area):
                    if not times or now - times[-1] > ONE_FRAME:
                        times.append(now)
        return times

    def watch(self, window):
        window.damage_create(damage.DamageReportRawRectangles)
        self.connection.flush()

    def is_whole(self, area):
        return area.width * area.height > WHOLE * self.width * self.height
