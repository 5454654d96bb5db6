"""A password manager with one entry in its database, driven as a person would: by keys."""
import os

from clients import Client

MASTER_PASSWORD = "open sesame"


class KeePassXC(Client):
    window_class = "keepassxc"

    def __init__(self, desktop, display, user_name, password, clear_seconds=10):
        super().__init__(desktop, display)
        self.folder = desktop.path(f"keepassxc-{os.urandom(4).hex()}")
        os.makedirs(self.folder)
        self.clear_seconds = clear_seconds
        self.command_line("db-create", "-p", self.path("passwords.kdbx"),
                          typed=[MASTER_PASSWORD, MASTER_PASSWORD])
        self.command_line("add", "-u", user_name, "-p", self.path("passwords.kdbx"), "An entry",
                          typed=[MASTER_PASSWORD, password])
        self.write_settings()

    def path(self, name):
        return os.path.join(self.folder, name)

    def command_line(self, task, *arguments, typed):
        lines = "".join(line + "\n" for line in typed).encode()
        self.desktop.run("keepassxc-cli", task, "-q", *arguments, stdin=None, input=lines)

    def write_settings(self):
        with open(self.path("settings.ini"), "w", encoding="utf-8") as file:
            file.write("[General]\nUpdateCheckMessageShown=true\n"
                       f"[Security]\nClearClipboardTimeout={self.clear_seconds}\n")

    def command(self):
        return ["keepassxc", "--config", self.path("settings.ini"), "--localconfig",
                self.path("local.ini"), "--pw-stdin", self.path("passwords.kdbx")]

    def start(self):
        with open(self.path("typed"), "w", encoding="utf-8") as file:
            file.write(MASTER_PASSWORD + "\n")
        with open(self.path("typed"), encoding="utf-8") as file:
            return self.desktop.spawn(*self.command(), env=self.env(), stdin=file)

    def copy_password(self):
        # Escape leaves the search for the list.
        self.press_until_copied("Escape", "Down", "ctrl+c")

    def copy_user_name(self):
        self.press_until_copied("Escape", "Down", "ctrl+b")
