#pragma once

#include <QPointF>
#include <QSize>

class QPainter;
class QRectF;

/// Where something of \a size begins that stands in the middle of \a box, as far as whole device
/// pixels allow.
QPointF centredOnDevice(const QPainter &painter, const QRectF &box, const QSizeF &size);

/// \a size made as large as fits into a square of \a side pixels; never empty.
QSize fittedSize(const QSizeF &size, int side);
