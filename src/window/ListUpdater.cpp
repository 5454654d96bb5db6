#include "window/ListUpdater.h"

#include "window/ClipboardTableView.h"
#include "window/RowLayout.h"

#include <QScrollBar>

#include <algorithm>
#include <cmath>

ListUpdater::ListUpdater(ClipboardTableView &tableView, HistoryListModel &model,
                         Scheduler &scheduler, const Clock &clock)
    : m_tableView(tableView)
    , m_model(model)
    , m_transition(tableView, model, scheduler, clock)
{
    m_tableView.setRowTransition(&m_transition);
}

ListUpdater::~ListUpdater()
{
    m_tableView.setRowTransition(nullptr);
}

void ListUpdater::showItems(const ClipboardItemList &items, Motion motion)
{
    const qsizetype oldCount = m_model.items().size();
    const qsizetype newCount = items.size();
    // The counts alone tell the least that changes, and often decide.
    if (chooseListUpdate(oldCount, newCount, oldCount - newCount, std::abs(oldCount - newCount))
        == ListUpdate::Reload) {
        reloadItems(items);
        return;
    }
    const ListDifference difference = listDifference(m_model.items(), items);
    const qsizetype removedCount = difference.removedRows.size();
    const qsizetype changeCount = removedCount + difference.insertedRows.size();
    if (chooseListUpdate(oldCount, newCount, removedCount, changeCount) == ListUpdate::Reload)
        reloadItems(items);
    else
        updateItems(items, difference, motion);
}

void ListUpdater::removeItem(qsizetype row)
{
    ClipboardItemList items = m_model.items();
    items.removeAt(row);
    if (m_tableView.selectedRow() == row)
        deselect();
    updateItems(items, {{row}, {}, {}}, Motion::Show);
}

void ListUpdater::reloadItems(const ClipboardItemList &items)
{
    const int selected = m_tableView.selectedRow();
    const QUuid selectedId = selected < 0 ? QUuid() : m_model.items().at(selected)->id;
    m_transition.finish();
    m_model.reload(items);
    if (!selectedId.isNull())
        selectItem(selectedId);
}

void ListUpdater::updateItems(const ClipboardItemList &items, const ListDifference &difference,
                              Motion motion)
{
    // Left alone, the view would select the neighbour of a current row that goes, selected or not.
    const QModelIndex current = m_tableView.currentIndex();
    QUuid movedId;
    if (current.isValid() && std::ranges::binary_search(difference.removedRows, current.row())) {
        if (m_tableView.selectedRow() == current.row())
            movedId = m_model.items().at(current.row())->id;
        deselect();
    }
    const bool isSameOrder = difference.removedRows.isEmpty() && difference.insertedRows.isEmpty();
    if (!isSameOrder && motion == Motion::Show) {
        m_transition.follow(difference, [&] { updateInSight(items, difference); });
    } else {
        if (!isSameOrder)
            m_transition.finish();
        m_model.update(items, difference);
    }
    if (!movedId.isNull())
        selectItem(movedId);
}

/// Scrolls so far that the rows in sight stay where they are, unless the list is at its top.
void ListUpdater::updateInSight(const ClipboardItemList &items, const ListDifference &difference)
{
    QScrollBar &scrollBar = *m_tableView.verticalScrollBar();
    const bool isAtTop = scrollBar.value() == 0;
    const QPersistentModelIndex kept = isAtTop ? QModelIndex() : firstStayingRow(difference);
    const int distance = scrollBar.value() - kept.row() * kRowHeight;
    m_model.update(items, difference);
    m_tableView.doItemsLayout(); // For the range of the scroll bar.
    if (kept.isValid())
        scrollBar.setValue(kept.row() * kRowHeight + distance);
}

/// The uppermost row in sight that stays in its place.
QModelIndex ListUpdater::firstStayingRow(const ListDifference &difference) const
{
    const auto [first, last] = m_tableView.rowsInSight();
    for (int row = first; row <= last; ++row) {
        if (!std::ranges::binary_search(difference.removedRows, row))
            return m_model.index(row);
    }
    return {};
}

/// Nothing is seen of it: the row leaves its place, and may be selected again elsewhere.
void ListUpdater::deselect()
{
    m_tableView.deselectAll();
    m_tableView.finishSelectionFade();
}

/// Selects the row of an entry, if it is listed, without moving the list.
void ListUpdater::selectItem(const QUuid &id)
{
    const qsizetype row = indexOfItem(m_model.items(), id);
    if (row >= 0)
        m_tableView.selectRowInPlace(int(row));
    m_tableView.finishSelectionFade();
}
