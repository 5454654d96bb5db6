"""A window that pastes, and knows when what it asked for was there to the last byte."""
import queue
import select
import threading
import time

from Xlib import X, XK, display, error


class PasteTarget:
    """Asks for one target whenever Ctrl+V is pressed in it. Use as a context manager."""

    window_class = "paste-target"

    def __init__(self, watching, target="UTF8_STRING"):
        self.watching = watching  # The Display that others look through.
        self.connection = display.Display(watching.connection.get_display_name())
        self.connection.set_error_handler(lambda *_: None)
        atom = self.connection.intern_atom
        self.clipboard, self.target, self.place = atom("CLIPBOARD"), atom(target), atom("PASTED")
        self.incremental = atom("INCR")
        self.letter = self.connection.keysym_to_keycode(XK.XK_v)
        screen = self.connection.screen()
        self.own_window = screen.root.create_window(
            40, 40, 400, 300, 0, screen.root_depth, background_pixel=screen.white_pixel,
            event_mask=X.KeyPressMask | X.PropertyChangeMask)
        self.own_window.set_wm_class(self.window_class, self.window_class)
        self.own_window.set_wm_hints(flags=1, input=True)
        self.arrivals = queue.SimpleQueue()  # (monotonic seconds, bytes)
        self.pieces = None  # Of what comes in pieces, while it comes.
        self.is_closing = False
        self.window = None
        self.thread = threading.Thread(target=self.serve, daemon=True)

    def __enter__(self):
        self.own_window.map()
        self.connection.flush()
        self.window = self.watching.wait_for_window(window_class=self.window_class)
        self.watching.activate(self.window)
        self.thread.start()
        return self

    def __exit__(self, *_):
        self.is_closing = True
        self.thread.join(5)
        self.connection.close()

    def wait_for_arrival(self, seconds=10.0):
        """When the next paste was complete, and what it brought; None if it does not come."""
        try:
            return self.arrivals.get(timeout=seconds)
        except queue.Empty:
            return None

    def serve(self):
        try:
            while not self.is_closing:
                self.connection.flush()
                while self.connection.pending_events():
                    self.handle(self.connection.next_event())
                select.select([self.connection], [], [], 0.2)
        except error.ConnectionClosedError:
            pass  # The desktop went first.

    def handle(self, event):
        if event.type == X.KeyPress:
            if event.detail == self.letter and event.state & X.ControlMask:
                self.own_window.convert_selection(self.clipboard, self.target, self.place,
                                                  event.time)
        elif event.type == X.SelectionNotify:
            if event.property == X.NONE:
                self.arrive(b"")
            else:
                self.take_first()
        elif (event.type == X.PropertyNotify and event.atom == self.place
              and event.state == X.PropertyNewValue and self.pieces is not None):
            self.take_piece()

    def take_first(self):
        kind, data = self.take_property()
        if kind == self.incremental:
            self.pieces = []
        else:
            self.arrive(data)

    def take_piece(self):
        _, data = self.take_property()
        if data:
            self.pieces.append(data)
            return
        self.arrive(b"".join(self.pieces))
        self.pieces = None

    def take_property(self):
        answer = self.own_window.get_full_property(self.place, X.AnyPropertyType)
        # The owner sends the next piece when it sees this one go.
        self.own_window.delete_property(self.place)
        self.connection.flush()
        if answer is None:
            return X.NONE, b""
        return answer.property_type, answer.value if answer.format == 8 else b""

    def arrive(self, data):
        self.arrivals.put((time.monotonic(), data))
