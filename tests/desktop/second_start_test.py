#!/usr/bin/python3
"""The program is started while it runs: one program stays, and its window comes up in front."""
import os
import signal
import subprocess

import case
from case import DesktopTest, main
from clients import XTerm
from desktop import descendants_of
from program import Program
from startup_watch import StartupWatch
from waiting import wait_until

HANDED_OVER = "Tessarine is already running; its window was asked to show\n"


class StartTest(DesktopTest):
    def start_again(self, **environment):
        """Starts the program a second time, and returns its status and what it printed."""
        second = self.start_second(**environment)
        printed = second.communicate(timeout=20)[0].decode()
        return second.returncode, printed

    def start_second(self, **environment):
        second = subprocess.Popen([self.program.path], env=dict(self.program.env, **environment),
                                  stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                  stderr=subprocess.STDOUT)
        self.addCleanup(second.stdout.close)
        self.addCleanup(second.wait)
        self.addCleanup(second.kill)
        return second

    def assert_keys_reach(self, window):
        """The window has the keyboard, and hides at the key that hides it."""
        self.assertTrue(self.display.is_active(window))
        self.display.press("Escape")
        self.wait_until_closed()


class SecondStartTest(StartTest):
    def test_the_window_comes_up_in_front(self):
        self.program.start()
        with XTerm(self.desktop, self.display) as terminal:
            for _ in range(2):
                terminal.focus()
                # From now on the window manager knows when the person was last busy there.
                self.display.type("busy")
                self.assertEqual((0, HANDED_OVER), self.start_again())
                self.assert_keys_reach(self.wait_for_history_window())


class SecondStartUnderXfwm4Test(SecondStartTest):
    desktop_options = {"wm": "xfwm4"}


class SecondStartUnderMetacityTest(SecondStartTest):
    desktop_options = {"wm": "metacity"}


class SecondStartUnderMutterTest(SecondStartTest):
    desktop_options = {"wm": "mutter --x11"}


class SecondStartUnderKWinTest(SecondStartTest):
    desktop_options = {"wm": "kwin_x11"}


class OneProgramTest(StartTest):
    def test_of_two_starts_at_the_same_moment_one_stays(self):
        for _ in range(5):
            both = [self.start_second() for _ in range(2)]
            wait_until(lambda: any(start.poll() is not None for start in both),
                       "one of two programs to end")
            ended, stays = sorted(both, key=lambda start: start.poll() is None)
            self.assertEqual(HANDED_OVER, ended.stdout.read().decode())
            self.assertEqual(0, ended.returncode)
            self.wait_for_history_window()
            self.assertIsNone(stays.poll())
            stays.terminate()
            self.assertEqual(0, stays.wait(10))

    def test_a_program_that_hangs_is_not_waited_for_long(self):
        self.program.start()
        os.kill(self.program.pid, signal.SIGSTOP)
        try:
            status, printed = self.start_again()
        finally:
            os.kill(self.program.pid, signal.SIGCONT)
        self.assertEqual((1, "tessarine: another instance is running, and it does not answer\n"),
                         (status, printed))
        self.assert_alive()

    def test_a_start_after_a_sudden_end_is_a_first_one(self):
        self.program.start()
        self.copy("copied before the sudden end")
        self.program.kill()
        self.program.end()
        self.program.start()
        self.assertIn("Loaded 1 items from disk", self.program.output())

    def test_a_start_while_the_program_ends_takes_its_place(self):
        self.program.start()
        for number in range(50):
            self.copy(f"copied before the end {number}")
        self.program.process.terminate()
        successor = Program(self.desktop, self.program.path, data=self.program.data)
        self.addCleanup(successor.end)
        successor.start()
        self.assertEqual(0, self.program.wait_for_exit())
        self.assertIn("Loaded 50 items from disk", successor.output())

    def test_another_history_has_a_program_of_its_own(self):
        self.program.start()
        other = Program(self.desktop, self.program.path, data=self.program.data + "-other")
        self.addCleanup(other.end)
        other.start()
        self.assertTrue(other.is_running())
        self.assert_alive()

    def test_the_launchers_token_is_taken_from_either_variable(self):
        self.program.start()
        for name in ("DESKTOP_STARTUP_ID", "XDG_ACTIVATION_TOKEN"):
            with StartupWatch(self.desktop.env["DISPLAY"]) as watch:
                token = f"launcher-{name}_TIME0"
                self.assertEqual((0, HANDED_OVER), self.start_again(**{name: token}))
                self.wait_for_history_window()
                wait_until(lambda: watch.ids("remove") == [token],
                           lambda: f"the end of the start; there came {watch.messages()}")
            self.display.press("Escape")
            self.wait_until_closed()


class LauncherTest(StartTest):
    """The program is installed, and started by its desktop entry as a menu or a panel does it."""

    def setUp(self):
        super().setUp()
        self.prefix = self.desktop.path("prefix")
        subprocess.run(["cmake", "--install", case.arguments.build, "--prefix", self.prefix],
                       check=True, stdout=subprocess.DEVNULL, timeout=60)
        self.entry = os.path.join(self.prefix, "share", "applications", "tessarine.desktop")
        self.program.path = os.path.join(self.prefix, "bin", "tessarine")
        self.program.env["PATH"] = os.path.dirname(self.program.path) + ":" + os.environ["PATH"]
        self.program.env["XDG_DATA_DIRS"] = os.path.join(self.prefix, "share") + ":/usr/share"

    def launch(self):
        # The program goes on with the launcher's output; it must not be a pipe of ours.
        self.desktop.run("gtk-launch", "tessarine", env=self.program.env,
                         stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def wait_until_told(self, watch):
        """Returns once the launcher has announced a start and that one is over."""
        def is_over():
            started = watch.ids("new")
            return started and set(started) == set(watch.ids("remove"))
        wait_until(is_over, lambda: f"the end of the start; there came {watch.messages()}")

    def test_the_entry_is_valid(self):
        self.assertEqual(b"", self.desktop.run("desktop-file-validate", self.entry))
        icons = os.path.join(self.prefix, "share", "icons", "hicolor", "scalable", "apps")
        self.assertEqual(["tessarine.svg"], os.listdir(icons))

    def test_a_second_start_brings_the_window_up(self):
        self.program.start()
        with XTerm(self.desktop, self.display) as terminal:
            terminal.focus()
            self.display.type("busy")
            with StartupWatch(self.desktop.env["DISPLAY"]) as watch:
                self.launch()
                self.assert_keys_reach(self.wait_for_history_window())
                self.wait_until_told(watch)

    def test_the_first_start_is_told_to_be_over(self):
        with StartupWatch(self.desktop.env["DISPLAY"]) as watch:
            self.launch()
            self.wait_until_told(watch)
        self.assertIsNone(self.history_window())
        os.kill(self.running_program(), signal.SIGTERM)

    def running_program(self):
        """The process of the program, whose parent, the launcher, has ended."""
        return next(pid for pid in descendants_of(os.getpid())
                    if os.path.realpath(f"/proc/{pid}/exe") == os.path.realpath(self.program.path))


class LauncherUnderMetacityTest(LauncherTest):
    desktop_options = {"wm": "metacity"}


def add_options(parser):
    parser.add_argument("--build", required=True, help="the folder that the program was built in")


if __name__ == "__main__":
    main(add_options)
