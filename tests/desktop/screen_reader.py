#!/usr/bin/python3
"""What a screen reader learns of the program: the tree of what is there, and what is told of as it
happens.

Started without arguments it is the reader itself, which takes commands as lines of JSON and answers
each by one. A library in it talks to the bus that its environment names, so it is a process of its
own.
"""
import json
import subprocess
import sys

HEARD = ("object:state-changed:focused", "object:state-changed:selected",
         "object:state-changed:checked", "object:property-change:accessible-name",
         "object:property-change:accessible-description", "object:text-changed",
         "object:children-changed", "window:activate")
WIDEST = 50  # So many children are looked at; nobody reads more.


class ScreenReader:
    """The other end: starts the reader on a desktop, and asks it."""

    def __init__(self, desktop):
        environment = {k: v for k, v in desktop.env.items() if k != "NO_AT_BRIDGE"}
        # The bus of assistive programs starts with the first who asks for it.
        subprocess.run(
            ["gdbus", "call", "--session", "--dest", "org.a11y.Bus", "--object-path",
             "/org/a11y/bus", "--method", "org.freedesktop.DBus.Properties.Set",
             "org.a11y.Status", "ScreenReaderEnabled", "<true>"],
            env=environment, check=True, timeout=20, stdout=subprocess.DEVNULL)
        self.process = subprocess.Popen(
            [sys.executable, "-B", "-W", "ignore", __file__], env=environment, stdin=subprocess.PIPE,
            stdout=subprocess.PIPE, text=True, start_new_session=True)
        self.ask("listen")

    def close(self):
        self.process.terminate()
        self.process.wait(10)
        self.process.stdin.close()
        self.process.stdout.close()

    def ask(self, command, **arguments):
        self.process.stdin.write(json.dumps({"command": command} | arguments) + "\n")
        self.process.stdin.flush()
        return json.loads(self.process.stdout.readline())

    def everything(self):
        """All that the program has on the screen, as dictionaries in the order of the tree. Menus
        are no part of it: a reader comes to them by the focus."""
        return self.ask("walk")

    def around_focus(self):
        """What stands beside that which got the focus last, itself included."""
        return self.ask("around_focus")

    def act_beside_focus(self, name, action):
        return self.ask("act_beside_focus", name=name, action=action)

    def find(self, role, name=None):
        """The first of that role, and with that in its name; None if there is none."""
        return next((place for place in self.everything()
                     if place["role"] == role and (name is None or name in place["name"])), None)

    def heard(self):
        """What has been told since the last time, as (event, role, name or description) each."""
        return [tuple(event) for event in self.ask("heard")]

    def act(self, role, name, action):
        """Does what the action of that name does; False where there is no such thing."""
        return self.ask("act", role=role, name=name, action=action)


class Reader:
    def __init__(self):
        import gi
        gi.require_version("Atspi", "2.0")
        from gi.repository import Atspi, GLib
        self.atspi = Atspi
        self.glib = GLib
        self.events = []
        self.focused = None
        self.loop = GLib.MainLoop()
        self.listener = Atspi.EventListener.new(self.note)

    def run(self):
        self.glib.io_add_watch(self.glib.IOChannel.unix_new(0), self.glib.PRIORITY_DEFAULT,
                               self.glib.IOCondition.IN | self.glib.IOCondition.HUP, self.obey)
        self.loop.run()

    def obey(self, *_):
        line = sys.stdin.readline()
        if not line:
            self.loop.quit()
            return False
        request = json.loads(line)
        answer = getattr(self, request.pop("command"))(**request)
        print(json.dumps(answer), flush=True)
        return True

    def note(self, event):
        try:
            program = event.source.get_application()
            if program is None or program.get_name() != "tessarine":
                return
            event.source.clear_cache()
            name = (event.source.get_description() if event.type.endswith("description")
                    else event.source.get_name())
            told = event.type.removeprefix("object:").removeprefix("state-changed:")
            told += "" if event.detail1 or "state-changed" not in event.type else " no more"
            self.events.append((told, event.source.get_role_name(), name))
            if told == "focused":
                self.focused = event.source
        except self.glib.GError:  # It was gone before it could be asked.
            return

    def listen(self):
        return [self.listener.register(event) for event in HEARD]

    def heard(self):
        events, self.events = self.events, []
        return events

    def walk(self):
        return [self.description(place) for place in self.places()]

    def act(self, role, name, action):
        return self.act_on(action, (place for place in self.places()
                                    if place.get_role_name() == role and name in place.get_name()))

    def act_beside_focus(self, name, action):
        return self.act_on(action, (place for place in self.beside_focus()
                                    if place.get_name() == name))

    def act_on(self, action, places):
        place = next(places, None)
        actions = self.actions(place) if place else []
        return action in actions and place.get_action_iface().do_action(actions.index(action))

    def around_focus(self):
        return [self.description(place) for place in self.beside_focus()]

    def beside_focus(self):
        return self.below(self.focused.get_parent())

    def places(self):
        desktop = self.atspi.get_desktop(0)
        for i in range(desktop.get_child_count()):
            program = desktop.get_child_at_index(i)
            if program and program.get_name() == "tessarine":
                program.clear_cache()
                yield from self.below(program)

    def below(self, place):
        for i in range(min(place.get_child_count(), WIDEST)):
            child = place.get_child_at_index(i)
            if child and child.get_state_set().contains(self.atspi.StateType.SHOWING):
                yield child
                yield from self.below(child)

    def description(self, place):
        parent = place.get_parent()
        return {"role": place.get_role_name(), "name": place.get_name(),
                "description": place.get_description(), "actions": self.actions(place),
                "states": [state.value_nick for state in place.get_state_set().get_states()],
                "index": place.get_index_in_parent(), "siblings": parent.get_child_count(),
                "text": self.text(place)}

    @staticmethod
    def actions(place):
        actions = place.get_action_iface()
        return [actions.get_action_name(i) for i in range(actions.get_n_actions())] if actions else []

    @staticmethod
    def text(place):
        text = place.get_text_iface()
        return text.get_text(0, -1) if text else None


if __name__ == "__main__":
    Reader().run()
