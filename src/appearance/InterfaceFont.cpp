#include "appearance/InterfaceFont.h"

#include "appearance/DevicePixels.h"
#include "appearance/LaidOutLine.h"
#include "foundation/TextTools.h"

#include <QCache>
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
/// The words of the window, of its menus and of some forty rows.
constexpr int kKnownLines = 256;
constexpr qreal kUncut = 0; // With a mode that cuts nothing.

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

/// The lines drawn lately, since most are drawn again and again: in each frame of a motion, and at
/// each step of scrolling.
QCache<LaidOutLine::Key, LaidOutLine> &knownLines()
{
    static QCache<LaidOutLine::Key, LaidOutLine> known(kKnownLines);
    // Their fonts go before the application does.
    static const bool isEnding = (qAddPostRoutine([] { knownLines().clear(); }), true);
    Q_UNUSED(isEnding);
    return known;
}

const LaidOutLine &laidOut(const LaidOutLine::Key &key, QPaintDevice &device)
{
    QCache<LaidOutLine::Key, LaidOutLine> &known = knownLines();
    LaidOutLine *line = known.object(key);
    if (!line) {
        line = new LaidOutLine(key, device);
        known.insert(key, line);
    }
    return *line;
}

void drawLine(QPainter &painter, const QRectF &box, const QString &text, qreal width,
              Qt::Alignment alignment, Qt::TextElideMode mode)
{
    QPaintDevice &device = *painter.device();
    const QFontMetricsF metrics(painter.font(), &device);
    const qreal middle = box.center().y() + (metrics.ascent() - metrics.descent()) / 2;
    const LaidOutLine &line
        = laidOut({text, painter.font(), width, mode, device.logicalDpiY()}, device);
    qreal x = box.left();
    if (alignment & (Qt::AlignRight | Qt::AlignHCenter)) {
        const qreal spare = box.width() - line.width;
        x += alignment & Qt::AlignRight ? spare : spare / 2;
    }
    line.draw(painter, QPointF(x, snappedLine(painter, middle)));
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
    drawLine(painter, box, text, kUncut, alignment, Qt::ElideNone);
}

void drawElided(QPainter &painter, const QRectF &box, const QString &text,
                Qt::Alignment alignment, Qt::TextElideMode mode)
{
    drawLine(painter, box, shortened(text, kMaxDrawnUnits), box.width(), alignment, mode);
}
