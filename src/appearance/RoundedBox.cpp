#include "appearance/RoundedBox.h"

#include "appearance/DevicePixels.h"

#include <QPainter>

#include <algorithm>

namespace {

void drawBox(QPainter &painter, const QRectF &box, qreal radius)
{
    painter.setRenderHint(QPainter::Antialiasing);
    const qreal fitting = std::clamp(radius, 0.0, std::min(box.width(), box.height()) / 2);
    painter.drawRoundedRect(box, fitting, fitting);
}

} // namespace

void fillRoundedBox(QPainter &painter, const QRectF &box, qreal radius, const QColor &color)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    drawBox(painter, snappedToDevice(painter, box), radius);
}

void lineRoundedBox(QPainter &painter, const QRectF &box, qreal radius, const QColor &color,
                    qreal thickness)
{
    const qreal width = lineThickness(painter, thickness);
    const qreal inset = width / 2;
    painter.setPen(QPen(color, width));
    painter.setBrush(Qt::NoBrush);
    drawBox(painter, snappedToDevice(painter, box).adjusted(inset, inset, -inset, -inset),
            radius - inset);
}
