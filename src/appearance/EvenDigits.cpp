#include "appearance/EvenDigits.h"

#include "appearance/InterfaceFont.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>

namespace {

bool isDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

qreal widestDigit(const QFontMetricsF &metrics)
{
    qreal widest = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit)
        widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
    return widest;
}

/// What can be drawn in one go: a single digit, or all up to the next.
qsizetype runLength(QStringView text)
{
    if (isDigit(text.front()))
        return 1;
    return std::ranges::find_if(text, isDigit) - text.begin();
}

} // namespace

void drawWithEvenDigits(QPainter &painter, const QRectF &box, const QString &text)
{
    if (std::ranges::none_of(text, isDigit)) {
        drawTextLine(painter, box, text, Qt::AlignRight);
        return;
    }
    const QFontMetricsF metrics(painter.font(), painter.device());
    const qreal cell = widestDigit(metrics);
    qreal x = box.right();
    QList<std::pair<QString, qreal>> runs;
    for (QStringView rest = text; !rest.isEmpty(); rest = rest.sliced(runs.last().first.size())) {
        const QString run = rest.first(runLength(rest)).toString();
        const qreal width = isDigit(run.front()) ? cell : metrics.horizontalAdvance(run);
        runs.append({run, width});
        x -= width;
    }
    for (const auto &[run, width] : runs) {
        const bool isCell = isDigit(run.front());
        drawTextLine(painter, QRectF(x, box.y(), width, box.height()), run,
                     isCell ? Qt::AlignHCenter : Qt::AlignLeft);
        x += width;
    }
}
