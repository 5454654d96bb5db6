"""A window that the paste is not meant for, and that tells which keys reached it."""
from Xlib import X, display


class Bystander:
    """A window with a connection of its own. Use as a context manager."""

    window_class = "bystander"

    def __init__(self, watching):
        self.watching = watching  # The Display that the test looks through.
        self.connection = display.Display(watching.connection.get_display_name())
        screen = self.connection.screen()
        self.own_window = screen.root.create_window(
            700, 400, 300, 200, 0, screen.root_depth, background_pixel=screen.white_pixel,
            event_mask=X.KeyPressMask | X.FocusChangeMask)
        self.own_window.set_wm_class(self.window_class, self.window_class)
        self.own_window.set_wm_name(self.window_class)
        self.own_window.set_wm_hints(flags=1, input=True)
        self.window = None

    def __enter__(self):
        self.own_window.map()
        self.connection.flush()
        self.window = self.watching.wait_for_window(window_class=self.window_class)
        return self

    def __exit__(self, *_):
        self.connection.close()

    def take_focus(self):
        self.watching.activate(self.window)

    def keys(self):
        """The codes of the keys that were pressed while it had the focus."""
        self.connection.sync()
        events = [self.connection.next_event() for _ in range(self.connection.pending_events())]
        return [event.detail for event in events if event.type == X.KeyPress]
