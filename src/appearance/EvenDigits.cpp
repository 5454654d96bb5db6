#include "appearance/EvenDigits.h"

#include "appearance/InterfaceFont.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <numeric>

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

struct Run
{
    QString text;
    qreal width = 0;
    bool isCell = false; ///< A digit, which stands in the middle.
};

QList<Run> runsOf(const QFontMetricsF &metrics, const QString &text)
{
    const qreal cell = std::ranges::any_of(text, isDigit) ? widestDigit(metrics) : 0;
    QList<Run> runs;
    for (QStringView rest = text; !rest.isEmpty(); rest = rest.sliced(runs.last().text.size())) {
        const QString run = rest.first(runLength(rest)).toString();
        const bool isCell = isDigit(run.front());
        runs.append({run, isCell ? cell : metrics.horizontalAdvance(run), isCell});
    }
    return runs;
}

qreal widthOf(const QList<Run> &runs)
{
    return std::accumulate(runs.begin(), runs.end(), 0.0,
                           [](qreal sum, const Run &run) { return sum + run.width; });
}

} // namespace

void drawWithEvenDigits(QPainter &painter, const QRectF &box, const QString &text)
{
    const QList<Run> runs = runsOf(QFontMetricsF(painter.font(), painter.device()), text);
    qreal x = box.right() - widthOf(runs);
    for (const Run &run : runs) {
        drawTextLine(painter, QRectF(x, box.y(), run.width, box.height()), run.text,
                     run.isCell ? Qt::AlignHCenter : Qt::AlignLeft);
        x += run.width;
    }
}

qreal widthWithEvenDigits(const QFontMetricsF &metrics, const QString &text)
{
    return widthOf(runsOf(metrics, text));
}
