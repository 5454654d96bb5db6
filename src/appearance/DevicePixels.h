#pragma once

#include <QPointF>

class QPainter;

/// The point next to \a point at which a device pixel begins.
QPointF snappedToDevice(const QPainter &painter, const QPointF &point);
