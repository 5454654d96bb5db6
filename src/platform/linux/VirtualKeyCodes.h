#pragma once

#include <QtGlobal>

#include <optional>
#include <span>

/// What a stored virtual key code means on a Linux keyboard.
struct VirtualKey
{
    quint32 code = 0;     ///< As it is stored with a key combination.
    quint32 keysym = 0;   ///< The unshifted X keysym of the key's name.
    quint16 position = 0; ///< The kernel's number of that key on a US keyboard (KEY_A is 30).

    friend bool operator==(const VirtualKey &, const VirtualKey &) = default;
};

/// Absent for codes that no key combination can hold: unknown ones and modifiers alone.
std::optional<VirtualKey> findVirtualKey(quint32 code);

/// All of them, in the order of their codes.
std::span<const VirtualKey> virtualKeys();
