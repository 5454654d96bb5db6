#include "widgets/RaisedCard.h"

#include "appearance/DevicePixels.h"
#include "appearance/RoundedBox.h"

#include <QPainter>

void RaisedCard::draw(QPainter &painter, const QRect &card) const
{
    const qreal ratio = deviceScale(painter);
    const QMargins room = this->room();
    const QSize size = (QSizeF(card.size().grownBy(room)) * ratio).toSize();
    if (m_shadowPixmap.size() != size)
        m_shadowPixmap = QPixmap::fromImage(shadowImage(m_shadow, card.size(), ratio));
    painter.drawPixmap(card.topLeft() - QPoint(room.left(), room.top()), m_shadowPixmap);
    drawWithoutShadow(painter, card);
}

void RaisedCard::drawWithoutShadow(QPainter &painter, const QRect &card) const
{
    fillRoundedBox(painter, card, m_radius, m_colors.raisedSurfaceColor);
    // A dark line stands beside a light card, where it darkens what is below; a light line lies on
    // a dark card.
    const qreal outset = m_scheme == ColorScheme::Light ? lineThickness(painter, 1) : 0;
    lineRoundedBox(painter, QRectF(card).adjusted(-outset, -outset, outset, outset),
                   m_radius + outset, m_colors.controlLineColor);
}
