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

    def __enter__(self):
        self.process = self.desktop.spawn(*self.command(), env=self.env())
        self.window = self.display.wait_for_window(window_class=self.window_class, seconds=40)
        self.focus()
        return self

    def __exit__(self, *_):
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

    def select_and_copy(self):
        """Copies everything in the window; returns once the window's program owns the clipboard."""
        before = self.display.selection_owner()

        def keys():
            self.focus()
            self.display.press("ctrl+a")
            self.display.press("ctrl+c")

        retry_until(keys, lambda: self.display.selection_owner() not in (0, before),
                    f"{self.window_class} to copy")


class FileEditor(Client):
    """An editor that shows one file, and saves it by Ctrl+S."""

    def __init__(self, desktop, display, content="", name=None):
        super().__init__(desktop, display)
        self.file_path = desktop.path("home", name or f"{os.urandom(4).hex()}.txt")
        with open(self.file_path, "w", encoding="utf-8", newline="") as file:
            file.write(content)
        self.content = content

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

    def text_after_paste(self):
        # It puts a line end behind a last line that has none.
        return self.save().removesuffix("\n")


class FeatherPad(FileEditor):
    """A Qt 5 editor."""

    window_class = "featherpad"

    def command(self):
        return ["featherpad", "--standalone", self.file_path]

    def text_after_paste(self):
        return self.save().removesuffix("\n")


class XTerm(Client):
    """A terminal with a program in it that writes what it is given to a file."""

    window_class = "xterm"

    def __init__(self, desktop, display):
        super().__init__(desktop, display)
        self.file_path = desktop.path(f"xterm-{os.urandom(4).hex()}.txt")

    def command(self):
        return ["xterm", "-fa", "Mono", "-e", "sh", "-c", f"cat > {self.file_path}"]

    def text_after_paste(self):
        self.focus()
        self.display.press("Return")
        wait_until(lambda: os.path.exists(self.file_path) and os.path.getsize(self.file_path),
                   "a line in the terminal")
        with open(self.file_path, encoding="utf-8") as file:
            return file.read().removesuffix("\n")


class Chromium(Client):
    """A browser on one page, which tells of its text area by the window's title."""

    window_class = "chromium"

    PAGE = """<!doctype html><meta charset="utf-8"><title>page</title>
<textarea id="field" rows="10" cols="60" autofocus></textarea><script>
const field = document.getElementById("field");
field.addEventListener("focus", () => { document.title = "ready"; });
field.addEventListener("input", () => { document.title = "got:" + field.value; });
if (document.activeElement === field) document.title = "ready";
</script>"""

    def __init__(self, desktop, display, page=None):
        super().__init__(desktop, display)
        self.has_field = page is None
        self.profile = desktop.path(f"chromium-{os.urandom(4).hex()}")
        os.makedirs(self.profile)
        self.page_path = os.path.join(self.profile, "page.html")
        with open(self.page_path, "w", encoding="utf-8") as file:
            file.write(page or self.PAGE)

    def command(self):
        options = ["--no-first-run", "--no-default-browser-check", "--password-store=basic",
                   "--disable-gpu", "--disable-dev-shm-usage", "--disable-background-networking",
                   "--disable-component-update", "--disable-sync", "--window-size=900,600",
                   "--user-data-dir=" + self.profile]
        # Root and most containers are denied the sandbox; the page is our own.
        options.append("--no-sandbox")
        return ["chromium", *options, "--app=file://" + self.page_path]

    def __enter__(self):
        super().__enter__()
        if self.has_field:
            wait_until(lambda: "ready" in self.display.title(self.window),
                       lambda: "the page; the title is " + self.display.title(self.window), 40)
        return self

    def end(self):
        super().end()
        shutil.rmtree(self.profile, ignore_errors=True)

    def text_after_paste(self):
        wait_until(lambda: "got:" in self.display.title(self.window), "text in the text area")
        return self.display.title(self.window).split("got:", 1)[1]


class PCManFM(Client):
    """A GTK file manager on a folder."""

    window_class = "pcmanfm"

    def __init__(self, desktop, display, folder):
        super().__init__(desktop, display)
        self.folder = folder

    def command(self):
        return ["pcmanfm", "--no-desktop", self.folder]
