"""The X display seen from outside the program under test: keys, windows, pixels."""
import contextlib
import time

from Xlib import X, XK, Xatom, Xutil, display, error
from Xlib.ext import xfixes, xtest
from Xlib.protocol import event

from waiting import retry_until, wait_until

MODIFIERS = {"ctrl": "Control_L", "alt": "Alt_L", "shift": "Shift_L", "super": "Super_L"}


class Display:
    """One connection to the server. Not shared between threads."""

    def __init__(self, name):
        self.connection = display.Display(name)
        self.connection.set_error_handler(lambda *_: None)
        self.root = self.connection.screen().root

    def close(self):
        self.connection.close()

    def atom(self, name):
        return self.connection.intern_atom(name)

    # Keys

    def keycode(self, name):
        return self.connection.keysym_to_keycode(XK.string_to_keysym(MODIFIERS.get(name, name)))

    def press(self, chord):
        """Presses and releases a chord such as "alt+space". Returns when it was sent, in seconds of
        time.monotonic()."""
        return self.press_keys([self.keycode(name) for name in chord.split("+")])

    def press_keys(self, codes):
        """The same for keys by their X numbers, which no layout changes."""
        for code in codes[:-1]:
            xtest.fake_input(self.connection, X.KeyPress, code)
        self.connection.sync()
        sent_at = time.monotonic()
        xtest.fake_input(self.connection, X.KeyPress, codes[-1])
        self.connection.flush()
        for code in reversed(codes):
            xtest.fake_input(self.connection, X.KeyRelease, code)
        self.connection.sync()
        return sent_at

    def type(self, text):
        """Types lower-case letters, digits and blanks."""
        for letter in text:
            self.press("space" if letter == " " else letter)

    def press_at_once(self, names):
        """Presses and releases one key after the other, faster than any hand."""
        for name in names:
            for kind in (X.KeyPress, X.KeyRelease):
                xtest.fake_input(self.connection, kind, self.keycode(name))
        self.connection.sync()

    def press_all_at_once(self, chord, names):
        """The same behind a chord."""
        codes = [self.keycode(name) for name in chord.split("+")]
        for kind, keys in ((X.KeyPress, codes), (X.KeyRelease, reversed(codes))):
            for code in keys:
                xtest.fake_input(self.connection, kind, code)
        self.press_at_once(names)

    def hold(self, name):
        xtest.fake_input(self.connection, X.KeyPress, self.keycode(name))
        self.connection.sync()

    def let_go(self, name):
        xtest.fake_input(self.connection, X.KeyRelease, self.keycode(name))
        self.connection.sync()

    @contextlib.contextmanager
    def holding(self, *names):
        for name in names:
            self.hold(name)
        try:
            yield
        finally:
            for name in reversed(names):
                self.let_go(name)

    def is_held(self, name):
        code = self.keycode(name)
        return bool(self.connection.query_keymap()[code // 8] & 1 << code % 8)

    def click(self, x, y, button=1):
        """Returns when it was sent, in seconds of time.monotonic(). What comes of it must be seen
        before the next click elsewhere: as long as the window manager holds the press, the server
        takes the release to be where the pointer has gone since."""
        self.move_pointer(x, y)
        sent_at = time.monotonic()
        self.turn_wheel(button)
        return sent_at

    def turn_wheel(self, button):
        """Presses and releases a button, as a step of the wheel does: 4 is up, 5 is down."""
        xtest.fake_input(self.connection, X.ButtonPress, button)
        xtest.fake_input(self.connection, X.ButtonRelease, button)
        self.connection.sync()

    def move_pointer(self, x, y):
        xtest.fake_input(self.connection, X.MotionNotify, x=x, y=y)
        self.connection.sync()

    def press_button(self, button=1):
        """Where the pointer is."""
        xtest.fake_input(self.connection, X.ButtonPress, button)
        self.connection.sync()

    def let_go_of_button(self, button=1):
        xtest.fake_input(self.connection, X.ButtonRelease, button)
        self.connection.sync()

    def drag(self, from_x, from_y, to_x, to_y):
        xtest.fake_input(self.connection, X.MotionNotify, x=from_x, y=from_y)
        xtest.fake_input(self.connection, X.ButtonPress, 1)
        xtest.fake_input(self.connection, X.MotionNotify, x=to_x, y=to_y)
        xtest.fake_input(self.connection, X.ButtonRelease, 1)
        self.connection.sync()

    # Windows

    def property(self, window, name, kind=X.AnyPropertyType):
        try:
            answer = window.get_full_property(self.atom(name), kind)
        except error.XError:
            return None
        return None if answer is None else answer.value

    def title(self, window):
        value = self.property(window, "_NET_WM_NAME") or self.property(window, "WM_NAME") or b""
        return value.decode("utf-8", "replace") if isinstance(value, bytes) else str(value)

    def window_class(self, window):
        try:
            return window.get_wm_class() or ("", "")
        except error.XError:
            return ("", "")

    def window(self, window_id):
        return self.connection.create_resource_object("window", window_id)

    def windows(self):
        """Every window below the root, from the bottom up."""
        found, pending = [], [self.root]
        while pending:
            window = pending.pop()
            try:
                below = window.query_tree().children
            except error.XError:
                continue
            found.extend(below)
            pending.extend(below)
        return found

    def is_viewable(self, window):
        try:
            return window.get_attributes().map_state == X.IsViewable
        except error.XError:
            return False

    def is_unframed(self, window):
        """Whether the window is to be seen, and is none of the window manager's."""
        try:
            attributes = window.get_attributes()
        except error.XError:
            return False
        return attributes.map_state == X.IsViewable and bool(attributes.override_redirect)

    def find_window(self, title=None, window_class=None):
        """The first visible window with a piece of this title or this class; None without one."""
        for window in self.windows():
            if not self.is_viewable(window):
                continue
            if title is not None and title not in self.title(window):
                continue
            if window_class is not None and window_class.lower() not in (
                    part.lower() for part in self.window_class(window)):
                continue
            if title is None or self.property(window, "WM_CLASS"):
                return window
        return None

    def is_menu_open(self):
        return bool(self.menus())

    def menus(self):
        """The windows of menus that can be seen, each submenu too."""
        kinds = {self.atom("_NET_WM_WINDOW_TYPE" + kind)
                 for kind in ("_MENU", "_POPUP_MENU", "_DROPDOWN_MENU")}
        return [window for window in self.root.query_tree().children
                if self.is_viewable(window)
                and kinds & set(self.property(window, "_NET_WM_WINDOW_TYPE") or ())]

    def wait_for_window(self, seconds=20.0, **which):
        return wait_until(lambda: self.find_window(**which), f"a window with {which}", seconds)

    def active_window_id(self):
        # Some window managers write a second, empty value behind the first.
        value = self.property(self.root, "_NET_ACTIVE_WINDOW", Xatom.WINDOW)
        return value[0] if value is not None and len(value) else 0

    def is_active(self, window):
        return self.active_window_id() == window.id

    def has_focus(self, window):
        """Whether keys go to the window or to one inside it."""
        focus = self.connection.get_input_focus().focus
        while focus and isinstance(focus, type(self.root)):
            if focus == window:
                return True
            focus = focus.query_tree().parent
        return False

    def wait_until_active(self, window, seconds=10.0):
        wait_until(lambda: self.is_active(window), f"window {self.title(window)} active", seconds)

    def activate(self, window):
        """Another window that has just come up may take the focus back, so this is repeated."""
        retry_until(lambda: self.message(window, "_NET_ACTIVE_WINDOW", [2, X.CurrentTime, 0, 0, 0]),
                    lambda: self.is_active(window), f"window {self.title(window)} active")

    def wait_until_answered(self, window, seconds=20.0):
        """Until the program of the window has dealt with all that it had to do before this."""
        protocols, ping = self.atom("WM_PROTOCOLS"), self.atom("_NET_WM_PING")
        question = event.ClientMessage(window=window, client_type=protocols,
                                       data=(32, [ping, X.CurrentTime, window.id, 0, 0]))

        def is_answered():
            return any(told.type == X.ClientMessage and told.client_type == protocols
                       and told.data[1][2] == window.id for told in self.told())

        # The answer goes to the window manager.
        self.root.change_attributes(event_mask=X.SubstructureNotifyMask)
        try:
            window.send_event(question)
            wait_until(is_answered, f"an answer of {self.title(window)}", seconds)
        finally:
            self.root.change_attributes(event_mask=X.NoEventMask)
            list(self.told())

    def told(self):
        """The events that have come."""
        self.connection.sync()
        while self.connection.pending_events():
            yield self.connection.next_event()

    def wait_for_window_manager(self):
        """Until it has dealt with all that it was told before, if there is one that says so: KWin
        answers this question for none but the windows that it has framed."""
        check = self.property(self.root, "_NET_SUPPORTING_WM_CHECK")
        if check is None or self.title(self.window(check[0])) == "KWin":
            return
        asking = self.root.create_window(0, 0, 1, 1, 0, X.CopyFromParent)
        self.message(asking, "_NET_REQUEST_FRAME_EXTENTS", [0, 0, 0, 0, 0])
        wait_until(lambda: self.property(asking, "_NET_FRAME_EXTENTS") is not None,
                   "the window manager to answer", 20)
        asking.destroy()

    def minimise(self, window):
        self.message(window, "WM_CHANGE_STATE", [Xutil.IconicState, 0, 0, 0, 0])

    def move(self, window, x, y, width, height):
        """Asks the window manager to put the window there, frame and all."""
        all_four_are_given, asked_by_a_pager = 0b1111 << 8, 2 << 12
        self.message(window, "_NET_MOVERESIZE_WINDOW",
                     [all_four_are_given | asked_by_a_pager, x, y, width, height])

    def scene(self):
        """Who has the focus, and each top-level window that can be seen, as lines for a reader."""
        focus = self.connection.get_input_focus().focus
        yield f"active {self.active_window_id():#x}, focus {getattr(focus, 'id', focus):#x}"
        for window in self.windows():
            if self.is_viewable(window) and self.property(window, "WM_CLASS"):
                states = [self.connection.get_atom_name(atom)
                          for atom in self.property(window, "_NET_WM_STATE") or ()]
                acted_at = self.property(window, "_NET_WM_USER_TIME")
                yield (f"{window.id:#x} {self.title(window)!r} of {self.window_class(window)} at "
                       f"{self.place(window)}, used at {list(acted_at or ())}, {states}")

    def message(self, window, kind, data):
        self.root.send_event(
            event.ClientMessage(window=window, client_type=self.atom(kind), data=(32, data)),
            event_mask=X.SubstructureRedirectMask | X.SubstructureNotifyMask)
        self.connection.sync()

    def place(self, window):
        """The rectangle of the window on the screen: x, y, width, height."""
        geometry = window.get_geometry()
        origin = self.root.translate_coords(window, 0, 0)
        return origin.x, origin.y, geometry.width, geometry.height

    # Pixels

    def pixels(self, x, y, width, height):
        """The bytes of a part of the screen, four to the pixel."""
        return self.root.get_image(x, y, width, height, X.ZPixmap, 0xFFFFFFFF).data

    def pointer_shape(self):
        """What the pointer looks like, to be compared with other times."""
        xfixes.query_version(self.connection)
        image = xfixes.get_cursor_image(self.connection, self.root)
        return image.width, image.height, tuple(image.cursor_image)

    def selection_owner(self, name="CLIPBOARD"):
        """The window that owns the selection, 0 without one."""
        owner = self.connection.get_selection_owner(self.atom(name))
        return owner.id if owner else 0

    def end_client(self, window_id):
        """Has the server close the connection of the program to which the window belongs."""
        self.window(window_id).kill_client()
        self.connection.sync()
