"""When somebody asked the window manager to bring a window to the front."""
from Xlib import X, display

from waiting import wait_until


class ActivationWatch:
    """Sees what was asked since it was made. Use as a context manager."""

    def __init__(self, display_name):
        self.connection = display.Display(display_name)
        self.message = self.connection.intern_atom("_NET_ACTIVE_WINDOW")
        self.connection.screen().root.change_attributes(event_mask=X.SubstructureNotifyMask)
        self.connection.sync()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.connection.close()

    def wait_for(self, window, seconds=10.0):
        wait_until(lambda: self.was_asked_for(window), "somebody to bring the window to the front",
                   seconds, every=0.002)

    def was_asked_for(self, window):
        while self.connection.pending_events():
            event = self.connection.next_event()
            if (event.type & 0x7F == X.ClientMessage and event.client_type == self.message
                    and event.window.id == window.id):
                return True
        return False
