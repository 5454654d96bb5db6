#pragma once

#include <QtGlobal>

class UserDefaults;

/// The capacities that can be chosen.
inline constexpr qint64 kAllowedCapacities[] = {1000, 10000};

/// \a value if it can be chosen, else the smallest capacity.
qsizetype normalizedCapacity(qint64 value);

/// The capacity that the user has chosen; read at each call.
qsizetype currentCapacity(const UserDefaults &defaults);
