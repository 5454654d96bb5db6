#include "appearance/DevicePixels.h"

#include <QPainter>

QPointF snappedToDevice(const QPainter &painter, const QPointF &point)
{
    const QTransform toDevice = painter.deviceTransform();
    return toDevice.inverted().map(QPointF(toDevice.map(point).toPoint()));
}
