#pragma once

#include <QColor>
#include <QRectF>

class QPainter;

/// A line that is one device pixel thick at every scale.
inline constexpr qreal kThinnestLine = 0;

/// Fills \a box with \a color, its edges on whole device pixels and its corners round.
void fillRoundedBox(QPainter &painter, const QRectF &box, qreal radius, const QColor &color);

/// Draws a line along the inside of such a box, a whole number of device pixels thick.
void lineRoundedBox(QPainter &painter, const QRectF &box, qreal radius, const QColor &color,
                    qreal thickness = 1);
