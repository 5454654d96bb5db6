#include "app/StatusItemIcon.h"

#include "appearance/SymbolImage.h"

#include <QPainter>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int kBoardPointSize = 15;
constexpr int kBadgePointSize = 9;

/// Lengths for a board of kBoardPointSize, whose box is 18 high.
constexpr qreal kBoardSide = 18;
constexpr qreal kBadgeOverhang = 4; ///< To the right of the board.
constexpr qreal kBadgeDrop = 2;     ///< Below it.
constexpr qreal kHoleMargin = 1;

/// A symbol's ink begins at this part of its box.
constexpr qreal kInkMargin = 2.0 / 24;

/// The height at which a drawing of its own lies on whole pixels, and the badge that goes with it:
/// the bars of the mark are whole pixels then.
constexpr int kSmallSide = 16;
constexpr int kSmallBadgeSide = 9;

QPixmap boardPixmap(int side, const QColor &color)
{
    const QString name =
        side == kSmallSide ? u"app/tessarine-symbolic"_s : u"list.clipboard.fill"_s;
    return symbolPixmap({name, kBoardPointSize, SymbolWeight::Regular}, color, side / kBoardSide);
}

QPixmap badgePixmap(int side, const QColor &color)
{
    constexpr qreal kBoxPerPoint = 1.2;
    const qreal scale =
        side == kSmallSide ? kSmallBadgeSide / (kBadgePointSize * kBoxPerPoint) : side / kBoardSide;
    return symbolPixmap({u"pause.circle.fill"_s, kBadgePointSize, SymbolWeight::Bold}, color,
                        scale);
}

/// The place of the badge for a board that begins at the origin.
QRect badgePlace(int side, int badgeSide)
{
    const qreal scale = side / kBoardSide;
    const auto pixels = [scale](qreal length) { return int(std::lround(length * scale)); };
    return {side - badgeSide + pixels(kBadgeOverhang), side - badgeSide + pixels(kBadgeDrop),
            badgeSide, badgeSide};
}

void punchHole(QPainter &painter, const QRect &badge, qreal margin)
{
    painter.setCompositionMode(QPainter::CompositionMode_Clear);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawEllipse(QRectF(badge).adjusted(-margin, -margin, margin, margin));
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void drawUnscaled(QPainter &painter, const QPoint &place, QPixmap pixmap)
{
    pixmap.setDevicePixelRatio(1);
    painter.drawPixmap(place, pixmap);
}

QImage pausedImage(int side, const QColor &color)
{
    const QPixmap badge = badgePixmap(side, color);
    QRect place = badgePlace(side, badge.width());
    // The mark hangs below the board, further than its own margin is wide; the board has room
    // above.
    const int lift = place.bottom() + 1 - side - int(std::lround(badge.width() * kInkMargin));
    place.translate(0, -lift);

    QImage image(place.right() + 1, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawUnscaled(painter, QPoint(0, -lift), boardPixmap(side, color));
    punchHole(painter, place, kHoleMargin * side / kBoardSide);
    drawUnscaled(painter, place.topLeft(), badge);
    return image;
}

} // namespace

QImage statusItemImage(int side, const QColor &color, bool isPaused)
{
    if (isPaused)
        return pausedImage(side, color);
    QImage image =
        boardPixmap(side, color).toImage().convertToFormat(QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(1);
    return image;
}
