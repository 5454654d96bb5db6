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

/// How well one of two opaque colours can be read on the other, from 1 to 21 (WCAG 2).
double contrastRatio(const QColor &one, const QColor &other);

/// What is seen where \a top lies over the opaque \a below.
QColor composed(const QColor &top, const QColor &below);
