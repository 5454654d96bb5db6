#pragma once

#include <QColor>
#include <QPixmap>
#include <QString>

class QPainter;

enum class SymbolWeight { Regular, Medium, Semibold, Bold };

/// One of the program's symbols in a size and weight.
struct Symbol
{
    QString name; ///< As "doc.text".
    int pointSize = 15;
    SymbolWeight weight = SymbolWeight::Regular;

    friend bool operator==(const Symbol &, const Symbol &) = default;
};

/// The symbol in \a color, rasterised for a device of \a devicePixelRatio; null if there is none of
/// that name. Kept after the first time. Main thread only.
QPixmap symbolPixmap(const Symbol &symbol, const QColor &color, qreal devicePixelRatio);

/// Draws the symbol in the middle of \a box, on whole device pixels.
void drawSymbol(QPainter &painter, const QRectF &box, const Symbol &symbol, const QColor &color);
