"""A well-behaved owner of the clipboard, made for exact timing and for unusual sets of targets."""
import os
import queue
import select
import threading
import time

from Xlib import X, Xatom, display, error
from Xlib.protocol import event


class SelectionOwner:
    """Owns CLIPBOARD from a thread and a connection of its own, and answers at once.

    Contents are small: they are handed over whole, without INCR. On hold() nobody gets an answer
    until release().
    """

    def __init__(self, display_name, selection="CLIPBOARD"):
        self.connection = display.Display(display_name)
        self.selection = self.connection.intern_atom(selection)
        self.targets_atom = self.connection.intern_atom("TARGETS")
        self.timestamp_atom = self.connection.intern_atom("TIMESTAMP")
        screen = self.connection.screen()
        self.window = screen.root.create_window(0, 0, 1, 1, 0, screen.root_depth,
                                                event_mask=X.PropertyChangeMask)
        self.contents = {}
        self.owned_since = X.CurrentTime
        self.asked = []  # The names of the targets that were asked for since it owns.
        self.given = []  # The data that somebody got while it was what they had asked for.
        self.is_owner = False
        self.is_holding = False
        self.held = []  # The requests that wait for release().
        self.orders = queue.SimpleQueue()
        self.wake_reading, self.wake_writing = os.pipe()
        self.is_closing = False
        self.thread = threading.Thread(target=self.serve, daemon=True)
        self.thread.start()

    def own(self, contents):
        """Takes the selection with {target name: bytes}; returns the moment, in monotonic seconds,
        at which the server was told."""
        return self.do(lambda: self.take(contents))

    def own_text(self, text):
        return self.own({"UTF8_STRING": text.encode()})

    def hold(self):
        self.is_holding = True

    def release(self):
        self.is_holding = False
        self.do(self.answer_held)

    def do(self, order):
        """Has the thread call order(), and returns what that returns."""
        answer = queue.SimpleQueue()
        self.orders.put((order, answer))
        os.write(self.wake_writing, b".")
        return answer.get(timeout=10)

    def close(self):
        """Gives up the connection, and with it the selection, as an ending program does."""
        self.is_closing = True
        os.write(self.wake_writing, b".")
        self.thread.join(10)
        self.connection.close()
        os.close(self.wake_reading)
        os.close(self.wake_writing)

    def serve(self):
        try:
            self.serve_until_closing()
        except error.ConnectionClosedError:
            self.is_owner = False  # The desktop went first.

    def serve_until_closing(self):
        while not self.is_closing:
            # Flushing may read events too, of which the socket tells no more. It comes first, here
            # as in handle(), so that none is left when we go to sleep.
            self.connection.flush()
            while self.connection.pending_events():
                self.handle(self.connection.next_event())
            readable, _, _ = select.select([self.connection, self.wake_reading], [], [])
            if self.wake_reading in readable:
                os.read(self.wake_reading, 4096)
                self.follow_orders()

    def follow_orders(self):
        while not self.orders.empty():
            order, answer = self.orders.get()
            answer.put(order())

    def take(self, contents):
        self.owned_since = self.server_time()
        self.asked = []
        self.contents = {self.connection.intern_atom(name): (name, data)
                         for name, data in contents.items()}
        self.is_owner = True
        told_at = time.monotonic()
        self.window.set_selection_owner(self.selection, self.owned_since)
        self.connection.flush()
        return told_at

    def answer_held(self):
        while self.held:
            self.answer(self.held.pop(0))

    def server_time(self):
        self.window.change_property(Xatom.WM_NAME, Xatom.STRING, 8, b"owner")
        while True:
            notice = self.connection.next_event()
            if notice.type == X.PropertyNotify and notice.window.id == self.window.id:
                return notice.time
            self.handle(notice)

    def handle(self, notice):
        if notice.type == X.SelectionRequest:
            if self.is_holding:
                self.held.append(notice)
            else:
                self.answer(notice)
        elif notice.type == X.SelectionClear:
            # Our own later claim is reported by a clear event on some servers; time decides.
            self.is_owner = notice.time < self.owned_since

    def answer(self, request):
        place = request.property or request.target
        if not self.fill(request, place):
            place = X.NONE
        request.requestor.send_event(event.SelectionNotify(
            time=request.time, requestor=request.requestor, selection=request.selection,
            target=request.target, property=place))
        self.connection.flush()

    def fill(self, request, place):
        if request.target == self.targets_atom:
            self.asked.append("TARGETS")
            offered = [self.targets_atom, self.timestamp_atom, *self.contents]
            request.requestor.change_property(place, Xatom.ATOM, 32, offered)
            return True
        if request.target == self.timestamp_atom:
            self.asked.append("TIMESTAMP")
            request.requestor.change_property(place, Xatom.INTEGER, 32, [self.owned_since])
            return True
        if request.target not in self.contents:
            return False
        name, data = self.contents[request.target]
        self.asked.append(name)
        if request.time == self.owned_since:
            self.given.append(data)
        request.requestor.change_property(place, request.target, 8, data)
        return True
