#!/usr/bin/python3
"""A desktop that lacks something, and a disk that does not do as it should: one clear line, and the
program goes on, or ends with a reason where nothing can work."""
import os
import signal
import socket
import subprocess
import unittest

from case import DesktopTest, main
from clients import Mousepad, copy_by_xclip, read_by_xclip


class WithoutABusTest(DesktopTest):
    desktop_options = {"bus": False}

    def test_capture_and_window_work(self):
        self.program.start()
        self.copy("copied without a bus")
        self.open_window()
        self.assertIn("No session bus: there is none", self.program.output())


class WithABadBusTest(DesktopTest):
    desktop_options = {"bus": False}

    def set_bus(self, address):
        self.program.env["DBUS_SESSION_BUS_ADDRESS"] = address

    def start_on_bus(self):
        """Starts the program on a bus of its own; returns the process of the bus."""
        self.set_bus(self.desktop.start_another_bus())
        bus = self.desktop.started[-1]
        self.addCleanup(bus.kill)
        self.program.start()
        # The start itself, in which Qt asks the bus this and that, is over by then.
        self.assert_works("copied while the bus was well")
        return bus

    def assert_works(self, text):
        self.copy(text)
        self.open_window()
        self.display.press("Escape")
        self.wait_until_closed()

    def test_a_bus_that_never_answers_does_not_hold_up_the_start(self):
        path = self.desktop.path("silent-bus")
        with socket.socket(socket.AF_UNIX) as silent:
            silent.bind(path)
            silent.listen()
            self.set_bus("unix:path=" + path)
            self.program.start()
            self.assertIn("No session bus: it does not answer", self.program.output())
            self.assert_works("copied beside a silent bus")
            second = subprocess.run([self.program.path], env=self.program.env, timeout=10,
                                    stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                    check=False)
            self.assertEqual(0, second.returncode)
            self.wait_for_history_window()
            self.assertEqual(0, self.program.end())

    def test_a_bus_that_refuses_changes_nothing(self):
        self.set_bus("unix:path=" + self.desktop.path("no-bus"))
        self.program.start()
        self.assertIn("No session bus: ", self.program.output())
        self.assert_works("copied beside a dead bus")

    def test_a_bus_that_goes_away_takes_nothing_with_it(self):
        bus = self.start_on_bus()
        bus.kill()
        bus.wait()
        self.assert_works("copied after the bus had gone")
        self.assertEqual(0, self.program.end())

    def test_a_bus_that_falls_silent_changes_nothing(self):
        bus = self.start_on_bus()
        bus.send_signal(signal.SIGSTOP)
        try:
            self.assert_works("copied after the bus had fallen silent")
            self.assertEqual(0, self.program.end())
        finally:
            bus.send_signal(signal.SIGCONT)


class WithoutATrayTest(DesktopTest):
    def test_the_program_says_so_and_runs(self):
        self.program.start()
        self.assertIn("ERROR: Failed to create status item!", self.program.output())
        self.copy("copied without a tray")
        self.open_window()


class WithATrayTest(DesktopTest):
    desktop_options = {"tray": "tint2"}

    def test_the_status_item_is_there(self):
        self.program.start()
        self.program.wait_for_line("Status item created successfully")


class WithoutKeysTest(DesktopTest):
    """A server that lets no program press keys; so the tests cannot either."""

    desktop_options = {"server_options": ("-extension", "XTEST")}

    def test_an_entry_is_left_on_the_clipboard(self):
        self.program.start()
        self.assert_alive()
        self.copy("copied without XTEST")
        second = subprocess.run([self.program.path], env=self.program.env, timeout=10,
                                stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, check=False)
        self.assertEqual(0, second.returncode)
        self.wait_for_history_window()


class WithACompositorTest(DesktopTest):
    desktop_options = {"compositor": "picom"}

    def test_the_road_is_the_same(self):
        self.program.start()
        self.copy("copied under a compositor")
        with Mousepad(self.desktop, self.display) as editor:
            mark = self.choose("compositor")
            self.program.wait_for_line("Posted keyUp event", since=mark)
            self.assertEqual("copied under a compositor", editor.text_after_paste())


class WithoutAWindowManagerTest(DesktopTest):
    desktop_options = {"wm": "none"}

    def test_capture_works(self):
        self.program.start()
        self.copy("copied without a window manager")
        self.assert_alive()


class WithATakenHotKeyTest(DesktopTest):
    desktop_options = {"wm": "openbox --config-file /etc/xdg/openbox/rc.xml"}

    def test_the_program_says_so_and_goes_on(self):
        self.program.start()
        self.assertIn("Failed to register hotkey: ", self.program.output())
        self.copy("copied without a hot key")
        self.assert_alive()


class DiskTest(DesktopTest):
    def data_folder(self):
        folder = os.path.dirname(self.program.store_path)
        os.makedirs(folder, exist_ok=True)
        return folder

    def test_a_database_that_is_none_is_left_alone(self):
        self.data_folder()
        with open(self.program.store_path, "wb") as file:
            file.write(b"this is a letter to my aunt, and no database\n" * 200)
        self.program.start()
        self.assertIn("Failed to initialize SwiftData store, fallback to JSON: ",
                      self.program.output())
        copy_by_xclip(self.desktop, b"copied all the same")
        self.program.wait_for_line("New clipboard item: text")
        mark = self.choose("")
        self.assertEqual(b"copied all the same", read_by_xclip(self.desktop))
        self.program.end()
        with open(self.program.store_path, "rb") as file:
            self.assertTrue(file.read().startswith(b"this is a letter to my aunt"))

    def test_a_folder_that_cannot_be_written(self):
        # Root writes everywhere; a file in the place of the folder stops root too.
        folder = os.path.dirname(self.program.store_path)
        with open(folder, "wb"):
            pass
        self.program.start()
        self.assertIn("Failed to initialize SwiftData store, fallback to JSON: ",
                      self.program.output())
        copy_by_xclip(self.desktop, b"kept in memory only")
        self.program.wait_for_line("New clipboard item: text")
        self.program.wait_for_line("Failed to ")
        self.choose("")
        self.assertEqual(b"kept in memory only", read_by_xclip(self.desktop))


class WithoutADisplayTest(DesktopTest):
    def test_the_program_ends_with_a_reason(self):
        env = {k: v for k, v in self.program.env.items()
               if k not in ("DISPLAY", "WAYLAND_DISPLAY")}
        run = subprocess.run([self.program.path], env=env, stdin=subprocess.DEVNULL, timeout=10,
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
        self.assertNotEqual(0, run.returncode)
        self.assertGreaterEqual(run.returncode, 0, "ended by a signal")
        self.assertIn("display", run.stdout.decode().lower())

    def test_a_display_that_does_not_answer_gives_a_reason(self):
        env = dict(self.program.env, DISPLAY=":9999")
        run = subprocess.run([self.program.path], env=env, stdin=subprocess.DEVNULL, timeout=10,
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
        self.assertGreater(run.returncode, 0, "ended by a signal, or with success")
        self.assertIn("display", run.stdout.decode().lower())


if __name__ == "__main__":
    main()
