#include "window/RowPainter.h"

#include "window/ClipboardTableView.h"
#include "window/HistoryRowDelegate.h"
#include "window/RowLayout.h"
#include "window/RowSelectionFade.h"
#include "window/RowStars.h"
#include "window/RowTransition.h"

#include <QPainter>

#include <cmath>

RowPainter::RowPainter(const ClipboardTableView &view, const RowSelectionFade &selectionFade,
                       const RowStars &stars)
    : m_view(view)
    , m_selectionFade(selectionFade)
    , m_stars(stars)
{
}

void RowPainter::paint(QPainter &painter, const QRect &exposed) const
{
    if (m_transition)
        m_transition->paintDeparting(painter);
    if (m_view.items().isEmpty())
        return;
    if (m_view.selectedRow() < 0)
        paintVeil(painter);
    paintRows(painter, exposed);
}

QPixmap RowPainter::picture(int row) const
{
    const QSize size(m_view.viewport()->width(), kRowHeight);
    QPixmap picture(size * m_view.devicePixelRatio());
    picture.setDevicePixelRatio(m_view.devicePixelRatio());
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paintRow(painter, row, QRectF(QPointF(), size));
    return picture;
}

/// The ground of the first row, which Return pastes while none is selected.
void RowPainter::paintVeil(QPainter &painter) const
{
    const QRect first = m_view.rowBox(0);
    if (first.intersects(m_view.viewport()->rect()))
        m_delegate->paintVeil(painter, first);
}

void RowPainter::paintRows(QPainter &painter, const QRect &exposed) const
{
    const int reach = m_transition ? int(std::ceil(m_transition->reach())) : 0;
    const auto [first, last] = m_view.rowsInSight(reach);
    for (int row = first; row <= last; ++row) {
        RowTransition::Look look;
        if (m_transition)
            look = m_transition->look(m_view.items().at(row)->id);
        const QRectF box = QRectF(m_view.rowBox(row)).translated(0, look.offset);
        if (!box.intersects(exposed))
            continue;
        painter.setOpacity(look.opacity);
        paintRow(painter, row, box);
    }
}

void RowPainter::paintRow(QPainter &painter, int row, const QRectF &box) const
{
    const ClipboardItemPointer &item = m_view.items().at(row);
    const bool isSelected = row == m_view.selectedRow();
    const RowState state{.isSelected = isSelected,
                         .groundOpacity = m_selectionFade.opacity(item->id, isSelected),
                         .star = m_stars.state(row),
                         .starScale = m_stars.scale(item->id)};
    m_delegate->paintRow(painter, box.toRect(), item, state);
}
