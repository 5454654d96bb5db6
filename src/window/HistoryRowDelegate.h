#pragma once

#include "appearance/SystemColors.h"
#include "core/ClipboardItem.h"

#include <QAbstractItemDelegate>

class HistoryRowCache;
class RowPictures;
struct HistoryRow;
struct RowLayout;

/// What of a row's look its entry does not tell.
struct RowState
{
    enum class Star { Rest, Hovered, Pressed };

    bool isSelected = false;
    qreal groundOpacity = 0; ///< Of the ground that a selected row has.
    Star star = Star::Rest;
    qreal starScale = 1;
};

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

    /// Nothing is painted outside \a box.
    void paintRow(QPainter &painter, const QRect &box, const ClipboardItemPointer &item,
                  const RowState &state) const;

    /// The row at rest.
    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    bool helpEvent(QHelpEvent *event, QAbstractItemView *view, const QStyleOptionViewItem &option,
                   const QModelIndex &index) override;

private:
    void paintSelection(QPainter &painter, const QRectF &box, qreal opacity) const;
    void paintIcon(QPainter &painter, const QRectF &box, const ClipboardItem &item,
                   const SystemColors &colors, bool isSelected) const;
    void paintBadge(QPainter &painter, const QRectF &box, const ClipboardItem &item) const;
    void paintTexts(QPainter &painter, const RowLayout &layout, const HistoryRow &row,
                    const SystemColors &colors) const;
    void paintStar(QPainter &painter, const QRectF &box, const ClipboardItem &item,
                   const SystemColors &colors, const RowState &state) const;

    HistoryRowCache &m_rows;
    RowPictures &m_pictures;
    qreal m_selectionRadius;
    SystemColors m_colors;
};
