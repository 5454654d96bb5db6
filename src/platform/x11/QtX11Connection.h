#pragma once

struct xcb_connection_t;

/// The connection on which Qt creates and maps windows; null where Qt does not draw on X11.
xcb_connection_t *qtX11Connection();
