#pragma once

#include "core/ClipboardItem.h"

class UserDefaults;

/// The capacities that can be chosen.
inline constexpr qint64 kAllowedCapacities[] = {1000, 10000};

/// \a value if it can be chosen, else the smallest capacity.
qsizetype normalizedCapacity(qint64 value);

/// The capacity that the user has chosen; read at each call.
qsizetype currentCapacity(const UserDefaults &defaults);

/// Sorts \a items newest first, keeping the order of equals, and takes the oldest entries beyond
/// \a capacity out of it; favourites neither count nor go. Returns what was taken, newest first.
ClipboardItemList trimToCapacity(ClipboardItemList &items, qsizetype capacity);
