"""When something was drawn, seen from outside: the server's damage notices, checked by pixels.

Works on a desktop without a compositor, where everything is drawn on the one screen.
"""
import select
import time

from Xlib import X, display
from Xlib.ext import damage

# So far a picture may be from the wanted one, as a share of what separates it from the old one. A
# blinking caret, or a time that has gone on by a minute, is no other frame.
TOLERANCE = 0.05


class Area:
    """A rectangle of the screen."""

    def __init__(self, x, y, width, height):
        self.x, self.y, self.width, self.height = x, y, width, height

    def touches(self, other):
        return (self.x < other.x + other.width and other.x < self.x + self.width
                and self.y < other.y + other.height and other.y < self.y + self.height)


def difference(one, other):
    """How many of the sampled pixels differ. A prime step does not fall in with the rows."""
    one, other = one[1::4 * 7], other[1::4 * 7]
    if one == other:
        return 0
    return sum(a != b for a, b in zip(one, other)) + abs(len(one) - len(other))


class ScreenWatch:
    def __init__(self, display_name):
        self.connection = display.Display(display_name)
        self.connection.set_error_handler(lambda *_: None)
        self.root = self.connection.screen().root
        self.connection.damage_query_version()
        self.damage = self.root.damage_create(damage.DamageReportRawRectangles)
        self.connection.sync()
        self.kind = self.connection.extension_event.DamageNotify

    def close(self):
        self.connection.close()

    def picture(self, area):
        return self.root.get_image(area.x, area.y, area.width, area.height, X.ZPixmap,
                                   0xFFFFFFFF).data

    def forget(self):
        """Drops the notices that have come so far."""
        self.connection.sync()
        while self.connection.pending_events():
            self.connection.next_event()

    def next_damage(self, area, end):
        """The monotonic time at which the next drawing in the area was noticed; None at the end."""
        while True:
            touched_at = None
            while self.connection.pending_events():
                notice = self.connection.next_event()
                if notice.type == self.kind and area.touches(
                        Area(notice.area.x, notice.area.y, notice.area.width, notice.area.height)):
                    touched_at = time.monotonic()
            if touched_at:
                return touched_at
            left = end - time.monotonic()
            if left <= 0:
                return None
            select.select([self.connection], [], [], left)

    def wait_for(self, area, is_right, seconds=5.0):
        """The time of the first drawing after which is_right(picture of the area); None if late."""
        end = time.monotonic() + seconds
        while True:
            drawn_at = self.next_damage(area, end)
            if drawn_at is None:
                return None
            if is_right(self.picture(area)):
                return drawn_at

    def wait_for_picture(self, area, wanted, old, seconds=5.0):
        """The time of the first drawing after which the area looks as wanted."""
        limit = max(1, int(difference(wanted, old) * TOLERANCE))
        return self.wait_for(area, lambda seen: difference(seen, wanted) < limit, seconds)

    def wait_for_change(self, area, old, seconds=5.0):
        return self.wait_for(area, lambda seen: seen != old, seconds)

    def settled_picture(self, area, quiet=0.4, seconds=5.0):
        """The picture once nothing was drawn in the area for a while."""
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            if self.next_damage(area, time.monotonic() + quiet) is None:
                break
        return self.picture(area)
