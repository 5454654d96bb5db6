"""What launchers and programs say about starts, as a window manager hears it."""
from Xlib import X, display


class StartupWatch:
    """Collects the messages from its making on. Use as a context manager."""

    def __init__(self, display_name):
        self.connection = display.Display(display_name)
        self.root = self.connection.screen().root
        self.root.change_attributes(event_mask=X.PropertyChangeMask)
        self.connection.sync()
        self.begin, self.more = (self.connection.intern_atom(name) for name in (
            "_NET_STARTUP_INFO_BEGIN", "_NET_STARTUP_INFO"))
        self.pieces = {}
        self.complete = []

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.connection.close()

    def messages(self):
        """Those that have come so far, such as 'remove: ID="..."'."""
        while self.connection.pending_events():
            event = self.connection.next_event()
            if event.type & 0x7F == X.ClientMessage:
                self.take(event)
        return self.complete

    def take(self, event):
        if event.client_type == self.begin:
            self.pieces[event.window.id] = b""
        elif event.client_type != self.more:
            return
        piece, end, _ = bytes(event.data[1]).partition(b"\0")
        self.pieces[event.window.id] += piece
        if end:
            self.complete.append(self.pieces.pop(event.window.id).decode())

    def ids(self, kind):
        """The starts of which a message of this kind came: "new" or "remove"."""
        prefix = kind + ": "
        return [identity_in(message) for message in self.messages() if message.startswith(prefix)]


def identity_in(message):
    """The value of ID, which may stand in quotation marks."""
    value = message.partition("ID=")[2]
    if value.startswith('"'):
        return value[1:].partition('"')[0]
    return value.partition(" ")[0]
