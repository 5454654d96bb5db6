#pragma once

#include "appearance/SystemColors.h"

/// What the desktop wants our windows to look like at this moment.
struct Look
{
    ColorScheme scheme = ColorScheme::Light;
    /// The desktop blends windows: corners are smooth and there is a shadow.
    bool isTranslucent = true;
    bool isBlurred = false; ///< What shines through a window that asks for it.
    bool isHighContrast = false;
    bool isMotionReduced = false; ///< Nothing moves, and fades are short.
    /// The desktop's own, before it is made readable.
    std::optional<QColor> accent = {};
    qreal textScale = 1; ///< See setInterfaceTextScale().

    /// Main thread only. Cheap: the colours of the last look are kept.
    SystemColors colors() const;

    qreal windowAlpha() const;

    /// Whether a window asks for what is behind it to be blurred.
    bool wantsBlur() const;

    friend bool operator==(const Look &, const Look &) = default;
};
