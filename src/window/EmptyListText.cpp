#include "window/EmptyListText.h"

#include "appearance/InterfaceFont.h"
#include "appearance/SystemColors.h"

#include <QPainter>

#include <cmath>

namespace {

constexpr int kTitleSize = 14;
constexpr int kNoteSize = 12;
constexpr qreal kTitleShare = 0.4; ///< Of the height, above the middle of the title.
constexpr qreal kLineDistance = 20.5;
constexpr qreal kLineHeight = 72; ///< Generous; the line is centred in it.
constexpr qreal kMargin = 24;

} // namespace

void drawEmptyListText(QPainter &painter, const QRectF &list, const EmptyListText &text,
                       const SystemColors &colors)
{
    const QRectF box = list.adjusted(kMargin, 0, -kMargin, 0);
    const qreal middle = std::round(box.height() * kTitleShare);
    const auto drawLine = [&](qreal y, const QString &line) {
        drawElided(painter, QRectF(box.left(), y - kLineHeight / 2, box.width(), kLineHeight), line,
                   Qt::AlignHCenter, Qt::ElideMiddle);
    };
    painter.setFont(interfaceFont(kTitleSize));
    painter.setPen(colors.secondaryLabelColor);
    drawLine(middle, text.title);
    painter.setFont(interfaceFont(kNoteSize));
    painter.setPen(colors.tertiaryLabelColor);
    drawLine(middle + kLineDistance, text.note);
}
