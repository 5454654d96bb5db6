#pragma once

#include "settings/HotkeySettings.h"

#include <QStringList>

/// How a key combination reads to people on this desktop.
namespace HotkeyText {

/// The keys in the order in which they are pressed, for example "Alt" and "Space"; the modifiers
/// are in the interface language.
QStringList keyCaps(const HotkeySettings &settings);

/// The same as one text, for example "Alt+Space".
QString readable(const HotkeySettings &settings);

} // namespace HotkeyText
