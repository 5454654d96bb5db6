"""A program that shows pictures, driven as a person would: by its menu."""
from clients import Client


class LXImage(Client):
    """A Qt 5 viewer on one picture."""

    window_class = "lximage-qt"

    def __init__(self, desktop, display, picture_path):
        super().__init__(desktop, display)
        self.picture_path = picture_path

    def command(self):
        return ["lximage-qt", self.picture_path]

    def copy_picture(self):
        def open_or_choose():
            if not self.display.is_menu_open():
                self.focus()
                self.display.press("alt+e")
                return
            # Two actions have the letter; pressed again it goes on to the second.
            for key in ("c", "c", "Return", "Escape"):
                self.display.press(key)

        self.retry_until_copied(open_or_choose)
