#include "appearance/InterfaceFont.h"

#include "appearance/DevicePixels.h"
#include "foundation/TextTools.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QHash>
#include <QPainter>
#include <QScreen>

#include <algorithm>
#include <cmath>
#include <utility>

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

struct KnownFonts
{
    QHash<std::pair<qreal, int>, QFont> fonts; ///< By unscaled size and weight.
    QStringList families;
    qreal textScale = 1;
};

KnownFonts &knownFonts()
{
    static KnownFonts known;
    return known;
}

} // namespace

void setInterfaceTextScale(qreal scale)
{
    constexpr qreal kMostTextScale = 1.3;
    KnownFonts &known = knownFonts();
    const qreal former = std::exchange(known.textScale, std::clamp(scale, 1.0, kMostTextScale));
    if (former != known.textScale)
        known.fonts.clear();
}

qreal interfaceTextScale()
{
    return knownFonts().textScale;
}

QFont interfaceFont(qreal pixelSize, QFont::Weight weight)
{
    KnownFonts &known = knownFonts();
    const QFont desktopFont = QGuiApplication::font();
    if (desktopFont.families() != known.families) {
        known.fonts.clear();
        known.families = desktopFont.families();
    }
    const auto found = known.fonts.constFind({pixelSize, weight});
    if (found != known.fonts.cend())
        return *found;
    QFont font(known.families);
    setPixelSize(font, pixelSize * known.textScale);
    font.setWeight(weight);
    known.fonts.insert({pixelSize, weight}, font);
    return font;
}

void drawTextLine(QPainter &painter, const QRectF &box, const QString &text,
                  Qt::Alignment alignment)
{
    const QFontMetricsF metrics(painter.font(), painter.device());
    const qreal middle = box.center().y() + (metrics.ascent() - metrics.descent()) / 2;
    const qreal baseline = snappedLine(painter, middle);
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
