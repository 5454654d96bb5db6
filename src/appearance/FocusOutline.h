#pragma once

#include <QColor>
#include <QRectF>

class QPainter;

/// So far an outline reaches beyond its control, in whole units.
constexpr int kFocusOutlineRoom = 4;

/// Draws the ring around a control with the keyboard focus, a little apart from it. \a radius is
/// that of the control's corners.
void drawFocusOutline(QPainter &painter, const QRectF &control, qreal radius,
                      const QColor &color);
