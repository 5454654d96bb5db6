#include "widgets/RaisedCard.h"

#include <QPainter>

void RaisedCard::draw(QPainter &painter, const QRect &card) const
{
    const qreal ratio = painter.device()->devicePixelRatioF();
    const QMargins room = this->room();
    const QSize size = (QSizeF(card.size().grownBy(room)) * ratio).toSize();
    if (m_shadowPixmap.size() != size)
        m_shadowPixmap = QPixmap::fromImage(shadowImage(m_shadow, card.size(), ratio));
    painter.drawPixmap(card.topLeft() - QPoint(room.left(), room.top()), m_shadowPixmap);
    drawWithoutShadow(painter, card);
}

void RaisedCard::drawWithoutShadow(QPainter &painter, const QRect &card) const
{
    const QRectF outline = QRectF(card).adjusted(0.5, 0.5, -0.5, -0.5);
    // A dark line stands beside a light card, where it darkens what is below; a light line lies on
    // a dark card.
    const qreal inset = m_scheme == ColorScheme::Light ? 0.5 : -0.5;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_colors.raisedSurfaceColor);
    painter.drawRoundedRect(outline.adjusted(inset, inset, -inset, -inset), m_radius - inset,
                            m_radius - inset);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(m_colors.controlLineColor);
    painter.drawRoundedRect(outline, m_radius, m_radius);
}
