"""Several monitors on one X server, plugged and unplugged at will."""
import re


class Monitors:
    """Parts of the server's screen, each of which is a monitor for programs. While there are none,
    the whole screen is one, and so it is again when the first that was plugged in is unplugged."""

    def __init__(self, desktop):
        self.desktop = desktop
        answer = desktop.run("xrandr", "--query").decode()
        self.output = re.search(r"^(\S+) connected", answer, re.MULTILINE)[1]
        self.names = []

    def plug(self, name, x, y, width, height, is_primary=False):
        """Also gives a monitor that is there already another place and size."""
        if name in self.names:
            self.desktop.run("xrandr", "--delmonitor", name)
        else:
            self.names.append(name)
        # The server makes a monitor of an output that belongs to none.
        output = self.output if name == self.names[0] else "none"
        mark = "*" if is_primary else ""
        self.desktop.run("xrandr", "--setmonitor", mark + name,
                         f"{width}/{width // 4}x{height}/{height // 4}+{x}+{y}", output)

    def unplug(self, name):
        self.desktop.run("xrandr", "--delmonitor", name)
        self.names.remove(name)

    def unplug_all(self):
        while self.names:
            self.unplug(self.names[-1])
