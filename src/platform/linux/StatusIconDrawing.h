#pragma once

#include "platform/StatusItem.h"

#include <QSize>

#include <optional>

/// How the icon of a status item comes to suit the panel that it lies on.

/// The colour, nearly black or nearly white, that is seen best on \a ground.
QColor iconColorOn(const QColor &ground);

/// A colour that is seen on light and on dark ground alike, for where the ground is not known.
QColor iconColorOnUnknownGround();

/// Whether \a color stands out enough from \a ground for a small drawing.
bool isLegible(const QColor &color, const QColor &ground);

/// The colour of most of \a pixels, small differences apart; absent if there are none.
std::optional<QColor> prevailingColor(const QList<QRgb> &pixels);

/// What \a painter draws, in an image of just \a size. Where the drawing is wider, its empty
/// margins go first, and only then it is drawn smaller.
QImage drawIconInto(const QSize &size, const StatusItem::IconPainter &painter, const QColor &color);
