#pragma once

#include <QFont>
#include <QGlyphRun>
#include <QList>
#include <QString>

class QPaintDevice;
class QPainter;

/// A line of text, cut to a width, with its letters chosen and placed: what takes long about a text,
/// above all one with emoji.
struct LaidOutLine
{
    /// What makes a line what it is.
    struct Key
    {
        QString text;
        QFont font;
        qreal width = 0; ///< What is longer is cut, with an ellipsis.
        Qt::TextElideMode mode = Qt::ElideRight;
        int dotsPerInch = 0; ///< Of the device that it is drawn on.

        friend bool operator==(const Key &, const Key &) = default;
        friend size_t qHash(const Key &key, size_t seed)
        {
            return qHashMulti(seed, key.text, key.font, key.width, int(key.mode), key.dotsPerInch);
        }
    };

    LaidOutLine(const Key &key, QPaintDevice &device);

    /// With the painter's pen. \a start is the left end of the baseline.
    void draw(QPainter &painter, const QPointF &start) const;

    QList<QGlyphRun> runs;
    qreal ascent = 0; ///< Of the tallest font among those of the text.
    qreal width = 0;
};
