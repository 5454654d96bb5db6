#pragma once

#include <QString>

class QPainter;
class QRectF;
struct SystemColors;

/// What stands in the place of the rows of the list while there are none.
struct EmptyListText
{
    QString title;
    QString note; ///< Under it; may be empty.

    friend bool operator==(const EmptyListText &, const EmptyListText &) = default;
};

/// Centred in \a list, a little above its middle.
void drawEmptyListText(QPainter &painter, const QRectF &list, const EmptyListText &text,
                       const SystemColors &colors);
