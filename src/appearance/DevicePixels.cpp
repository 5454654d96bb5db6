#include "appearance/DevicePixels.h"

#include <QPainter>

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
