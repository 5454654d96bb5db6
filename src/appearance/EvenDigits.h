#pragma once

#include <QRectF>
#include <QString>

class QFontMetricsF;
class QPainter;

/// Draws \a text like drawTextLine() does, at the right end of \a box, with each of its digits in a
/// cell as wide as the widest: what counts does not shift what stands beside it.
void drawWithEvenDigits(QPainter &painter, const QRectF &box, const QString &text);

/// How wide a text is that is drawn so.
qreal widthWithEvenDigits(const QFontMetricsF &metrics, const QString &text);
