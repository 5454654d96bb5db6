#pragma once

#include "appearance/SystemColors.h"

/// \a colors of \a scheme with those that come from the person's \a accent, which keep its hue and
/// are as much lighter or darker as it takes to read on them, and them on the window.
SystemColors withAccent(SystemColors colors, const QColor &accent, ColorScheme scheme);
