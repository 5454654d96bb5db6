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

MODES = {
    "honest": "answers everything",
    "silent": "answers nothing at all",
    "mute": "tells what it offers and answers nothing else",
    "refusing": "tells what it offers and refuses it",
    "half": "begins to send piece by piece and stops after two",
    "trickle": "sends one byte each 300 ms for ever",
    "dying": "ends when it is asked for data",
    "halfdying": "ends after two pieces",
    "wrongtype": "answers data as a list of numbers",
    "flood": "offers 100,000 targets",
}
REQUEST_ELEMENTS = 50_000  # As many fit into one request of a client without extensions.
PIECE = b"x" * 1000


class Owner:
    def __init__(self, mode, offers):
        self.mode = mode
        self.offers = offers
        self.display = display.Display()
        self.display.set_error_handler(lambda *_: None)
        self.window = self.display.screen().root.create_window(
            -1, -1, 1, 1, 0, X.CopyFromParent, event_mask=X.PropertyChangeMask)
        self.clipboard = self.atom("CLIPBOARD")
        self.pieces_left = {}

    def atom(self, name):
        return self.display.intern_atom(name)

    def take(self):
        self.window.change_property(self.atom("HOSTILE_TIME"), Xatom.INTEGER, 32, [0])
        while True:
            received = self.display.next_event()
            if received.type == X.PropertyNotify and received.window == self.window:
                break
        self.time = received.time
        self.window.set_selection_owner(self.clipboard, self.time)
        self.display.sync()
        say("owned")

    def run(self, listens):
        self.take()
        sources = [self.display] + ([sys.stdin] if listens else [])
        while True:
            while self.display.pending_events():
                self.handle(self.display.next_event())
            patience = 0.3 if self.mode == "trickle" and self.pieces_left else None
            ready, _, _ = select.select(sources, [], [], patience)
            if sys.stdin in ready:
                if not sys.stdin.readline():
                    return
                self.take()
            if not ready:
                for requestor, prop, kind in list(self.pieces_left):
                    self.put(requestor, prop, kind, b"x")

    def handle(self, received):
        if received.type == X.SelectionRequest:
            say("asked " + self.display.get_atom_name(received.target))
            self.answer(received)
        elif received.type == X.SelectionClear:
            say("lost")
        elif received.type == X.PropertyNotify and received.state == X.PropertyDelete:
            self.send_piece(received)
        self.display.flush()

    def answer(self, request):
        if self.mode == "silent":
            return
        name = self.display.get_atom_name(request.target)
        if name == "TARGETS":
            self.put(request.requestor, request.property, Xatom.ATOM, self.targets())
            return self.notify(request, request.property)
        if name not in self.offers or self.mode == "refusing":
            return self.notify(request, X.NONE)
        if self.mode == "dying":
            say("done")
            os._exit(0)
        if self.mode == "mute":
            return
        if self.mode in ("half", "halfdying", "trickle"):
            return self.begin_pieces(request)
        if self.mode == "wrongtype":
            self.put(request.requestor, request.property, Xatom.INTEGER, [1, 2, 3])
        else:
            self.put(request.requestor, request.property, request.target, self.offers[name])
        self.notify(request, request.property)

    def targets(self):
        names = ["TARGETS"] + list(self.offers)
        targets = [self.atom(name) for name in names]
        if self.mode == "flood":
            targets += [100_000 + number for number in range(100_000)]
        return targets

    def put(self, requestor, prop, kind, data):
        form = 8 if isinstance(data, bytes) else 32
        requestor.change_property(prop, kind, form, data[:REQUEST_ELEMENTS])
        for start in range(REQUEST_ELEMENTS, len(data), REQUEST_ELEMENTS):
            requestor.change_property(prop, kind, form, data[start:start + REQUEST_ELEMENTS],
                                      X.PropModeAppend)

    def begin_pieces(self, request):
        requestor = request.requestor
        requestor.change_attributes(event_mask=X.PropertyChangeMask)
        self.put(requestor, request.property, self.atom("INCR"), [0])
        self.pieces_left[(requestor, request.property, request.target)] = 2
        self.notify(request, request.property)

    def send_piece(self, deleted):
        for key, left in self.pieces_left.items():
            requestor, prop, kind = key
            if requestor != deleted.window or prop != deleted.atom or self.mode == "trickle":
                continue
            if left == 0 and self.mode == "halfdying":
                say("done")
                os._exit(0)
            if left > 0:
                self.pieces_left[key] = left - 1
                self.put(requestor, prop, kind, PIECE)

    def notify(self, request, prop):
        request.requestor.send_event(event.SelectionNotify(
            time=request.time, requestor=request.requestor, selection=request.selection,
            target=request.target, property=prop))


def say(line):
    print(line, flush=True)


def read_offer(argument):
    target, _, value = argument.partition(":=")
    if value.startswith("@"):
        with open(value[1:], "rb") as file:
            return target, file.read()
    return target, value.encode()


def main():
    parser = argparse.ArgumentParser(
        description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter,
        epilog="\n".join(f"{mode}: {text}" for mode, text in MODES.items()))
    parser.add_argument("mode", choices=MODES)
    parser.add_argument("--offer", action="append", default=[], type=read_offer,
                        metavar="TARGET:=TEXT|TARGET:=@FILE")
    parser.add_argument("--retake", action="store_true",
                        help="each line on standard input takes the selection anew")
    arguments = parser.parse_args()
    Owner(arguments.mode, dict(arguments.offer)).run(arguments.retake)


if __name__ == "__main__":
    try:
        main()
    except (BrokenPipeError, KeyboardInterrupt):
        pass
