"""The programs that people copy from and paste into, driven as a person would: by keys."""
import os
import shutil
import subprocess

from waiting import retry_until, wait_until


def copy_by_xclip(desktop, data, target=None):
    """Has xclip own the clipboard with these bytes. It stays behind as the owner."""
    command = ["xclip", "-selection", "clipboard", "-in"]
    if target:
        command += ["-t", target]
    # Its child goes on owning the selection; it must not hold our pipes.
    subprocess.run(command, input=data, env=desktop.env, stdout=subprocess.DEVNULL,
                   stderr=subprocess.DEVNULL, check=True, timeout=60)


def read_by_xclip(desktop, target=None, selection="clipboard", seconds=60):
    """The bytes that xclip gets when it asks; empty if there is no such target."""
    command = ["xclip", "-selection", selection, "-out"]
    if target:
        command += ["-t", target]
    return desktop.run(*command, check=False, timeout=seconds)


class Client:
    """A program with a window of its own. Use as a context manager."""

    window_class = None

    def __init__(self, desktop, display):
        self.desktop = desktop
        self.display = display
        self.window = None
        self.process = None

    def command(self):
        raise NotImplementedError

    def env(self):
        return self.desktop.env

    def start(self):
        return self.desktop.spawn(*self.command(), env=self.env())

    def __enter__(self):
        self.process = self.start()
        self.window = self.display.wait_for_window(window_class=self.window_class, seconds=40)
        self.focus()
        # It may have been asked more than once, and gives the focus each time that it comes to it.
        self.display.wait_for_window_manager()
        return self

    def __exit__(self, problem, *_):
        if problem:
            # It is gone when the scene of the failure is shown.
            print(f"--- the windows when {self.window_class} was left:", *self.display.scene(),
                  sep="\n", flush=True)
        self.end()

    def end(self):
        self.process.terminate()
        try:
            self.process.wait(5)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
        if self.window is not None:
            # The server notices later, and the next client must not be taken for this one.
            wait_until(lambda: not self.display.is_viewable(self.window),
                       f"the window of {self.window_class} to go")

    def focus(self):
        if not self.display.is_active(self.window):
            self.display.activate(self.window)
        # The window manager may say so before it is.
        wait_until(lambda: self.display.has_focus(self.window), "the keys to go there")

    def select_and_copy(self):
        """Copies everything in the window; returns once the window's program owns the clipboard."""
        self.press_until_copied("ctrl+a", "ctrl+c")

    def press_until_copied(self, *chords):
        def press_all():
            self.focus()
            for chord in chords:
                self.display.press(chord)

        self.retry_until_copied(press_all)

    def retry_until_copied(self, action):
        """Repeats the action until the window's program has taken the clipboard."""
        before = self.display.selection_owner()
        retry_until(action, lambda: self.display.selection_owner() not in (0, before),
                    f"{self.window_class} to copy")


class FileEditor(Client):
    """An editor that shows one file, and saves it by Ctrl+S."""

    def __init__(self, desktop, display, content="", name=None, env=None):
        super().__init__(desktop, display)
        self.own_env = env
        self.file_path = desktop.path("home", name or f"{os.urandom(4).hex()}.txt")
        with open(self.file_path, "w", encoding="utf-8", newline="") as file:
            file.write(content)
        self.content = content

    def env(self):
        return self.own_env or super().env()

    def saved_text(self):
        with open(self.file_path, encoding="utf-8", newline="") as file:
            return file.read()

    def save(self):
        """Saves, and returns the text once it is another than before."""
        def keys():
            self.focus()
            self.display.press("ctrl+s")

        retry_until(keys, lambda: self.saved_text() != self.content,
                    f"{self.window_class} to save something new")
        self.content = self.saved_text()
        return self.content

    def text_after_paste(self):
        return self.save()


class Mousepad(FileEditor):
    """A GTK 3 editor."""

    window_class = "mousepad"

    def command(self):
        return ["mousepad", "--disable-server", self.file_path]

    def env(self):
        # Else it remembers what was not saved, and asks for it at its next start.
        return dict(super().env(), GSETTINGS_BACKEND="memory")

    def text_after_paste(self):
        # It puts a line end behind a last line that has none.
        return self.save().removesuffix("\n")


class FeatherPad(FileEditor):
    """A Qt 5 editor."""

    window_class = "featherpad"

    def command(self):
        return ["featherpad", "--standalone", self.file_path]

    def __enter__(self):
        # While it starts it takes the focus back from whatever window opens.
        super().__enter__()
        self.press_until("space", self.is_changed)
        self.press_until("ctrl+z", lambda: not self.is_changed())
        return self

    def is_changed(self):
        return self.display.title(self.window).startswith("*")

    def press_until(self, chord, condition):
        retry_until(lambda: self.display.press(chord), condition, f"{chord} to be taken")

    def text_after_paste(self):
        return self.save().removesuffix("\n")


