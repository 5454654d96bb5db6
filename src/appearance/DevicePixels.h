#pragma once

#include <QPointF>
#include <QSize>

class QPainter;
class QRectF;

/// How many device pixels there are to a unit, along either side.
qreal deviceScale(const QPainter &painter);

/// \a box with its edges on whole device pixels, so that neighbours stay flush at every scale.
QRectF snappedToDevice(const QPainter &painter, const QRectF &box);

/// How thick a line is drawn that is to be \a thickness: a whole number of device pixels, and at
/// least one.
qreal lineThickness(const QPainter &painter, qreal thickness);

/// The line at \a y where it falls between two rows of device pixels.
qreal snappedLine(const QPainter &painter, qreal y);

/// Where something of \a size begins that stands in the middle of \a box, as far as whole device
/// pixels allow.
QPointF centredOnDevice(const QPainter &painter, const QRectF &box, const QSizeF &size);

/// \a size made as large as fits into a square of \a side pixels; never empty.
QSize fittedSize(const QSizeF &size, int side);
