#!/usr/bin/python3
"""Owns the CLIPBOARD selection and behaves as told, mostly badly.

It prints one line for each thing that happens: "owned", "asked TARGET", "lost", "done". With
--retake each line on standard input makes it take the selection anew.

    hostile_owner.py honest --offer UTF8_STRING:=hello --offer image/png:=@picture.png
    hostile_owner.py half --offer UTF8_STRING:=hello
"""
import argparse
import os
import select
import sys

from Xlib import X, Xatom, display
from Xlib.protocol import event

REQUEST_ELEMENTS = 50_000  # As many fit into one request of a client without extensions.
PIECE = b"x" * 1000
CHANGES = 10_000
NOTICES_IN_A_ROW = 200
TEXT_TARGETS = ("UTF8_STRING", "STRING", "text/plain")


class Owner:
    """answers everything"""

    mood = "honest"
    pause = None  # How long, in seconds, until act() is called when nothing happens.

    def __init__(self, offers):
        self.offers = offers
        self.display = display.Display()
        self.display.set_error_handler(lambda *_: None)
        self.window = self.display.screen().root.create_window(
            -1, -1, 1, 1, 0, X.CopyFromParent, event_mask=X.PropertyChangeMask)
        self.clipboard = self.atom("CLIPBOARD")

    def atom(self, name):
        return self.display.intern_atom(name)

    # Owning

    def take(self):
        self.own(self.server_time())
        say("owned")

    def own(self, time):
        self.window.set_selection_owner(self.clipboard, time)
        self.display.sync()

    def server_time(self):
        self.window.change_property(self.atom("HOSTILE_TIME"), Xatom.INTEGER, 32, [0])
        while True:
            received = self.display.next_event()
            if received.type == X.PropertyNotify and received.window == self.window:
                return received.time
            self.handle(received)

    def run(self, listens):
        self.take()
        sources = [self.display] + ([sys.stdin] if listens else [])
        while True:
            while self.display.pending_events():
                self.handle(self.display.next_event())
            ready, _, _ = select.select(sources, [], [], self.pause)
            if sys.stdin in ready:
                if not sys.stdin.readline():
                    return
                self.take()
            if not ready:
                self.act()
                self.display.flush()

    def act(self):
        """What it does of itself."""

    # Answering

    def handle(self, received):
        if received.type == X.SelectionRequest:
            name = self.display.get_atom_name(received.target)
            say("asked " + name)
            self.answer(received, name)
        elif received.type == X.SelectionClear:
            say("lost")
        elif received.type == X.PropertyNotify and received.state == X.PropertyDelete:
            self.taken(received.window, received.atom)
        self.display.flush()

    def answer(self, request, name):
        if name == "TARGETS":
            self.put(request.requestor, request.property, Xatom.ATOM, self.targets())
            self.notify(request, request.property)
        elif name in self.offers:
            self.give(request, name)
        else:
            self.notify(request, X.NONE)

    def targets(self):
        return [self.atom(name) for name in ["TARGETS", *self.offers]]

    def give(self, request, name):
        """Answers a request for something that is offered."""
        self.put(request.requestor, request.property, request.target, self.offers[name])
        self.notify(request, request.property)

    def taken(self, window, prop):
        """Somebody has deleted a property of a window that is watched."""

    # What the answers are made of

    def put(self, requestor, prop, kind, data):
        form = 8 if isinstance(data, bytes) else 32
        requestor.change_property(prop, kind, form, data[:REQUEST_ELEMENTS])
        for start in range(REQUEST_ELEMENTS, len(data), REQUEST_ELEMENTS):
            requestor.change_property(prop, kind, form, data[start:start + REQUEST_ELEMENTS],
                                      X.PropModeAppend)

    def notify(self, request, prop):
        request.requestor.send_event(event.SelectionNotify(
            time=request.time, requestor=request.requestor, selection=request.selection,
            target=request.target, property=prop))

    def begin_pieces(self, request, size=0):
        request.requestor.change_attributes(event_mask=X.PropertyChangeMask)
        self.put(request.requestor, request.property, self.atom("INCR"), [size])
        self.notify(request, request.property)


class Silent(Owner):
    """answers nothing at all"""

    mood = "silent"

    def answer(self, request, name):
        pass


class Mute(Owner):
    """tells what it offers and answers nothing else"""

    mood = "mute"

    def give(self, request, name):
        pass


class Refusing(Owner):
    """tells what it offers and refuses it"""

    mood = "refusing"

    def give(self, request, name):
        self.notify(request, X.NONE)


class Textless(Owner):
    """refuses the text that it offers, and nothing else"""

    mood = "textless"

    def give(self, request, name):
        if name in TEXT_TARGETS:
            self.notify(request, X.NONE)
        else:
            super().give(request, name)


class Dying(Owner):
    """ends when it is asked for data"""

    mood = "dying"

    def give(self, request, name):
        say("done")
        os._exit(0)


class WrongType(Owner):
    """answers all but pictures as a list of numbers"""

    mood = "wrongtype"

    def give(self, request, name):
        if name.startswith("image/"):
            return super().give(request, name)
        self.put(request.requestor, request.property, Xatom.INTEGER, [1, 2, 3])
        self.notify(request, request.property)


class WrongOffer(Owner):
    """tells what it offers as a text"""

    mood = "wrongoffer"

    def answer(self, request, name):
        if name != "TARGETS":
            return super().answer(request, name)
        self.put(request.requestor, request.property, Xatom.STRING, b"UTF8_STRING")
        self.notify(request, request.property)


