#pragma once

#include "appearance/SoftShadow.h"
#include "appearance/SystemColors.h"

#include <QPixmap>

/// Draws a card that floats over something: its shadow, its ground and the line around it.
class RaisedCard
{
public:
    RaisedCard(qreal radius, const SoftShadow &shadow, ColorScheme scheme)
        : m_radius(radius)
        , m_shadow(shadow)
        , m_scheme(scheme)
    {
    }

    /// What the shadow takes around the card.
    QMargins room() const { return m_shadow.margins(); }

    void draw(QPainter &painter, const QRect &card) const;
    void drawWithoutShadow(QPainter &painter, const QRect &card) const;

private:
    qreal m_radius;
    SoftShadow m_shadow;
    ColorScheme m_scheme;
    mutable QPixmap m_shadowPixmap; ///< Of the card that was drawn last.
};
