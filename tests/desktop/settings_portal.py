"""A stand-in for the desktop portal's settings, on the session bus of a private desktop."""
import threading

import gi
gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib

APPEARANCE = "org.freedesktop.appearance"
INTERFACE = "org.gnome.desktop.interface"

PATH = "/org/freedesktop/portal/desktop"
NAME = "org.freedesktop.portal.Settings"
DESCRIPTION = f"""
<node><interface name="{NAME}">
  <method name="ReadAll">
    <arg type="as" direction="in"/><arg type="a{{sa{{sv}}}}" direction="out"/>
  </method>
  <signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal>
</interface></node>"""


class SettingsPortal:
    """Answers with what has been set, or, told to be silent, never; changes are announced."""

    def __init__(self, address, is_silent=False):
        self.settings = {}
        self.is_silent = is_silent
        self.unanswered = []
        self.loop = GLib.MainLoop()
        self.thread = threading.Thread(target=self.loop.run, daemon=True)
        flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
                 | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
        self.bus = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
        interface = Gio.DBusNodeInfo.new_for_xml(DESCRIPTION).interfaces[0]
        self.bus.register_object(PATH, interface, self.answer, None, None)
        self.bus.call_sync(
            "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
            GLib.Variant("(su)", ("org.freedesktop.portal.Desktop", 0)), None,
            Gio.DBusCallFlags.NONE, -1, None)
        self.thread.start()

    def close(self):
        self.loop.quit()
        self.thread.join()
        self.bus.close_sync(None)

    def answer(self, _bus, _sender, _path, _interface, _method, _arguments, invocation):
        if self.is_silent:
            self.unanswered.append(invocation)
        else:
            invocation.return_value(GLib.Variant("(a{sa{sv}})", (self.settings,)))

    def set(self, group, key, value):
        """value is a GLib.Variant."""
        self.settings.setdefault(group, {})[key] = value
        self.bus.emit_signal(None, PATH, NAME, "SettingChanged",
                             GLib.Variant("(ssv)", (group, key, value)))
        self.bus.flush_sync(None)

    # What people choose

    def prefer_dark(self, is_dark):
        self.set(APPEARANCE, "color-scheme", GLib.Variant("u", 1 if is_dark else 2))

    def prefer_contrast(self, is_wanted):
        self.set(APPEARANCE, "contrast", GLib.Variant("u", int(is_wanted)))

    def choose_accent(self, red, green, blue):
        self.set(APPEARANCE, "accent-color", GLib.Variant("(ddd)", (red, green, blue)))

    def scale_texts(self, factor):
        self.set(INTERFACE, "text-scaling-factor", GLib.Variant("d", factor))
