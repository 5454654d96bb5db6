#pragma once

#include <QRectF>

inline constexpr int kRowHeight = 72;

/// Where the parts of a row of the list stand.
struct RowLayout
{
    explicit RowLayout(const QRectF &row);

    QRectF selection;
    QRectF icon;
    QRectF badge; ///< Over the lower right corner of the icon.
    QRectF content; ///< The text is centred in it, as in the other boxes of texts.
    QRectF meta;
    QRectF time; ///< Right-aligned.
    QRectF star;
};
