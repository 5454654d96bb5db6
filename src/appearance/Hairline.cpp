#include "appearance/Hairline.h"

#include <QPainter>
#include <QTransform>

#include <algorithm>
#include <cmath>

void drawHairline(QPainter &painter, const QRectF &line, const QColor &color)
{
    const QTransform toDevice = painter.deviceTransform();
    const QRectF exact = toDevice.mapRect(line);
    QRectF snapped(QPointF(exact.topLeft().toPoint()), QPointF(exact.bottomRight().toPoint()));
    const qreal thickness = std::max(1.0, std::round(std::min(exact.width(), exact.height())));
    if (exact.width() < exact.height())
        snapped.setWidth(thickness);
    else
        snapped.setHeight(thickness);
    painter.fillRect(toDevice.inverted().mapRect(snapped), color);
}
