#pragma once

#include "appearance/SystemColors.h"

/// What the desktop wants our windows to look like at this moment.
struct Look
{
    ColorScheme scheme = ColorScheme::Light;
    /// The desktop blends windows: corners are smooth and there is a shadow.
    bool isTranslucent = true;
    bool isHighContrast = false;
    bool isMotionReduced = false; ///< Nothing moves, and fades are short.
    /// The desktop's own, before it is made readable.
    std::optional<QColor> accent = {};

    SystemColors colors() const { return systemColors(scheme); }

    friend bool operator==(const Look &, const Look &) = default;
};
