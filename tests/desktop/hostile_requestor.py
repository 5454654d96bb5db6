#!/usr/bin/python3
"""Asks the owner of the CLIPBOARD selection in ways that common programs do not, and prints the
outcome.

    hostile_requestor.py half                      ends after two pieces of a large UTF8_STRING
    hostile_requestor.py foreign                   asks for a UTF8_STRING in the name of its owner
    hostile_requestor.py old                       asks without a property
    hostile_requestor.py early                     asks with a time before anything was copied
    hostile_requestor.py multiple TARGET...        asks for several targets at once, and says when
    hostile_requestor.py flood                     asks 20,000 times without waiting for answers
"""
import sys

from Xlib import X, Xatom, display

PROPERTY = "REQUESTED"


class Requestor:
    def __init__(self):
        self.display = display.Display()
        self.window = self.display.screen().root.create_window(
            -1, -1, 1, 1, 0, X.CopyFromParent, event_mask=X.PropertyChangeMask)
        self.property = self.atom(PROPERTY)

    def atom(self, name):
        return self.display.intern_atom(name)

    def ask(self, target, prop, time=X.CurrentTime):
        self.window.convert_selection(self.atom("CLIPBOARD"), self.atom(target), prop, time)
        return self.wait_for_answer()

    def wait_for_answer(self):
        while True:
            received = self.display.next_event()
            if received.type == X.SelectionNotify:
                return received.property

    def take(self, prop):
        return self.window.get_full_property(prop, X.AnyPropertyType).value

    def half(self):
        self.ask("UTF8_STRING", self.property)
        pieces = 0
        self.window.delete_property(self.property)
        while pieces < 2:
            received = self.display.next_event()
            if received.type == X.PropertyNotify and received.state == X.PropertyNewValue:
                pieces += 1
                self.window.delete_property(self.property)
        print("half", flush=True)

    def foreign(self):
        owner = self.display.get_selection_owner(self.atom("CLIPBOARD"))
        owner.convert_selection(self.atom("CLIPBOARD"), self.atom("UTF8_STRING"), self.property,
                                X.CurrentTime)
        self.display.sync()
        # It was dealt with before this.
        self.ask("TIMESTAMP", self.property)
        owner.delete_property(self.property)
        self.display.sync()
        print("asked")

    def old(self):
        answer = self.ask("UTF8_STRING", X.NONE)
        print(bytes(self.take(answer)).decode() if answer else "refused")

    def early(self):
        self.window.change_property(self.property, Xatom.INTEGER, 32, [0])
        while True:
            received = self.display.next_event()
            if received.type == X.PropertyNotify:
                break
        # A server that has just started may not be old enough for more.
        early = max(1, received.time - 3_600_000)
        print("refused" if self.ask("UTF8_STRING", self.property, early) == X.NONE else "answered")

    def flood(self):
        clipboard, target = self.atom("CLIPBOARD"), self.atom("UTF8_STRING")
        properties = [self.atom(f"{PROPERTY}_{number}") for number in range(100)]
        for number in range(20_000):
            self.window.convert_selection(clipboard, target, properties[number % 100],
                                          X.CurrentTime)
        self.display.sync()
        print("flooded", flush=True)

    def multiple(self, targets):
        pairs = []
        for number, target in enumerate(targets):
            pairs += [self.atom(target), self.atom(f"{PROPERTY}_{number}")]
        self.window.change_property(self.property, self.atom("ATOM_PAIR"), 32, pairs)
        self.window.convert_selection(self.atom("CLIPBOARD"), self.atom("MULTIPLE"), self.property,
                                      X.CurrentTime)
        self.display.sync()
        print("asked", flush=True)
        if self.wait_for_answer() == X.NONE:
            return print("refused")
        answered = self.take(self.property)
        for number, target in enumerate(targets):
            prop = answered[2 * number + 1]
            print(target, bytes(self.take(prop)).decode() if prop else "refused")


def main():
    requestor = Requestor()
    mode, *rest = sys.argv[1:]
    {"half": requestor.half, "foreign": requestor.foreign, "old": requestor.old, "early": requestor.early,
     "flood": requestor.flood,
     "multiple": lambda: requestor.multiple(rest)}[mode]()


if __name__ == "__main__":
    main()
