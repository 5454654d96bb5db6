#include "window/RowStars.h"

#include "window/ClipboardTableView.h"
#include "window/RowLayout.h"

#include <utility>

RowStars::RowStars(ClipboardTableView &view, Scheduler &scheduler, const Clock &clock)
    : m_view(view)
    , m_pop(scheduler, clock, [&view](const QUuid &id) { return view.updateRow(id); })
{
}

bool RowStars::press(QPoint position)
{
    const int row = rowAt(position);
    if (row < 0)
        return false;
    m_pressed = m_view.model()->index(row, 0);
    m_hoveredRow = row;
    update(row);
    return true;
}

bool RowStars::move(QPoint position, Qt::MouseButtons buttons)
{
    const int row = rowAt(position);
    if (m_pressed) {
        setHoveredRow(row == m_pressed->row() ? row : -1);
        return true;
    }
    setHoveredRow(buttons == Qt::NoButton ? row : -1);
    return false;
}

bool RowStars::release(QPoint position)
{
    if (!m_pressed)
        return false;
    const int row = m_pressed->row();
    m_pressed.reset();
    update(row);
    if (row >= 0 && rowAt(position) == row)
        click(row);
    return true;
}

void RowStars::click(int row)
{
    m_pop.start(m_view.items().at(row)->id);
    if (onClicked)
        onClicked(row);
}

RowState::Star RowStars::state(int row) const
{
    if (row != m_hoveredRow)
        return RowState::Star::Rest;
    const bool isPressed = m_pressed && m_pressed->row() == row;
    return isPressed ? RowState::Star::Pressed : RowState::Star::Hovered;
}

int RowStars::rowAt(QPoint position) const
{
    const QModelIndex index = m_view.indexAt(position);
    if (!index.isValid() || !RowLayout(m_view.visualRect(index)).star.contains(position))
        return -1;
    return index.row();
}

void RowStars::setHoveredRow(int row)
{
    if (row == m_hoveredRow)
        return;
    const int former = std::exchange(m_hoveredRow, row);
    update(former);
    update(row);
}

void RowStars::update(int row)
{
    if (m_view.model() && row >= 0)
        m_view.viewport()->update(RowLayout(m_view.rowBox(row)).star.toAlignedRect());
}
