"""What troublesome copies cost, and how soon the next ones are captured.

For each: how soon the copy is in the list that is made 0.3 s after the trouble began; how many of
ten more are kept, 400 ms apart; and the longest time for which the main thread was away from its
events meanwhile.
"""
import os
import time

from hostile_contents import CONTENTS, large_text_file
from hostile_owner import every_mood
from main_thread import MainThreadWatch
from waiting import wait_until

HOSTILE_OWNER = os.path.join(os.path.dirname(os.path.abspath(__file__)),
                             "..", "tests", "desktop", "hostile_owner.py")
DELAY = 0.3
MORE_COPIES = 10
DISTANCE = 0.4
REACH = "50 ms; 10 of 10; 50 ms"


class HostileFigures:
    def __init__(self, session):
        self.session = session
        self.program = session.program

    def rows(self):
        moods = [(f"behind an owner that {mood.__doc__}", REACH,
                  lambda mood=mood: self.measure(self.owner_command(mood)))
                 for mood in every_mood() if mood.mood != "honest"]
        contents = [(f"behind {content.what}", REACH,
                     lambda content=content: self.measure(self.copy_command(content)))
                    for content in CONTENTS]
        return (*moods, *contents,
                ("behind 300 MB of text", REACH, lambda: self.measure(self.large_text())))

    @staticmethod
    def owner_command(mood):
        return ["/usr/bin/python3", "-B", HOSTILE_OWNER, mood.mood,
                "--offer", "UTF8_STRING:=" + "what never comes through " * 200]

    def copy_command(self, content):
        path = self.session.desktop.path("hostile-content")
        with open(path, "wb") as file:
            file.write(content.data())
        return ["xclip", "-quiet", "-selection", "clipboard", "-target", content.target,
                "-in", path]

    def large_text(self):
        path = large_text_file(self.session.desktop)
        return ["xclip", "-quiet", "-selection", "clipboard", "-in", path]

    def measure(self, command):
        self.session.fresh_start()
        display = self.session.display
        before = display.selection_owner()
        with MainThreadWatch(self.program.pid) as watch:
            hostile = self.session.desktop.spawn(*command)
            wait_until(lambda: display.selection_owner() not in (0, before), "the owner to own",
                       every=0.001)
            time.sleep(DELAY)
            first = self.time_of_copy()
            kept = sum(self.time_of_copy(DISTANCE) is not None for _ in range(MORE_COPIES))
        hostile.kill()
        hostile.wait()
        shown = "never came" if first is None else f"{first * 1000:.1f} ms"
        return f"{shown}; {kept} of {MORE_COPIES}; {watch.longest * 1000:.0f} ms"

    def time_of_copy(self, distance=0):
        """Seconds from a copy to the list; none if it never comes there."""
        time.sleep(distance)
        mark, text = self.program.mark(), self.session.next_text()
        copied_at = self.session.owner.own_text(text)
        try:
            return self.program.wait_for_line(text[:20], since=mark, seconds=5).time - copied_at
        except AssertionError:
            return None
