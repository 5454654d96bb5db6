"""Whether the main thread of another process is at rest, waiting for events, or away from them."""
import os
import time

from background import Background

POLL = b"7"  # The number of the system call on x86-64.
SAMPLE_SECONDS = 0.0002


class MainThreadWatch(Background):
    """longest is the longest time away seen so far, in seconds.

    At rest the thread waits in poll() for more than one descriptor. Waiting for a lock, or for one
    answer of the display, is to be away as computing is.
    """

    def __init__(self, pid):
        super().__init__()
        self.file = os.open(f"/proc/{pid}/task/{pid}/syscall", os.O_RDONLY)
        self.longest = 0.0
        self.away_since = None

    def step(self):
        is_at_rest, now = self.is_at_rest(), time.monotonic()
        # Up to the last look that found it away: the next one may come late, and then the time
        # between is ours.
        self.away_since = None if is_at_rest else self.away_since or now
        if self.away_since:
            self.longest = max(self.longest, now - self.away_since)
        time.sleep(SAMPLE_SECONDS)

    def close(self):
        os.close(self.file)

    def is_at_rest(self):
        fields = os.pread(self.file, 200, 0).split()
        return len(fields) > 2 and fields[0] == POLL and int(fields[2], 16) > 1
