#!/usr/bin/python3
"""A private headless X11 desktop: an X server, a session bus, a window manager, and at will a
compositor and a tray. Everything started in it is ended, by process id, when it closes.

    desktop.py [--wm openbox] [--compositor picom] [--tray tint2] [--keep DIR] -- COMMAND...
"""
import argparse
import contextlib
import ctypes
import ctypes.util
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time

from waiting import wait_until

PR_SET_PDEATHSIG = 1
PR_SET_CHILD_SUBREAPER = 36

START_SECONDS = 60  # On a machine that does much else; some take 15 seconds then.

POINTER_ROOT = 1  # Where the focus is when no window has it.

# Of the session that the tests are started in; none of it may leak into the private desktop.
SESSION_VARIABLES = (
    "DISPLAY", "WAYLAND_DISPLAY", "SWAYSOCK", "SESSION_MANAGER", "DBUS_SESSION_BUS_ADDRESS",
    "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME", "XAUTHORITY",
    "QT_QPA_PLATFORM", "QT_STYLE_OVERRIDE", "GTK_MODULES",
)

OPENBOX_CONFIGURATION = "/etc/xdg/openbox/rc.xml"


def process_control(option, value):
    ctypes.CDLL(None).prctl(option, value, 0, 0, 0)


def children_of(pid):
    found = []
    for entry in filter(str.isdigit, os.listdir("/proc")):
        try:
            with open(f"/proc/{entry}/stat", encoding="utf-8", errors="replace") as stat:
                state, parent = stat.read().rsplit(")", 1)[1].split()[:2]
        except OSError:
            continue
        if int(parent) == pid and state != "Z":
            found.append(int(entry))
    return found


def descendants_of(pid):
    return [p for child in children_of(pid) for p in descendants_of(child) + [child]]


def without_keybinding(configuration, key):
    """The openbox configuration without the binding of key."""
    start = configuration.index(f'<keybind key="{key}">')
    end = configuration.index("</keybind>", start) + len("</keybind>")
    return configuration[:start] + configuration[end:]


