"""Which folder may include which: the rules, and a reader of #include lines that applies them."""
import os
import re
from dataclasses import dataclass

GROUND = {"platform", "appearance", "foundation"}
BELOW_CAPTURE = {"core", "language"} | GROUND
BELOW_WINDOW = {"preview", "tags", "capture", "persistence", "widgets"} | BELOW_CAPTURE

# A folder includes itself and what stands here. A folder that is missing here is an error, so that
# a new one is given its place on purpose.
MAY_INCLUDE = {
    "app": {"settings", "window"} | BELOW_WINDOW,
    "settings": BELOW_WINDOW,
    "window": BELOW_WINDOW,
    "preview": BELOW_CAPTURE,
    "tags": {"widgets"} | BELOW_CAPTURE,
    "capture": BELOW_CAPTURE,
    "persistence": BELOW_CAPTURE,
    "core": {"language"} | GROUND,
    "language": GROUND,
    "widgets": GROUND,
    "platform": {"foundation"},
    "platform/linux": {"platform", "foundation"},
    "platform/x11": {"platform", "platform/linux", "foundation"},
    "platform/wayland": {"platform", "platform/linux", "foundation"},
    "appearance": {"foundation"},
    "foundation": set(),
}

# Chosen by main.cpp and handed to the others as interfaces.
BACKENDS = {"persistence", "platform/linux", "platform/x11", "platform/wayland"}

WITHOUT_WIDGETS = {"core", "language", "platform", "platform/linux", "platform/x11",
                   "platform/wayland", "appearance", "foundation"}

NATIVE = re.compile(r"^(X11|xcb|xkbcommon|wayland|dbus)[/-]|^QtDBus\b|^QDBus|^wayland-")
SQLITE = re.compile(r"^sqlite3(ext)?\.h$")

INCLUDE = re.compile(r'^\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>)', re.MULTILINE)
COMMENT = re.compile(r"/\*.*?\*/", re.DOTALL)
LINE_COMMENT = re.compile(r"//[^\n]*")
DIRECTIVE = re.compile(r"^\s*#.*$", re.MULTILINE)


@dataclass(frozen=True)
class Violation:
    file: str
    include: str
    reason: str

    def __str__(self):
        return f"{self.file} includes {self.include}: {self.reason}"


def folder_of(path):
    """The folder of the table that a path below the sources belongs to; "" for the root itself."""
    parts = path.split("/")[:-1]
    return "/".join(parts[:2]) if parts[:1] == ["platform"] else "/".join(parts)


def includes_of(text):
    """Pairs of an include and whether it was written with quotes."""
    found = []
    for ours, system in INCLUDE.findall(COMMENT.sub("", text)):
        found.append((ours, True) if ours else (system, False))
    return found


def wraps_a_native_header(text):
    """Whether a header declares nothing itself, and only makes a native one fit to be included."""
    rest = DIRECTIVE.sub("", LINE_COMMENT.sub("", COMMENT.sub("", text)))
    return not rest.strip() and any(NATIVE.match(include) for include, _ in includes_of(text))


class Rules:
    """widget_headers are the names under which the widgets can be included."""

    def __init__(self, widget_headers):
        self.widget_headers = set(widget_headers)
        self.wrappers = set()  # Headers of ours that count as native ones.

    def violations(self, file, text):
        """What is wrong with the includes of one file, named by its path below the sources."""
        if file == "main.cpp":
            return []
        found = []
        for include, is_ours in includes_of(text):
            reason = self.reason_against(file, include, is_ours)
            if reason:
                found.append(Violation(file, include, reason))
        return found

    def reason_against(self, file, include, is_ours):
        folder = folder_of(file)
        if folder not in MAY_INCLUDE:
            return f"the folder {folder or 'src'} has no place in the table"
        if include in self.wrappers and file.endswith(".h"):
            return "native headers appear in .cpp files only"
        if is_ours:
            return self.reason_against_ours(folder, include)
        return self.reason_against_system(folder, file, include)

    @staticmethod
    def reason_against_ours(folder, include):
        if include.endswith(".moc"):
            return None
        target = folder_of(include)
        if not target:
            return "paths of ours start at the root of the sources"
        if target == folder:
            return None
        if target not in MAY_INCLUDE:
            return f"the folder {target} has no place in the table"
        if target in BACKENDS and not (folder.startswith("platform/")
                                       and target in MAY_INCLUDE[folder]):
            return "only main.cpp names a backend"
        if target not in MAY_INCLUDE[folder]:
            return f"{folder} does not stand above {target}"
        return None

    def reason_against_system(self, folder, file, include):
        if NATIVE.match(include):
            if not folder.startswith("platform/"):
                return "the desktop is behind platform/"
            if (file.endswith(".h") and file not in self.wrappers
                    and not include.startswith(("QDBus", "QtDBus"))):
                return "native headers appear in .cpp files only"
        if SQLITE.match(include):
            if folder != "persistence":
                return "SQLite is known to persistence/ only"
            if file.endswith(".h"):
                return "native headers appear in .cpp files only"
        if folder in WITHOUT_WIDGETS:
            name = include.removeprefix("QtWidgets/")
            if name in self.widget_headers or include.startswith("QtWidgets"):
                return f"{folder} knows no widget"
        return None

    def violations_below(self, sources):
        texts = dict(texts_below(sources))
        self.wrappers = {file for file, text in texts.items()
                         if file.endswith(".h") and wraps_a_native_header(text)}
        return [one for file, text in sorted(texts.items()) for one in self.violations(file, text)]


def texts_below(sources):
    """Pairs of a path below the sources and what the file holds."""
    for directory, _, names in os.walk(sources):
        for name in names:
            if name.endswith((".h", ".cpp")):
                path = os.path.join(directory, name)
                with open(path, encoding="utf-8") as file:
                    yield os.path.relpath(path, sources), file.read()


def widget_headers(qt_headers):
    """The names in Qt's QtWidgets folder, without those that only lead to another module."""
    widgets = set(os.listdir(os.path.join(qt_headers, "QtWidgets")))
    return widgets - set(os.listdir(os.path.join(qt_headers, "QtGui")))
