#include "appearance/InterfaceFont.h"

#include "foundation/TextTools.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QHash>
#include <QPainter>
#include <QScreen>

#include <cmath>

namespace {

/// No line shows as many, and shaping takes long.
constexpr qsizetype kMaxDrawnUnits = 1000;

/// A font takes only whole pixels, but any number of points.
void setPixelSize(QFont &font, qreal pixelSize)
{
    constexpr qreal kPointsPerInch = 72;
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (pixelSize == std::floor(pixelSize) || !screen)
        font.setPixelSize(qRound(pixelSize));
    else
        font.setPointSizeF(pixelSize * kPointsPerInch / screen->logicalDotsPerInchY());
}

} // namespace

QFont interfaceFont(qreal pixelSize, QFont::Weight weight)
{
    static QHash<std::pair<qreal, int>, QFont> fonts;
    static QStringList families;

    const QFont desktopFont = QGuiApplication::font();
    if (desktopFont.families() != families) {
        fonts.clear();
        families = desktopFont.families();
    }
    const auto known = fonts.constFind({pixelSize, weight});
    if (known != fonts.cend())
        return *known;
    QFont font(families);
    setPixelSize(font, pixelSize);
    font.setWeight(weight);
    fonts.insert({pixelSize, weight}, font);
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

void drawElided(QPainter &painter, const QRectF &box, const QString &text,
                Qt::Alignment alignment, Qt::TextElideMode mode)
{
    const QFontMetricsF metrics(painter.font(), painter.device());
    drawTextLine(painter, box, metrics.elidedText(shortened(text, kMaxDrawnUnits), mode, box.width()),
                 alignment);
}
