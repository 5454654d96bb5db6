#include "window/RowLayout.h"

namespace {

constexpr qreal kSelectionInset = 8;
constexpr qreal kSelectionVerticalInset = 4;
constexpr qreal kIconLeft = 16;
constexpr qreal kIconSide = 32;
constexpr qreal kIconGap = 12;
constexpr qreal kBadgeSide = 14;
constexpr qreal kBadgeOverhang = 3;
constexpr qreal kStarRight = 16;
constexpr qreal kStarSide = 26;
constexpr qreal kTimeGap = 12;
constexpr qreal kTimeWidth = 76;
constexpr qreal kContentGap = 8;
constexpr qreal kContentRise = 8;
constexpr qreal kMetaDrop = 10;
constexpr qreal kContentHeight = 20;
constexpr qreal kMetaHeight = 14;

QRectF centredOn(qreal y, qreal left, qreal right, qreal height)
{
    return {left, y - height / 2, right - left, height};
}

} // namespace

RowLayout::RowLayout(const QRectF &row)
{
    const qreal middle = row.center().y();
    selection = row.adjusted(kSelectionInset, kSelectionVerticalInset, -kSelectionInset,
                             -kSelectionVerticalInset);
    icon = QRectF(row.left() + kIconLeft, middle - kIconSide / 2, kIconSide, kIconSide);
    badge = QRectF(icon.right() + kBadgeOverhang - kBadgeSide,
                   icon.bottom() + kBadgeOverhang - kBadgeSide, kBadgeSide, kBadgeSide);
    star = QRectF(row.right() - kStarRight - kStarSide, middle - kStarSide / 2, kStarSide,
                  kStarSide);
    const qreal timeRight = star.left() - kTimeGap;
    const qreal textLeft = icon.right() + kIconGap;
    const qreal textRight = timeRight - kTimeWidth - kContentGap;
    time = centredOn(middle, timeRight - kTimeWidth, timeRight, kContentHeight);
    content = centredOn(middle - kContentRise, textLeft, textRight, kContentHeight);
    meta = centredOn(middle + kMetaDrop, textLeft, textRight, kMetaHeight);
}
