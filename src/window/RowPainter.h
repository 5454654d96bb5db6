#pragma once

#include <QtGlobal>

class ClipboardTableView;
class HistoryRowDelegate;
class QPainter;
class QPixmap;
class QRect;
class QRectF;
class RowSelectionFade;
class RowStars;
class RowTransition;

/// Paints the rows that are in sight as they are seen at this moment, which is behind what is true:
/// on their way to a place, with a ground that comes or goes. How a row is drawn is the delegate's.
class RowPainter
{
public:
    /// All of them must outlive the painter.
    RowPainter(const ClipboardTableView &view, const RowSelectionFade &selectionFade,
               const RowStars &stars);

    /// Without one there must be no rows.
    void setDelegate(const HistoryRowDelegate *delegate) { m_delegate = delegate; }

    /// Without one every row is in its place.
    void setTransition(RowTransition *transition) { m_transition = transition; }
    RowTransition *transition() const { return m_transition; }

    /// Those that \a exposed, in the viewport, needs, and those that are no longer in the list.
    void paint(QPainter &painter, const QRect &exposed) const;

    /// The row as it is seen, in a place of its own.
    QPixmap picture(int row) const;

private:
    void paintVeil(QPainter &painter) const;
    void paintRows(QPainter &painter, const QRect &exposed) const;
    void paintRow(QPainter &painter, int row, const QRectF &box) const;

    const ClipboardTableView &m_view;
    const RowSelectionFade &m_selectionFade;
    const RowStars &m_stars;
    const HistoryRowDelegate *m_delegate = nullptr;
    RowTransition *m_transition = nullptr;
};
