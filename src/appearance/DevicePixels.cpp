#include "appearance/DevicePixels.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

qreal deviceScale(const QPainter &painter)
{
    return painter.device()->devicePixelRatioF();
}

QRectF snappedToDevice(const QPainter &painter, const QRectF &box)
{
    const QTransform toDevice = painter.deviceTransform();
    const QRectF exact = toDevice.mapRect(box);
    const QRectF snapped(QPointF(exact.topLeft().toPoint()),
                         QPointF(exact.bottomRight().toPoint()));
    return toDevice.inverted().mapRect(snapped);
}

qreal lineThickness(const QPainter &painter, qreal thickness)
{
    const qreal scale = deviceScale(painter);
    return std::max(1.0, std::round(thickness * scale)) / scale;
}

qreal snappedLine(const QPainter &painter, qreal y)
{
    const QTransform toDevice = painter.deviceTransform();
    const QPointF exact = toDevice.map(QPointF(0, y));
    return toDevice.inverted().map(QPointF(exact.x(), std::round(exact.y()))).y();
}

QPointF centredOnDevice(const QPainter &painter, const QRectF &box, const QSizeF &size)
{
    const QTransform toDevice = painter.deviceTransform();
    const QPointF corner = box.center() - QPointF(size.width() / 2, size.height() / 2);
    return toDevice.inverted().map(QPointF(toDevice.map(corner).toPoint()));
}

QSize fittedSize(const QSizeF &size, int side)
{
    return size.scaled(side, side, Qt::KeepAspectRatio).toSize().expandedTo(QSize(1, 1));
}
