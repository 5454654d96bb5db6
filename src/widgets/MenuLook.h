#pragma once

#include "appearance/Look.h"

class QMenu;

/// Gives \a menu and all its submenus the program's look. May be called again when the look has
/// changed, while the menu is closed. Submenus that are added later need a call of their own.
void applyMenuLook(QMenu &menu, const Look &look);
