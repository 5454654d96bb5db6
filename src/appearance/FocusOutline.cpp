#include "appearance/FocusOutline.h"

#include "appearance/DevicePixels.h"
#include "appearance/RoundedBox.h"

#include <QPainter>

#include <cmath>

namespace {

constexpr qreal kWidth = 2;
constexpr qreal kGap = 1.5;

} // namespace

void drawFocusOutline(QPainter &painter, const QRectF &control, qreal radius,
                      const QColor &color)
{
    static_assert(kGap + kWidth + 0.5 <= kFocusOutlineRoom);
    // As far from the control on all its sides, so the control is put on whole pixels first.
    const qreal scale = deviceScale(painter);
    const qreal reach = std::round((kGap + kWidth) * scale) / scale;
    const QRectF box
        = snappedToDevice(painter, control).adjusted(-reach, -reach, reach, reach);
    lineRoundedBox(painter, box, radius + reach, color, kWidth);
}
