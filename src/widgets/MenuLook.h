#pragma once

#include "appearance/SystemColors.h"

class QMenu;

/// What menus are drawn with at this moment.
struct MenuLook
{
    ColorScheme scheme = ColorScheme::Light;
    /// The desktop blends windows: corners are smooth and there is a shadow.
    bool isTranslucent = true;

    friend bool operator==(const MenuLook &, const MenuLook &) = default;
};

/// Gives \a menu and all its submenus the program's look. May be called again when the look has
/// changed, while the menu is closed. Submenus that are added later need a call of their own.
void applyMenuLook(QMenu &menu, const MenuLook &look);
