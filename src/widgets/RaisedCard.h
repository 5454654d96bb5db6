#pragma once

#include "appearance/Look.h"
#include "appearance/SoftShadow.h"

#include <QPixmap>

/// Draws a card that floats over something: its shadow, its ground and the line around it.
class RaisedCard
{
public:
    RaisedCard(qreal radius, const SoftShadow &shadow, const Look &look)
        : m_radius(radius)
        , m_shadow(shadow)
        , m_scheme(look.scheme)
        , m_colors(look.colors())
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
    SystemColors m_colors;
    mutable QPixmap m_shadowPixmap; ///< Of the card that was drawn last.
};