class Terminal(Client):
    """A terminal with a program in it that writes what it is given to a file, below a text."""

    def __init__(self, desktop, display, shown=""):
        super().__init__(desktop, display)
        self.file_path = desktop.path(f"{self.window_class}-{os.urandom(4).hex()}.txt")
        self.shown_path = self.file_path + ".shown"
        with open(self.shown_path, "w", encoding="utf-8") as file:
            file.write(shown)

    def script(self):
        # Not by lines: what is pasted is in the file at once.
        return (f"cat {self.shown_path}; stty -icanon; printf '\\033]2;ready\\007'; "
                f"cat > {self.file_path}")

    def __enter__(self):
        super().__enter__()
        wait_until(lambda: self.display.title(self.window) == "ready", "the text in the terminal")
        return self

    def text_after_paste(self):
        # A terminal that still waits for the clipboard would take the key first.
        wait_until(self.written_text, "something in the terminal")
        self.focus()
        self.display.press("Return")
        wait_until(lambda: self.written_text().endswith("\n"), "a line in the terminal")
        return self.written_text().removesuffix("\n")

    def written_text(self):
        if not os.path.exists(self.file_path):
            return ""
        with open(self.file_path, encoding="utf-8", errors="replace") as file:
            return file.read()


class XTerm(Terminal):
    window_class = "xterm"

    COPY_KEYS = "XTerm*VT100.translations: #override Ctrl Shift <Key>C: copy-selection(CLIPBOARD)"

    def command(self):
        return ["xterm", "-fa", "Mono", "-xrm", self.COPY_KEYS, "-e", "sh", "-c", self.script()]

    def select_and_copy(self):
        """Copies the first line."""
        def drag_and_press():
            self.focus()
            x, y, width, _ = self.display.place(self.window)
            self.display.drag(x + 3, y + 8, x + width - 20, y + 8)
            self.display.press("ctrl+shift+c")

        self.retry_until_copied(drag_and_press)


class Xfce4Terminal(Terminal):
    """One of the many that are built on VTE."""

    window_class = "xfce4-terminal"

    def command(self):
        return ["xfce4-terminal", "--disable-server", "--dynamic-title-mode=replace",
                "-x", "sh", "-c", self.script()]


class Chromium(Client):
    """A browser on one page; without a body this is a text area, of which the title tells."""

    window_class = "chromium"

    PAGE = """<!doctype html><meta charset="utf-8"><title>page</title>
<script>addEventListener("load", () => { document.title = "ready"; });</script>
<style>body { margin: 0 }</style><body>"""

    # The title tells what is in the field of a page with this.
    TELLING = """<script>
const field = document.getElementById("field");
field.addEventListener("input", () => {
    document.title = "got:" + (field.value ?? field.innerHTML);
});
field.focus();
</script>"""

    FIELD = '<textarea id="field" rows="10" cols="60" autofocus></textarea>' + TELLING
    STYLED_FIELD = '<div id="field" contenteditable style="height: 300px"></div>' + TELLING

    def __init__(self, desktop, display, body=FIELD):
        super().__init__(desktop, display)
        self.profile = desktop.path(f"chromium-{os.urandom(4).hex()}")
        os.makedirs(self.profile)
        self.page_path = os.path.join(self.profile, "page.html")
        with open(self.page_path, "w", encoding="utf-8") as file:
            file.write(self.PAGE + body)

    def command(self):
        options = ["--no-first-run", "--no-default-browser-check", "--password-store=basic",
                   "--disable-gpu", "--disable-dev-shm-usage", "--disable-background-networking",
                   "--disable-component-update", "--disable-sync", "--window-size=900,600",
                   "--user-data-dir=" + self.profile]
        # Root and most containers are denied the sandbox; the page is our own.
        options.append("--no-sandbox")
        # It would hide the top of the page behind a warning of that.
        options.append("--test-type")
        return ["chromium", *options, "--app=file://" + self.page_path]

    def __enter__(self):
        super().__enter__()
        wait_until(lambda: "ready" in self.display.title(self.window),
                   lambda: "the page; the title is " + self.display.title(self.window), 40)
        return self

    def copy_from_menu(self, x, y, letter):
        """Chooses what has this letter from the menu of the place on the page."""
        left, top, _, _ = self.display.place(self.window)

        def open_or_choose():
            if self.display.is_menu_open():
                self.display.press(letter)
                self.display.press("Escape")
            else:
                self.focus()
                self.display.click(left + x, top + y, button=3)

        self.retry_until_copied(open_or_choose)

    def end(self):
        super().end()
        shutil.rmtree(self.profile, ignore_errors=True)

    def text_after_paste(self):
        wait_until(lambda: "got:" in self.display.title(self.window), "something in the field")
        return self.display.title(self.window).split("got:", 1)[1]


class FileManager(Client):
    """A file manager on a folder."""

    def __init__(self, desktop, display, folder):
        super().__init__(desktop, display)
        self.folder = folder

    def select_and_cut(self):
        self.press_until_copied("ctrl+a", "ctrl+x")


class PCManFM(FileManager):
    """A GTK 2 file manager."""

    window_class = "pcmanfm"

    def command(self):
        return ["pcmanfm", "--no-desktop", self.folder]

    def focus(self):
        # While it starts it asks for the focus once more, when it has it already.
        self.display.wait_until_answered(self.window)
        super().focus()


class Thunar(FileManager):
    """A GTK 3 file manager, which offers the paths as a text too."""

    window_class = "thunar"

    def command(self):
        return ["thunar", self.folder]
