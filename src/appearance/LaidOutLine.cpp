#include "appearance/LaidOutLine.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>

LaidOutLine::LaidOutLine(const Key &key, QPaintDevice &device)
{
    const QFontMetricsF metrics(key.font, &device);
    const QString cut = metrics.elidedText(key.text, key.mode, key.width);
    width = metrics.horizontalAdvance(cut);

    QTextLayout layout(cut, key.font, &device);
    QTextOption option(Qt::AlignLeft | Qt::AlignAbsolute);
    // A text that runs from right to left keeps its order, with an ellipsis at its own end.
    option.setTextDirection(Qt::LayoutDirectionAuto);
    option.setWrapMode(QTextOption::NoWrap);
    layout.setTextOption(option);
    layout.beginLayout();
    const QTextLine line = layout.createLine();
    layout.endLayout();
    if (!line.isValid())
        return;
    ascent = line.ascent();
    runs = layout.glyphRuns();
}

void LaidOutLine::draw(QPainter &painter, const QPointF &start) const
{
    for (const QGlyphRun &run : runs)
        painter.drawGlyphRun(start - QPointF(0, ascent), run);
}
