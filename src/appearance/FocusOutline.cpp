#include "appearance/FocusOutline.h"

#include <QPainter>

namespace {

constexpr qreal kWidth = 2;
constexpr qreal kGap = 1.5;

} // namespace

void drawFocusOutline(QPainter &painter, const QRectF &control, qreal radius,
                      const QColor &color)
{
    constexpr qreal kDistance = kGap + kWidth / 2;
    static_assert(kDistance + kWidth / 2 <= kFocusOutlineRoom);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(color, kWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(control.adjusted(-kDistance, -kDistance, kDistance, kDistance),
                            radius + kDistance, radius + kDistance);
}
