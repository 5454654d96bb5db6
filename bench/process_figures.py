"""What the program costs while nobody uses it, and how soon it is there."""
import os
import signal
import time

from program import STARTED
from window_figures import WindowFigures

HTML_BYTES = 20_000


class BareWaker:
    """A process that wakes twice a second, as the program does, and does nothing at all. Waking
    costs more on some machines than what is done awake."""

    def __enter__(self):
        self.pid = os.fork()
        if self.pid == 0:
            while True:
                time.sleep(0.5)
        return self

    def __exit__(self, *_):
        os.kill(self.pid, signal.SIGKILL)
        os.waitpid(self.pid, 0)

    def cpu_nanoseconds(self):
        with open(f"/proc/{self.pid}/schedstat", encoding="utf-8") as source:
            return int(source.read().split()[0])


class ProcessFigures:
    def __init__(self, session, idle_seconds):
        self.session = session
        self.program = session.program
        self.idle_seconds = idle_seconds

    def rows(self):
        return (
            ("start to fully initialized", "150 ms", self.start),
            ("anonymous memory, window never shown", "30 MiB", self.memory),
            ("the same with 20 kB of HTML in each entry", "45 MiB",
             lambda: self.memory(HTML_BYTES)),
            ("anonymous memory after a search, the window closed", "", self.memory_after_search),
            ("anonymous memory after 1,000 captures; after 9,000 more", "the same",
             self.memory_after_captures),
            (f"idle, {self.idle_seconds} s: CPU; voluntary switches", "5 ms; 200", self.idle),
        )

    def start(self):
        self.session.fresh_start()

        def once():
            self.program.end()
            started_at = time.monotonic()
            self.program.start()
            return self.program.find_line(STARTED).time - started_at
        return self.session.median(once)

    def memory(self, html_bytes=0):
        self.session.fresh_start(html_bytes)
        return self.memory_now()

    def memory_after_search(self):
        self.session.fresh_start()
        window = WindowFigures(self.session)
        window.open_and_settle()
        window.type("qua")
        self.session.settle()
        window.close_window()
        self.session.settle()
        return self.memory_now()

    def memory_after_captures(self):
        """At full capacity each one takes the place of another."""
        self.session.fresh_start()
        after = []
        for count in (1000, 9000):
            for _ in range(count):
                mark = self.program.mark()
                self.session.owner.own_text(self.session.next_text())
                self.program.wait_for_line("New clipboard item", since=mark)
            self.session.settle()
            after.append(self.memory_now())
        return "; ".join(after)

    def memory_now(self):
        anonymous = self.program.status_number("smaps_rollup", "Anonymous")
        pss = self.program.status_number("smaps_rollup", "Pss")
        return f"{anonymous / 1024:.1f} MiB; PSS {pss / 1024:.1f} MiB"

    def idle(self):
        self.session.fresh_start()
        with BareWaker() as waker:
            floor = waker.cpu_nanoseconds()
            cpu, switches = self.program.cpu_nanoseconds(), self.program.voluntary_switches()
            time.sleep(self.idle_seconds)
            cpu = self.program.cpu_nanoseconds() - cpu
            switches = self.program.voluntary_switches() - switches
            floor = waker.cpu_nanoseconds() - floor
        return (f"{cpu / 1e6:.1f} ms; {switches} "
                f"(a process that wakes as often and does nothing: {floor / 1e6:.1f} ms)")
