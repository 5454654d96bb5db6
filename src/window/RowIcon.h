#pragma once

#include <QImage>

class ImageCodec;
class QColor;
class QPainter;
class QRectF;

/// The icon in \a file, a picture or an SVG, as large as fits into a square of \a side device
/// pixels. Null if there is none.
QImage makeRowIcon(const QByteArray &file, int side, qreal devicePixelRatio,
                   const ImageCodec &codec);

/// Draws \a picture in the middle of \a box, on whole device pixels.
void drawRowIcon(QPainter &painter, const QRectF &box, const QImage &picture);

/// The icon of the program that an entry came from, on a ground of \a groundColor that keeps it
/// apart from what it lies over.
void drawSourceBadge(QPainter &painter, const QRectF &box, const QImage &icon,
                     const QColor &groundColor);