class Desktop:
    """Use as a context manager; env is what a program needs in order to run on it.

    The window manager "openbox" comes with Alt+Space freed, since its own grab would win over that
    of a program that starts later; "openbox --config-file ..." is taken as it stands.
    """

    def __init__(self, wm="openbox", compositor=None, tray=None, bus=True, size="1280x800",
                 server_options=(), keep=None):
        self.wm = wm
        self.compositor = compositor
        self.tray = tray
        self.has_bus = bus
        self.size = size
        self.server_options = tuple(server_options)
        self.keep = keep
        self.directory = None
        self.env = {}
        self.started = []

    def __enter__(self):
        # Daemons and services that the bus starts come back to us instead of outliving the desktop.
        process_control(PR_SET_CHILD_SUBREAPER, 1)
        self.directory = self.keep or tempfile.mkdtemp(prefix="tessarine-desktop-")
        try:
            self.prepare_environment()
            self.start_server()
            if self.has_bus:
                self.start_bus()
            self.start_window_manager()
            self.start_compositor()
            self.start_tray()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        self.end_everything()
        if not self.keep:
            shutil.rmtree(self.directory, ignore_errors=True)

    def path(self, *parts):
        return os.path.join(self.directory, *parts)

    def prepare_environment(self):
        for name in ("home", "run", "logs"):
            os.makedirs(self.path(name), exist_ok=True)
        os.chmod(self.path("run"), 0o700)
        self.env = {k: v for k, v in os.environ.items() if k not in SESSION_VARIABLES}
        self.env.update(
            HOME=self.path("home"), XDG_RUNTIME_DIR=self.path("run"), XDG_SESSION_TYPE="x11",
            XDG_CURRENT_DESKTOP="test", LC_ALL="C.UTF-8",
            # Portals and the accessibility bus would be started by GTK programs, and hold our pipes.
            GTK_USE_PORTAL="0", NO_AT_BRIDGE="1")

    def start_server(self):
        number = self.spawn_told(
            "Xvfb", "-displayfd", "{fd}", "-screen", "0", self.size + "x24", "-noreset",
            "-nolisten", "tcp", *self.server_options)
        self.env["DISPLAY"] = ":" + number

    def start_bus(self):
        self.env["DBUS_SESSION_BUS_ADDRESS"] = self.start_another_bus()

    def start_another_bus(self):
        """Starts a bus and returns its address; programs on it know nothing of those on ours."""
        return self.spawn_told(
            "dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address={fd}")

    def start_window_manager(self):
        if self.wm == "none":
            return
        command = self.wm.split()
        if command == ["openbox"]:
            with open(OPENBOX_CONFIGURATION, encoding="utf-8") as file:
                configuration = without_keybinding(file.read(), "A-space")
            with open(self.path("openbox.xml"), "w", encoding="utf-8") as file:
                file.write(configuration)
            command = ["openbox", "--config-file", self.path("openbox.xml")]
        self.spawn(*command)
        wait_until(self.has_window_manager, f"{self.wm} to come up", START_SECONDS)

    def start_compositor(self):
        if not self.compositor:
            return
        self.spawn(*self.compositor.split())
        wait_until(lambda: self.is_selection_owned("_NET_WM_CM_S0"),
                   f"{self.compositor} to come up", START_SECONDS)

    def start_tray(self):
        if not self.tray:
            return
        self.spawn(*self.tray.split())
        wait_until(lambda: self.is_selection_owned("_NET_SYSTEM_TRAY_S0"),
                   f"{self.tray} to come up", START_SECONDS)

    def spawn(self, *command, env=None, **options):
        """Starts a program on this desktop; what it prints goes to a log file."""
        log_path = self.path("logs", os.path.basename(command[0]) + ".log")
        with open(log_path, "ab") as log:
            settings = dict(env=env or self.env, stdin=subprocess.DEVNULL, stdout=log, stderr=log,
                            start_new_session=True, preexec_fn=die_with_parent)
            settings.update(options)
            process = subprocess.Popen(command, **settings)
        self.started.append(process)
        return process

    def spawn_told(self, *command):
        """Starts a program that writes one line to the descriptor named {fd}; returns the line."""
        reading, writing = os.pipe()
        self.spawn(*[part.format(fd=writing) for part in command], pass_fds=(writing,))
        os.close(writing)
        with os.fdopen(reading, encoding="utf-8") as file:
            line = file.readline().strip()
        if not line:
            raise RuntimeError(f"{command[0]} did not start: " + self.log_of(command[0]))
        return line

    def log_of(self, program):
        with open(self.path("logs", program + ".log"), encoding="utf-8", errors="replace") as log:
            return log.read()

    def run(self, *command, **options):
        """Runs a short command on this desktop and returns what it printed."""
        settings = dict(env=self.env, stdin=subprocess.DEVNULL, stderr=subprocess.PIPE,
                        stdout=subprocess.PIPE, timeout=60, check=True)
        settings.update(options)
        return subprocess.run(command, **settings).stdout

    def has_window_manager(self):
        """Whether there is one that has taken the focus: that is its last step, and takes the focus
        from what was opened before."""
        answer = self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK", check=False)
        return b"window id" in answer and self.is_focus_on_window()

    def is_focus_on_window(self):
        with self.connected() as (x11, display):
            focus, revert_to = ctypes.c_ulong(), ctypes.c_int()
            x11.XGetInputFocus(display, ctypes.byref(focus), ctypes.byref(revert_to))
            return focus.value > POINTER_ROOT

    def is_selection_owned(self, name):
        with self.connected() as (x11, display):
            atom = ctypes.c_ulong(x11.XInternAtom(display, name.encode(), 0))
            return x11.XGetSelectionOwner(display, atom) != 0

    @contextlib.contextmanager
    def connected(self):
        """The X library, and a connection by it."""
        x11 = ctypes.CDLL(ctypes.util.find_library("X11"))
        x11.XOpenDisplay.restype = ctypes.c_void_p
        x11.XGetSelectionOwner.restype = x11.XInternAtom.restype = ctypes.c_ulong
        display = ctypes.c_void_p(x11.XOpenDisplay(self.env["DISPLAY"].encode()))
        try:
            yield x11, display
        finally:
            x11.XCloseDisplay(display)

    def screenshot(self, path):
        os.makedirs(os.path.dirname(os.path.abspath(path)), exist_ok=True)
        self.run("import", "-window", "root", path)

    def end_everything(self):
        for number, grace in ((signal.SIGTERM, 3.0), (signal.SIGKILL, 2.0)):
            for pid in descendants_of(os.getpid()):
                try:
                    os.kill(pid, number)
                except ProcessLookupError:
                    pass
            end = time.monotonic() + grace
            while children_of(os.getpid()) and time.monotonic() < end:
                time.sleep(0.02)
        for process in self.started:
            process.poll()
        self.reap_orphans()

    @staticmethod
    def reap_orphans():
        try:
            while os.waitpid(-1, os.WNOHANG)[0]:
                pass
        except ChildProcessError:
            pass


def die_with_parent():
    """In a new child: a test that is killed must not leave a desktop behind."""
    process_control(PR_SET_PDEATHSIG, signal.SIGTERM)


def main():
    parser = argparse.ArgumentParser(description="Runs a command on a private headless desktop.")
    parser.add_argument("--wm", default="openbox")
    parser.add_argument("--compositor")
    parser.add_argument("--tray")
    parser.add_argument("--size", default="1280x800")
    parser.add_argument("--keep", help="a directory for logs and data, kept at the end")
    parser.add_argument("command", nargs=argparse.REMAINDER)
    options = vars(parser.parse_args())
    command = options.pop("command")
    if command[:1] == ["--"]:
        command = command[1:]
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(128 + signal.SIGTERM))
    with Desktop(**options) as desktop:
        sys.exit(subprocess.call(command, env=desktop.env))


if __name__ == "__main__":
    main()
