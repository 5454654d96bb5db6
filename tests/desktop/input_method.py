"""An input method with which people write Chinese, turned on for the programs of a desktop."""
import os

from waiting import wait_until

PROFILE = """[Groups/0]
Name=Default
Default Layout=us
DefaultIM=pinyin

[Groups/0/Items/0]
Name=pinyin

[GroupOrder]
0=Default
"""


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

    def __exit__(self, *_):
        self.process.terminate()
        self.process.wait(10)

    def is_up(self):
        return self.desktop.run("fcitx5-remote", env=self.env, check=False).strip().isdigit()

    def active_method(self):
        return self.desktop.run("fcitx5-remote", "-n", env=self.env, check=False).decode().strip()
