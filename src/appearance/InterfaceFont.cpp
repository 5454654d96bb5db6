#include "appearance/InterfaceFont.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QHash>
#include <QPainter>

#include <cmath>

QFont interfaceFont(int pixelSize, QFont::Weight weight)
{
    static QHash<std::pair<int, int>, QFont> fonts;
    static QStringList families;

    const QFont desktopFont = QGuiApplication::font();
    if (desktopFont.families() != families) {
        fonts.clear();
        families = desktopFont.families();
    }
    QFont &font = fonts[{pixelSize, weight}];
    if (font.pixelSize() != pixelSize) {
        font = QFont(families);
        font.setPixelSize(pixelSize);
        font.setWeight(weight);
    }
    return font;
}

void drawTextLine(QPainter &painter, const QRectF &box, const QString &text,
                  Qt::Alignment alignment)
{
    const QFontMetricsF metrics(painter.font(), painter.device());
    const qreal baseline
        = std::round(box.center().y() + (metrics.ascent() - metrics.descent()) / 2);
    qreal x = box.left();
    if (alignment & (Qt::AlignRight | Qt::AlignHCenter)) {
        const qreal spare = box.width() - metrics.horizontalAdvance(text);
        x += alignment & Qt::AlignRight ? spare : spare / 2;
    }
    // A text that runs from right to left keeps its order, with an ellipsis at its own end.
    painter.setLayoutDirection(Qt::LayoutDirectionAuto);
    painter.drawText(QPointF(x, baseline), text);
}
