"""An input method with which people write Chinese, turned on for the programs of a desktop."""
import os

from clients import XTerm
from waiting import retry_until, wait_until

PROFILE = """[Groups/0]
Name=Default
Default Layout=us
DefaultIM=pinyin

[Groups/0/Items/0]
Name=pinyin

[GroupOrder]
0=Default
"""


class WritingTerminal(XTerm):
    """One that the input method serves."""

    def __init__(self, desktop, display, env):
        super().__init__(desktop, display)
        self.writing_env = env

    def env(self):
        return self.writing_env


class Pinyin:
    """fcitx5 with pinyin always active. Use as a context manager; env is what its programs need."""

    def __init__(self, desktop):
        self.desktop = desktop
        self.env = dict(desktop.env, XMODIFIERS="@im=fcitx", QT_IM_MODULE="fcitx")
        self.process = None

    def __enter__(self):
        folder = self.desktop.path("home", ".config", "fcitx5")
        os.makedirs(folder, exist_ok=True)
        with open(os.path.join(folder, "profile"), "w", encoding="utf-8") as file:
            file.write(PROFILE)
        self.process = self.desktop.spawn("fcitx5", "--disable=wayland", env=self.env)
        wait_until(self.is_up, "the input method to come up", 30)
        return self

    def wait_until_active(self):
        """Once a program that it serves has the focus."""
        wait_until(lambda: self.active_method() == "pinyin",
                   lambda: f"pinyin, not {self.active_method()!r}", 30)

    def read_dictionary(self, display):
        """It does so at its first key, and takes its time; whoever writes Chinese all day has that
        long behind."""
        with WritingTerminal(self.desktop, display, self.env):
            retry_until(lambda: display.type("nihao"), lambda: self.candidates(display),
                        "the candidates")
            display.press("Escape")
            wait_until(lambda: not self.candidates(display), "the candidates to go")

    def candidates(self, display):
        """The window of them, None while there is none."""
        return display.find_window(window_class="fcitx")

    def wait_until_known(self):
        """Once it can serve a program, whether that has the focus or not."""
        wait_until(lambda: "frontend:dbus" in self.clients(),
                   lambda: f"a program; there is {self.clients()}", 30)

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait(10)

    def is_up(self):
        return self.desktop.run("fcitx5-remote", env=self.env, check=False).strip().isdigit()

    def clients(self):
        """What it tells of the programs."""
        return self.desktop.run("dbus-send", "--session", "--print-reply",
                                "--dest=org.fcitx.Fcitx5", "/controller",
                                "org.fcitx.Fcitx.Controller1.DebugInfo",
                                env=self.env, check=False).decode()

    def active_method(self):
        return self.desktop.run("fcitx5-remote", "-n", env=self.env, check=False).decode().strip()
