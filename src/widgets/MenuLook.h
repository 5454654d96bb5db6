#pragma once

#include "appearance/Look.h"

class QMenu;

/// Gives \a menu and all its submenus the program's look. May be called again when the look has
/// changed, while the menu is closed. Submenus that are added later need a call of their own.
void applyMenuLook(QMenu &menu, const Look &look);

/// For a menu that has a look and may be open: takes the colours of \a look, and the rest when it is
/// opened the next time. Does nothing for a menu without a look.
void recolorMenu(QMenu &menu, const Look &look);
