"""Panels with a tray, each of a kind and in a light and a dark look, and what their tray shows."""
import collections
import os

from waiting import wait_until

LIGHT, DARK = "#f1f2f4", "#17181b"


class Panel:
    """Started and ended at will; the icons of others, and nothing else, lie on it."""
    window_class = None
    takes_windows = False  # By the older protocol, XEmbed.
    takes_items = False  # Over D-Bus.

    def __init__(self, desktop, display, is_dark):
        self.desktop = desktop
        self.display = display
        self.is_dark = is_dark
        self.process = None

    @property
    def color(self):
        return DARK if self.is_dark else LIGHT

    def start(self):
        self.process = self.desktop.spawn(*self.command())
        wait_until(self.is_ready, f"{self.window_class} to come up", 20)
        return self

    def end(self):
        if self.process:
            self.process.terminate()
            self.process.wait(10)
            self.process = None
            wait_until(lambda: not self.is_ready(), f"{self.window_class} to end", 10)

    def is_ready(self):
        if self.takes_windows and not self.display.selection_owner("_NET_SYSTEM_TRAY_S0"):
            return False
        return not self.takes_items or self.has_host()

    def has_host(self):
        answer = self.desktop.run(
            "gdbus", "call", "--session", "--dest", "org.kde.StatusNotifierWatcher",
            "--object-path", "/StatusNotifierWatcher", "--method",
            "org.freedesktop.DBus.Properties.Get", "org.kde.StatusNotifierWatcher",
            "IsStatusNotifierHostRegistered", check=False)
        return b"true" in answer

    def configure(self, name, text):
        path = os.path.join(self.desktop.env["HOME"], ".config", name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "w", encoding="utf-8") as file:
            file.write(text)
        return path

    def place(self):
        """The rectangle of the panel on the screen; None while it has no window."""
        for window in self.display.windows():
            is_dock = self.display.atom("_NET_WM_WINDOW_TYPE_DOCK") in list(
                self.display.property(window, "_NET_WM_WINDOW_TYPE") or ())
            if is_dock and self.display.is_viewable(window):
                return self.display.place(window)
        return None


class Tint2(Panel):
    window_class = "tint2"
    takes_windows = True
    position = "bottom center horizontal"
    monitor = "all"

    def command(self):
        return "tint2", "-c", self.configure("tint2/test.conf", f"""
rounded = 0
border_width = 0
background_color = {self.color} 100
panel_items = S
panel_size = 100% 30
panel_position = {self.position}
panel_monitor = {self.monitor}
strut_policy = follow_size
panel_background_id = 1
systray_padding = 4 3 4
systray_icon_size = 24
""")


class Trayer(Panel):
    window_class = "trayer"
    takes_windows = True

    def command(self):
        return ("trayer", "--edge", "bottom", "--align", "right", "--widthtype", "request",
                "--height", "28", "--transparent", "true", "--alpha", "0",
                "--tint", self.color.replace("#", "0x"))


class XfcePanel(Panel):
    """Takes icons of both kinds."""
    window_class = "xfce4-panel"
    takes_windows = True
    takes_items = True

    def command(self):
        self.configure("xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml", """<?xml version="1.0"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array"><value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=8;x=640;y=780"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="length" type="uint" value="100"/>
      <property name="size" type="uint" value="28"/>
      <property name="plugin-ids" type="array"><value type="int" value="1"/></property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="systray"/>
  </property>
</channel>
""")
        # The settings of a panel that ran before are kept by a service.
        self.set_dark(self.is_dark)
        return ("xfce4-panel",)

    def set_dark(self, is_dark):
        """While it runs, too."""
        self.is_dark = is_dark
        self.desktop.run("xfconf-query", "-c", "xfce4-panel", "-p", "/panels/dark-mode",
                         "-n", "-t", "bool", "-s", str(is_dark).lower())


class LxqtPanel(Panel):
    window_class = "lxqt-panel"
    takes_items = True

    def command(self):
        self.configure("lxqt/panel.conf", f"""
panels=panel1
[panel1]
plugins=statusnotifier
position=Bottom
desktop=0
background-color={self.color}
opacity=100
[statusnotifier]
type=statusnotifier
""")
        return ("lxqt-panel",)


Icon = collections.namedtuple("Icon", "x y width height ink ground")


def find_icon(display, place):
    """What lies on the plain ground within that rectangle of the screen; None if nothing does.

    ink and ground are between 0 for black and 255 for white; ink is that of the pixel that stands
    out most. The outermost pixels, where panels have borders, are not looked at.
    """
    x, y, width, height = place
    inner = (x + 2, y + 3, width - 4, height - 6)
    if inner[2] < 8 or inner[3] < 8:
        return None
    data = display.pixels(*inner)
    greys = [(data[i] + data[i + 1] + data[i + 2]) // 3 for i in range(0, len(data), 4)]
    last = len(greys) - inner[2]
    edge = greys[:inner[2]] + greys[last:] + greys[::inner[2]] + greys[inner[2] - 1::inner[2]]
    ground = collections.Counter(edge).most_common(1)[0][0]
    marked = [i for i, grey in enumerate(greys) if abs(grey - ground) > 40]
    if not marked:
        return None
    columns = [i % inner[2] for i in marked]
    rows = [i // inner[2] for i in marked]
    ink = max((greys[i] for i in marked), key=lambda grey: abs(grey - ground))
    return Icon(inner[0] + min(columns), inner[1] + min(rows),
                max(columns) - min(columns) + 1, max(rows) - min(rows) + 1, ink, ground)
