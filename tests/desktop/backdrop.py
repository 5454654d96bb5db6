"""Something to look at behind the windows of a headless desktop.

A compositor does not paint the root window's colour, so the picture is a window of its own.
"""
from Xlib import X, Xatom, display


class Backdrop:
    """A gradient over the whole screen, below everything; it stays until it is closed."""
    is_managed = False

    def __init__(self, display_name, top=(0x2B, 0x5C, 0x8A), bottom=(0xD9, 0x8E, 0x73)):
        self.connection = display.Display(display_name)
        screen = self.connection.screen()
        self.width, self.height = screen.width_in_pixels, screen.height_in_pixels
        pixmap = screen.root.create_pixmap(self.width, self.height, screen.root_depth)
        brush = pixmap.create_gc()
        for line in range(self.height):
            brush.change(foreground=self.color(line, top, bottom))
            pixmap.fill_rectangle(brush, 0, line, self.width, 1)
        window = screen.root.create_window(
            0, 0, self.width, self.height, 0, screen.root_depth,
            override_redirect=not self.is_managed,
            background_pixmap=pixmap)
        if self.is_managed:
            atom = self.connection.intern_atom
            window.change_property(atom("_NET_WM_WINDOW_TYPE"), Xatom.ATOM, 32,
                                   [atom("_NET_WM_WINDOW_TYPE_DESKTOP")])
        window.configure(stack_mode=X.Below)
        window.map()
        self.connection.sync()

    def color(self, line, top, bottom):
        return self.mixed(top, bottom, line / self.height)

    @staticmethod
    def mixed(one, other, share):
        red, green, blue = (int(a + (b - a) * share) for a, b in zip(one, other))
        return red << 16 | green << 8 | blue

    def close(self):
        self.connection.close()


class Stripes(Backdrop):
    """Black and white lines, of which blur makes a grey. Some compositors put windows that nobody
    manages above the others, so it is the window of a desktop."""
    is_managed = True

    def __init__(self, display_name):
        super().__init__(display_name, (0, 0, 0), (255, 255, 255))

    def color(self, line, top, bottom):
        return self.mixed(top, bottom, line % 2)
