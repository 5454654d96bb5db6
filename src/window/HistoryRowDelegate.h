#pragma once

#include "appearance/SystemColors.h"

#include <QAbstractItemDelegate>

class HistoryRowCache;
class RowPictures;
struct ClipboardItem;
struct HistoryRow;
struct RowLayout;

/// Draws the rows of the list.
class HistoryRowDelegate : public QAbstractItemDelegate
{
    Q_OBJECT

public:
    /// \a rows and \a pictures must outlive the delegate. \a selectionRadius is that of the selected
    /// row's ground.
    HistoryRowDelegate(HistoryRowCache &rows, RowPictures &pictures, qreal selectionRadius,
                       QObject *parent = nullptr);

    void setColors(const SystemColors &colors) { m_colors = colors; }

    /// The ground of the row that Return pastes while none is selected.
    void paintVeil(QPainter &painter, const QRect &row) const;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

private:
    void paintSelection(QPainter &painter, const QRectF &box) const;
    void paintIcon(QPainter &painter, const QRectF &box, const ClipboardItem &item,
                   const SystemColors &colors, bool isSelected) const;
    void paintBadge(QPainter &painter, const QRectF &box, const ClipboardItem &item) const;
    void paintTexts(QPainter &painter, const RowLayout &layout, const HistoryRow &row,
                    const SystemColors &colors) const;
    void paintStar(QPainter &painter, const QRectF &box, const ClipboardItem &item,
                   const SystemColors &colors, const QWidget *view) const;

    HistoryRowCache &m_rows;
    RowPictures &m_pictures;
    qreal m_selectionRadius;
    SystemColors m_colors;
};
