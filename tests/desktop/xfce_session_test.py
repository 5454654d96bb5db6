#!/usr/bin/python3
"""The program in a session of Xfce, and the logout from it."""
import os

from case import main
from desktop import descendants_of
from session_case import SessionEndCase
from waiting import wait_until


def variable_of(pid, name):
    """A variable of the environment in which a process was started; None without it."""
    try:
        with open(f"/proc/{pid}/environ", encoding="utf-8", errors="replace") as file:
            settings = file.read().split("\0")
    except OSError:  # It has ended.
        return None
    return next((value.partition("=")[2] for value in settings if value.startswith(name + "=")),
                None)


class XfceSessionTest(SessionEndCase):
    # It brings a window manager of its own.
    desktop_options = {"wm": "none"}

    def start_session(self):
        """Returns the address of the session manager, which it tells to what it starts."""
        self.session = self.desktop.spawn("xfce4-session")

        def address():
            told = (variable_of(pid, "SESSION_MANAGER") for pid in descendants_of(os.getpid()))
            return next(filter(None, told), None)
        found = wait_until(address, "the session manager", 30)
        wait_until(self.desktop.has_window_manager, "the window manager of the session", 30)
        return found

    def test_the_logout_loses_nothing_and_is_not_held_up(self):
        self.program.env["SESSION_MANAGER"] = self.start_session()
        self.program.start()
        texts = self.capture_many()
        self.desktop.run("xfce4-session-logout", "--logout")
        self.assertEqual(0, self.program.wait_for_exit())
        self.assert_all_is_on_disk(texts)
        self.assertEqual(0, self.session.wait(20))


if __name__ == "__main__":
    main()
