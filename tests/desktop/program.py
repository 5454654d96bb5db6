"""The program under test: started on a desktop with data of its own, watched by what it prints,
by its database and by /proc."""
import collections
import contextlib
import os
import signal
import sqlite3
import subprocess
import threading
import time

from waiting import wait_until

Line = collections.namedtuple("Line", "time text")

STARTED = "Tessarine fully initialized"


class Program:
    """A run of the program; each start goes on with the data of the earlier one."""

    def __init__(self, desktop, path, data=None):
        self.desktop = desktop
        self.path = path
        self.data = data or desktop.path("data")
        self.env = dict(desktop.env, XDG_DATA_HOME=os.path.join(self.data, "share"),
                        XDG_CONFIG_HOME=os.path.join(self.data, "config"))
        for name in ("XDG_DATA_HOME", "XDG_CONFIG_HOME"):
            os.makedirs(self.env[name], exist_ok=True)
        self.process = None
        self.lines = []
        self.reader = None
        self.umask = -1  # As it is in the test.
        self.is_job = False  # In a session with its parent, as what a shell starts in a terminal.

    @property
    def store_path(self):
        return os.path.join(self.env["XDG_DATA_HOME"], "tessarine", "clipboard_history.store")

    @property
    def images_path(self):
        return os.path.join(os.path.dirname(self.store_path), "images")

    @property
    def settings_path(self):
        return os.path.join(self.env["XDG_CONFIG_HOME"], "tessarine", "tessarine.conf")

    def write_settings(self, settings):
        """Writes a settings file of these texts, in place of any other."""
        os.makedirs(os.path.dirname(self.settings_path), exist_ok=True)
        with open(self.settings_path, "w", encoding="utf-8") as file:
            file.write("[General]\n")
            for key, text in settings.items():
                escaped = text.replace("\\", "\\\\").replace('"', '\\"')
                file.write(f'{key}="{escaped}"\n')

    # Starting and ending

    def start(self, wait=True):
        """Starts the program; with wait, returns once it says that it is ready."""
        self.lines = []
        self.process = subprocess.Popen(
            [self.path], env=self.env, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT, start_new_session=not self.is_job,
            process_group=0 if self.is_job else None, umask=self.umask)
        self.reader = threading.Thread(target=self.read_lines, args=(self.process, self.lines),
                                       daemon=True)
        self.reader.start()
        if wait:
            self.wait_for_line(STARTED, seconds=20)
        return self

    @staticmethod
    def read_lines(process, lines):
        for line in iter(process.stdout.readline, b""):
            lines.append(Line(time.monotonic(), line.decode("utf-8", "replace").rstrip("\n")))

    def end(self):
        """Ends the program, kindly first. Returns its status, None if it does not run."""
        if self.process is None:
            return None
        if self.process.poll() is None:
            self.process.terminate()
            try:
                self.process.wait(5)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()
        self.reader.join(2)
        self.process.stdout.close()
        status, self.process = self.process.returncode, None
        return status

    def kill(self):
        """Ends the program as a crash would."""
        self.process.send_signal(signal.SIGKILL)
        self.process.wait()

    @contextlib.contextmanager
    def held_up(self):
        """It takes its next step only behind the block, however long that takes."""
        self.process.send_signal(signal.SIGSTOP)
        try:
            yield
        finally:
            self.process.send_signal(signal.SIGCONT)

    def wait_for_exit(self, seconds=10.0):
        status = self.process.wait(seconds)
        self.reader.join(2)
        return status

    def is_running(self):
        return self.process is not None and self.process.poll() is None

    @property
    def pid(self):
        return self.process.pid

    # What it prints

    def output(self):
        return "\n".join(line.text for line in list(self.lines))

    def mark(self):
        """A place in the output; lines printed from here on can be waited for."""
        return len(self.lines)

    def find_line(self, text, since=0):
        for line in self.lines[since:]:
            if text in line.text:
                return line
        return None

    def wait_for_line(self, text, since=0, seconds=10.0):
        def is_there():
            line = self.find_line(text, since)
            if line is None and self.process.poll() is not None and not self.reader.is_alive():
                raise AssertionError(f"ended with {self.process.returncode} before it printed "
                                     f"{text!r}; it printed:\n{self.output()}")
            return line
        return wait_until(is_there, lambda: f"{text!r} to be printed; it printed:\n{self.output()}",
                          seconds, every=0.002)

    # What it keeps

    def rows(self, columns="stringValue"):
        """The live rows of the database, newest first."""
        if not os.path.exists(self.store_path):
            return []
        with connected(self.store_path) as store:
            try:
                return store.execute(
                    f"SELECT {columns} FROM ClipboardHistoryRecord WHERE deletedAt IS NULL "
                    "ORDER BY timestamp DESC").fetchall()
            except sqlite3.OperationalError:  # The table is not there yet.
                return []

    def texts(self):
        return [row[0] for row in self.rows()]

    def wait_for_row(self, matches, what, columns="stringValue", seconds=10.0):
        """The first row for which matches(*columns) is true."""
        return wait_until(
            lambda: next((row for row in self.rows(columns) if matches(*row)), None),
            lambda: f"a row with {what}; it printed:\n{self.output()[-2000:]}", seconds)

    def wait_for_entry(self, text, *columns, seconds=10.0):
        """The first row with this text: its stringValue and the columns, by their names."""
        names = ("stringValue", *columns)
        row = self.wait_for_row(lambda stored, *_: stored == text, repr(text[:60]),
                                ", ".join(names), seconds)
        return collections.namedtuple("Entry", names)(*row)

    def wait_for_text(self, text, seconds=10.0):
        return self.wait_for_row(lambda stored: stored == text, repr(text[:60]), seconds=seconds)

    def do_upkeep(self, upkeep, task):
        """Has the upkeep program of that path do what the settings offer: "limit" or "clear"."""
        subprocess.run([upkeep, task, os.path.dirname(self.store_path), self.settings_path],
                       check=True, timeout=60, umask=self.umask, stdin=subprocess.DEVNULL,
                       stdout=subprocess.DEVNULL)

    # What it costs

    def status_number(self, file, name):
        """A number of a "name: number" file of /proc."""
        return int(self.status_text(file, name).split()[0])

    def status_text(self, file, name):
        with open(f"/proc/{self.pid}/{file}", encoding="utf-8") as source:
            for line in source:
                if line.startswith(name + ":"):
                    return line.split(":", 1)[1].strip()
        raise KeyError(name)

    def cpu_nanoseconds(self):
        """Time on the processors, of all threads that are still there."""
        return sum(int(text.split()[0]) for text in self.of_threads("schedstat"))

    def voluntary_switches(self):
        return sum(int(text.split("\nvoluntary_ctxt_switches:")[1].split()[0])
                   for text in self.of_threads("status"))

    def of_threads(self, file):
        for thread in os.listdir(f"/proc/{self.pid}/task"):
            try:
                with open(f"/proc/{self.pid}/task/{thread}/{file}", encoding="utf-8") as source:
                    yield source.read()
            except OSError:  # The thread has ended.
                continue


class connected:
    """A reading connection to a store that another process writes; closed at the end."""

    def __init__(self, path):
        self.connection = sqlite3.connect(f"file:{path}?mode=ro", uri=True, timeout=5)

    def __enter__(self):
        return self.connection

    def __exit__(self, *_):
        self.connection.close()
