#pragma once

#include <QImage>
#include <QMargins>

/// The shadow of a card that floats over something.
struct SoftShadow
{
    int blur = 30;         ///< How far it reaches beyond the card, before it is moved down.
    int drop = 10;         ///< How far below the card it lies.
    qreal strength = 0.18; ///< Alpha of the black under the middle of a large card.

    friend bool operator==(const SoftShadow &, const SoftShadow &) = default;

    /// The room around the card that the shadow needs.
    QMargins margins() const { return {blur, blur - drop, blur, blur + drop}; }
};

/// The shadow of a card of \a cardSize, with the room around the card. Corners need no rounding at
/// this softness.
QImage shadowImage(const SoftShadow &shadow, const QSize &cardSize, qreal devicePixelRatio);