class Flood(Owner):
    """offers 100,000 targets"""

    mood = "flood"

    def targets(self):
        return super().targets() + [100_000 + number for number in range(100_000)]


class NoAtoms(Owner):
    """offers, before anything else, atoms that do not exist"""

    mood = "noatoms"

    def targets(self):
        return [0, 0xFFFFFFFF, 0x7FFFFFFF, 0] + super().targets() + [0]


class InPieces(Owner):
    """gives its data in pieces of 1000 bytes, and says of them that they are as many as can be"""

    mood = "liar"
    announced = 0xFFFFFFFF

    def __init__(self, offers):
        super().__init__(offers)
        self.rest = {}  # (window, property): the type, and the bytes that are left.

    def data(self, name):
        return self.offers[name]

    def give(self, request, name):
        self.rest[request.requestor, request.property] = (request.target, self.data(name))
        self.begin_pieces(request, self.announced)

    def taken(self, window, prop):
        if (window, prop) not in self.rest:
            return
        kind, data = self.rest[window, prop]
        self.put(window, prop, kind, data[:len(PIECE)])
        if data:
            self.rest[window, prop] = (kind, data[len(PIECE):])
        else:
            del self.rest[window, prop]


class NoPieces(InPieces):
    """promises pieces and comes to the end at once"""

    mood = "empty"
    announced = 0

    def data(self, name):
        return b""


class Half(InPieces):
    """begins to send piece by piece and stops after two"""

    mood = "half"
    announced = 0

    def data(self, name):
        return PIECE * 2

    def taken(self, window, prop):
        if self.rest.get((window, prop), (None, b""))[1]:
            super().taken(window, prop)
        elif (window, prop) in self.rest:
            self.stop()

    def stop(self):
        pass


class HalfDying(Half):
    """ends after two pieces"""

    mood = "halfdying"

    def stop(self):
        say("done")
        os._exit(0)


class Trickle(InPieces):
    """sends one byte a second for ever"""

    mood = "trickle"
    announced = 0
    pause = 1.0

    def taken(self, window, prop):
        pass

    def act(self):
        for (window, prop), (kind, _) in self.rest.items():
            self.put(window, prop, kind, b"x")


class Deleting(Owner):
    """deletes what it has put before it tells of it"""

    mood = "deleting"

    def give(self, request, name):
        self.put(request.requestor, request.property, request.target, self.offers[name])
        request.requestor.delete_property(request.property)
        self.notify(request, request.property)


class Late(Owner):
    """refuses, and then gives what it has refused"""

    mood = "late"

    def give(self, request, name):
        self.notify(request, X.NONE)
        super().give(request, name)


class Elsewhere(Owner):
    """gives its data in another property than the one that was asked for"""

    mood = "elsewhere"

    def give(self, request, name):
        place = self.atom("HOSTILE_PLACE")
        self.put(request.requestor, place, request.target, self.offers[name])
        self.notify(request, place)


class Restless(Owner):
    """takes the selection anew at each request, before it answers"""

    mood = "restless"

    def answer(self, request, name):
        self.own(request.time)  # A newer owner keeps it.
        super().answer(request, name)


class Hasty(Owner):
    """takes the selection anew behind each answer"""

    mood = "hasty"

    def answer(self, request, name):
        super().answer(request, name)
        self.own(request.time)  # A newer owner keeps it.


class Changing(Owner):
    """takes the selection 10,000 times in a row and answers only then"""

    mood = "changing"

    def take(self):
        time = self.server_time()
        self.own(time)
        say("owned")
        for _ in range(CHANGES):
            self.window.set_selection_owner(self.clipboard, time)  # A newer owner keeps it.
        self.display.sync()
        say("done")


class Noisy(Owner):
    """gives nothing, and tells without end that it has given something"""

    mood = "noisy"
    pause = 0.001

    def __init__(self, offers):
        super().__init__(offers)
        self.asked = []

    def give(self, request, name):
        self.asked.append(request)
        self.begin_pieces(request)

    def act(self):
        for request in self.asked:
            for _ in range(NOTICES_IN_A_ROW):
                request.requestor.send_event(event.PropertyNotify(
                    window=request.requestor, atom=request.property, time=X.CurrentTime,
                    state=X.PropertyNewValue))


def every_mood(parent=Owner):
    yield parent
    for child in parent.__subclasses__():
        yield from every_mood(child)


def say(line):
    print(line, flush=True)


def read_offer(argument):
    target, _, value = argument.partition(":=")
    if value.startswith("@"):
        with open(value[1:], "rb") as file:
            return target, file.read()
    return target, value.encode()


def main():
    moods = {kind.mood: kind for kind in every_mood()}
    parser = argparse.ArgumentParser(
        description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter,
        epilog="\n".join(f"{mood}: {kind.__doc__}" for mood, kind in moods.items()))
    parser.add_argument("mood", choices=moods)
    parser.add_argument("--offer", action="append", default=[], type=read_offer,
                        metavar="TARGET:=TEXT|TARGET:=@FILE")
    parser.add_argument("--retake", action="store_true",
                        help="each line on standard input takes the selection anew")
    arguments = parser.parse_args()
    moods[arguments.mood](dict(arguments.offer)).run(arguments.retake)


if __name__ == "__main__":
    try:
        main()
    except (BrokenPipeError, KeyboardInterrupt):
        pass
