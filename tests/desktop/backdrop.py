"""Something to look at behind the windows of a headless desktop.

A compositor does not paint the root window's colour, so the picture is a window of its own.
"""
from Xlib import X, display


class Backdrop:
    """A gradient over the whole screen, below everything; it stays until it is closed."""

    def __init__(self, display_name, top=(0x2B, 0x5C, 0x8A), bottom=(0xD9, 0x8E, 0x73)):
        self.connection = display.Display(display_name)
        screen = self.connection.screen()
        self.width, self.height = screen.width_in_pixels, screen.height_in_pixels
        pixmap = screen.root.create_pixmap(self.width, self.height, screen.root_depth)
        brush = pixmap.create_gc()
        for line in range(self.height):
            brush.change(foreground=self.mixed(top, bottom, line / self.height))
            pixmap.fill_rectangle(brush, 0, line, self.width, 1)
        window = screen.root.create_window(
            0, 0, self.width, self.height, 0, screen.root_depth, override_redirect=True,
            background_pixmap=pixmap)
        window.configure(stack_mode=X.Below)
        window.map()
        self.connection.sync()

    @staticmethod
    def mixed(one, other, share):
        red, green, blue = (int(a + (b - a) * share) for a, b in zip(one, other))
        return red << 16 | green << 8 | blue

    def close(self):
        self.connection.close()
