#pragma once

#include <QtGlobal>

/// The global key combination as it is stored: a virtual key code and modifier bits.
struct HotkeySettings
{
    static constexpr quint32 kCommand = 0x100;
    static constexpr quint32 kShift = 0x200;
    static constexpr quint32 kOption = 0x800;
    static constexpr quint32 kControl = 0x1000;

    quint32 keyCode = 49; ///< The space bar.
    quint32 modifiers = kOption;

    friend bool operator==(const HotkeySettings &, const HotkeySettings &) = default;
};
