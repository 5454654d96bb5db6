#!/usr/bin/python3
"""The session ends while the program runs: it goes in time, and what was captured is on disk."""
import signal
import subprocess
import threading

import case
from case import main
from clients import copy_by_xclip
from session_case import SessionEndCase
from waiting import wait_until

RESTART_NEVER = "restart style 3"


class SessionManager:
    """A session manager of the test's own; its lines say what the program told it."""

    def __init__(self, desktop, path):
        self.process = subprocess.Popen([path], env=desktop.env, stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        self.address = self.process.stdout.readline().strip()
        self.lines = []
        self.reader = threading.Thread(target=self.read_lines, daemon=True)
        self.reader.start()

    def read_lines(self):
        for line in self.process.stdout:
            self.lines.append(line.strip())

    def say(self, command):
        self.process.stdin.write(command + "\n")
        self.process.stdin.flush()

    def wait_for(self, line, count=1):
        wait_until(lambda: self.lines.count(line) >= count,
                   lambda: f"{line!r} {count} times; there came {self.lines}")

    def close(self):
        self.process.kill()
        self.process.wait()
        self.reader.join(5)
        self.process.stdin.close()
        self.process.stdout.close()


class SignalTest(SessionEndCase):
    def test_signals_that_end_a_session_lose_nothing(self):
        for number in (signal.SIGTERM, signal.SIGINT, signal.SIGHUP):
            with self.subTest(signal=number.name):
                self.program.start()
                text = f"copied just before {number.name}"
                copy_by_xclip(self.desktop, text.encode())
                self.program.wait_for_line("New clipboard item: text")
                self.program.process.send_signal(number)
                self.assertEqual(0, self.program.wait_for_exit())
                self.assertEqual(text, self.program.texts()[0])
                self.assertTrue(self.program.find_line("Event handler removed"))
                self.program.end()


class OpenWindowTest(SessionEndCase):
    """A window that is open does not hold up the end, and costs nothing of what was captured."""

    def setUp(self):
        super().setUp()
        self.program.start()
        self.texts = self.capture_many()
        self.open_window()

    def assert_ends_in_order(self):
        self.program.process.send_signal(signal.SIGTERM)
        self.assertEqual(0, self.program.wait_for_exit())
        self.assertTrue(self.program.find_line("Event handler removed"))
        self.assert_all_is_on_disk(self.texts)

    def test_the_history_is_open(self):
        self.assertIsNotNone(self.history_window())
        self.assert_ends_in_order()

    def test_the_settings_are_open(self):
        self.display.press("ctrl+comma")
        settings = self.display.wait_for_window(title="General")
        self.display.wait_until_active(settings)
        self.assert_ends_in_order()


class QuitTest(SessionEndCase):
    def test_the_key_that_quits_ends_in_order(self):
        self.program.start()
        texts = self.capture_many()
        self.open_window()
        self.display.press("ctrl+q")
        self.assertEqual(0, self.program.wait_for_exit())
        self.assertTrue(self.program.find_line("Event handler removed"))
        self.assert_all_is_on_disk(texts)


class SessionManagerTest(SessionEndCase):
    def setUp(self):
        super().setUp()
        self.manager = SessionManager(self.desktop, case.arguments.session_manager)
        self.addCleanup(self.manager.close)
        self.program.env["SESSION_MANAGER"] = self.manager.address
        self.program.start()
        self.manager.wait_for("saved")

    def test_the_end_of_the_session_loses_nothing(self):
        texts = self.capture_many()
        self.manager.say("save")
        self.manager.wait_for("saved", count=2)
        self.manager.say("die")
        self.assertEqual(0, self.program.wait_for_exit())
        self.assertTrue(self.program.find_line("Event handler removed"))
        self.assert_all_is_on_disk(texts)
        self.assertNotIn("interact", self.manager.lines)
        self.assertNotIn("vetoed", self.manager.lines)

    def test_an_open_window_does_not_hold_up_the_end(self):
        self.open_window()
        self.manager.say("save")
        self.manager.wait_for("saved", count=2)
        self.assertIsNotNone(self.history_window())
        self.manager.say("die")
        self.assertEqual(0, self.program.wait_for_exit())

    def test_an_end_that_is_called_off_changes_nothing(self):
        self.manager.say("save")
        self.manager.wait_for("saved", count=2)
        self.manager.say("cancel")
        self.copy("copied after the end was called off")
        self.open_window()

    def test_a_saved_session_does_not_hold_the_program(self):
        self.manager.wait_for(RESTART_NEVER)
        self.manager.say("save")
        self.manager.wait_for("saved", count=2)
        styles = {line for line in self.manager.lines if line.startswith("restart style")}
        self.assertEqual({RESTART_NEVER}, styles)

    def test_a_session_manager_that_dies_takes_nothing_with_it(self):
        texts = self.capture_many()
        self.manager.process.kill()
        self.program.wait_for_exit()
        self.assertTrue(self.program.find_line("Event handler removed"))
        self.assert_all_is_on_disk(texts)


class ServerEndTest(SessionEndCase):
    def setUp(self):
        super().setUp()
        number = self.desktop.spawn_told("Xvfb", "-displayfd", "{fd}", "-nolisten", "tcp")
        self.server = self.desktop.started[-1]
        self.program.env["DISPLAY"] = ":" + number

    def test_what_was_captured_is_on_disk(self):
        self.program.start()
        texts = self.capture_many(self.program)
        self.server.kill()
        self.assertEqual(1, self.program.wait_for_exit(), "ended by a signal")
        self.assertTrue(self.program.find_line("Event handler removed"))
        self.assert_all_is_on_disk(texts)


def add_options(parser):
    parser.add_argument("--session-manager", required=True, help="the program SessionManager")


if __name__ == "__main__":
    main(add_options)
