"""A GTK 3 program that pastes pictures, and those only as PNG. Run with a path it shows its window,
and writes to that file what it gets."""
import os
import sys

from clients import Client
from waiting import wait_until


class PngTaker(Client):
    window_class = "png-taker"

    def __init__(self, desktop, display):
        super().__init__(desktop, display)
        self.file_path = desktop.path(f"png-taker-{os.urandom(4).hex()}.png")

    def command(self):
        return ["/usr/bin/python3", "-B", os.path.abspath(__file__), self.file_path]

    def picture_after_paste(self):
        wait_until(lambda: os.path.exists(self.file_path), "a picture")
        with open(self.file_path, "rb") as file:
            return file.read()


def main(path):
    import gi
    gi.require_version("Gtk", "3.0")
    from gi.repository import Gdk, GLib, Gtk

    def take(_, selection):
        # Renamed into place, so that whoever finds the file finds all of it.
        with open(path + ".part", "wb") as file:
            file.write(selection.get_data())
        os.rename(path + ".part", path)

    def handle_key(window, event):
        has_control = event.state & Gdk.ModifierType.CONTROL_MASK
        if has_control and event.keyval == Gdk.KEY_v:
            clipboard = window.get_clipboard(Gdk.SELECTION_CLIPBOARD)
            clipboard.request_contents(Gdk.Atom.intern("image/png", False), take)

    GLib.set_prgname(PngTaker.window_class)
    window = Gtk.Window(title="takes PNG")
    window.connect("key-press-event", handle_key)
    window.connect("destroy", Gtk.main_quit)
    window.show_all()
    Gtk.main()


if __name__ == "__main__":
    main(sys.argv[1])
