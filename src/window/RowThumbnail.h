#pragma once

#include <QImage>

class QColor;
class QPainter;
class QRectF;

/// \a picture as a row of the list shows it: as large as fits into a square of \a side device pixels,
/// with round corners.
QImage makeRowThumbnail(const QImage &picture, int side, qreal devicePixelRatio);

/// Draws a thumbnail of that kind in the middle of \a box, on whole device pixels, with a line of
/// \a lineColor inside its edge, so that what is as bright as the window ends somewhere.
void drawRowThumbnail(QPainter &painter, const QRectF &box, const QImage &thumbnail,
                      const QColor &lineColor);
