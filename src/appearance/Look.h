#pragma once

#include "appearance/SystemColors.h"

/// How opaque a translucent window is if what is behind it is blurred, and if it is not.
inline constexpr qreal kBlurredWindowAlpha = 0.90;
inline constexpr qreal kPlainWindowAlpha = 0.96;

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

    friend bool operator==(const Look &, const Look &) = default;
};
