"""How fine the screen of a private desktop is, as people set it."""
from Xlib import Xatom
from Xlib.display import Display


def set_font_resolution(desktop, dots_per_inch):
    """Programs that start from now on draw everything larger by that over 96."""
    display = Display(desktop.env["DISPLAY"])
    resource = f"Xft.dpi:\t{round(dots_per_inch)}\n".encode()
    display.screen().root.change_property(Xatom.RESOURCE_MANAGER, Xatom.STRING, 8, resource)
    display.sync()
    display.close()
