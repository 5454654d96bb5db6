#pragma once

#include <QColor>

/// A colour by how light, how colourful and of which hue it is to the eye: a change of one of them
/// leaves the others as they are seen.
struct Oklch
{
    double lightness = 0; ///< From 0, black, to 1, white.
    double chroma = 0;    ///< 0 for greys.
    double hue = 0;       ///< In radians.

    static Oklch from(const QColor &color);

    /// As colourful as the screen can show it.
    QColor toColor() const;
};
