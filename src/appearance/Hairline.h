#pragma once

#include <QColor>
#include <QRectF>

class QPainter;

/// Fills \a line, which is one unit thick, on whole device pixels: as thick as the scale rounded,
/// though never thinner than one pixel.
void drawHairline(QPainter &painter, const QRectF &line, const QColor &color);
