#!/usr/bin/python3
"""Programs that have to do with the end of clipboard owners.

    leaving_client.py save                asks the clipboard manager to save the targets, and prints
                                          the type of the answer, or "refused" or "nobody"
    leaving_client.py manage              is the clipboard manager until its input ends; prints its
                                          window when it is
    leaving_client.py whose               prints the window of the clipboard manager
    leaving_client.py late                takes the clipboard, once it gets a line of input, as of the
                                          time when it began; prints what came of it
    leaving_client.py answer TEXT         answers each change of the clipboard by another program
                                          with a copy of its own, and ends that copy's connection as
                                          soon as the text was read; prints a line for each
    leaving_client.py count TEXT          the same with a number behind the text
"""
import select
import sys

from Xlib import X, Xatom, display
from Xlib.ext import xfixes
from Xlib.protocol import event


def new_window(connection):
    return connection.screen().root.create_window(-1, -1, 1, 1, 0, X.CopyFromParent,
                                                  event_mask=X.PropertyChangeMask)


def server_time(connection, window):
    window.change_property(Xatom.WM_NAME, Xatom.STRING, 8, b"time")
    while True:
        notice = connection.next_event()
        if notice.type == X.PropertyNotify:
            return notice.time


def save():
    connection = display.Display()
    manager = connection.intern_atom("CLIPBOARD_MANAGER")
    if connection.get_selection_owner(manager) == X.NONE:
        return print("nobody")
    window = new_window(connection)
    place = connection.intern_atom("SAVED")
    window.convert_selection(manager, connection.intern_atom("SAVE_TARGETS"), place,
                             server_time(connection, window))
    while True:
        notice = connection.next_event()
        if notice.type == X.SelectionNotify:
            break
    if notice.property == X.NONE:
        return print("refused")
    answer = window.get_full_property(place, X.AnyPropertyType)
    print(connection.get_atom_name(answer.property_type), len(answer.value))


def manage():
    connection = display.Display()
    window = new_window(connection)
    manager = connection.intern_atom("CLIPBOARD_MANAGER")
    window.set_selection_owner(manager, server_time(connection, window))
    if connection.get_selection_owner(manager) == window:
        print(window.id, flush=True)
    sys.stdin.read()


def whose():
    connection = display.Display()
    owner = connection.get_selection_owner(connection.intern_atom("CLIPBOARD_MANAGER"))
    print(getattr(owner, "id", 0))


def late():
    connection = display.Display()
    window = new_window(connection)
    time = server_time(connection, window)
    print("ready", flush=True)
    sys.stdin.readline()
    clipboard = connection.intern_atom("CLIPBOARD")
    window.set_selection_owner(clipboard, time)
    print("owned" if connection.get_selection_owner(clipboard) == window else "refused")


class ShortCopy:
    """Owns the clipboard until its text was read once."""

    def __init__(self, text):
        self.connection = display.Display()
        self.window = new_window(self.connection)
        self.clipboard = self.connection.intern_atom("CLIPBOARD")
        self.utf8 = self.connection.intern_atom("UTF8_STRING")
        self.targets = self.connection.intern_atom("TARGETS")
        self.text = text
        self.window.set_selection_owner(self.clipboard, server_time(self.connection, self.window))
        self.connection.sync()

    def serve(self):
        while True:
            request = self.connection.next_event()
            if request.type == X.SelectionClear:
                break
            if request.type == X.SelectionRequest and self.answer(request):
                break
        self.connection.sync()
        self.connection.close()

    def answer(self, request):
        """True when that was the text."""
        if request.target == self.targets:
            request.requestor.change_property(request.property, Xatom.ATOM, 32,
                                              [self.targets, self.utf8])
        else:
            request.requestor.change_property(request.property, self.utf8, 8, self.text.encode())
        request.requestor.send_event(event.SelectionNotify(
            time=request.time, requestor=request.requestor, selection=request.selection,
            target=request.target, property=request.property))
        self.connection.flush()
        return request.target == self.utf8


def answer_changes(text, is_counting):
    connection = display.Display()
    connection.xfixes_query_version()
    clipboard = connection.intern_atom("CLIPBOARD")
    connection.xfixes_select_selection_input(connection.screen().root, clipboard,
                                             xfixes.XFixesSetSelectionOwnerNotifyMask)
    connection.sync()
    print("watching", flush=True)
    own_windows = set()
    rounds = 0
    while True:
        if not connection.pending_events():
            readable, _, _ = select.select([connection, sys.stdin], [], [])
            if sys.stdin in readable:
                return
            if not connection.pending_events():
                continue
        notice = connection.next_event()
        owner = getattr(notice, "owner", None)
        if owner is None or owner == X.NONE or owner.id in own_windows:
            continue
        rounds += 1
        copy = ShortCopy(f"{text} {rounds}" if is_counting else text)
        own_windows.add(copy.window.id)
        print("round", rounds, flush=True)
        copy.serve()


def main():
    mode, *rest = sys.argv[1:]
    {"save": save, "manage": manage, "whose": whose, "late": late,
     "answer": lambda: answer_changes(rest[0], False),
     "count": lambda: answer_changes(rest[0], True)}[mode]()


if __name__ == "__main__":
    main()
