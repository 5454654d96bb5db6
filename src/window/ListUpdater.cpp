#include "window/ListUpdater.h"

#include "window/ClipboardTableView.h"

#include <algorithm>

namespace {

/// More separate changes than this cost the view more than showing the list anew.
constexpr qsizetype kMostSingleChanges = 64;

} // namespace

void ListUpdater::showItems(const ClipboardItemList &items)
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
    if (chooseListUpdate(oldCount, newCount, removedCount, changeCount) == ListUpdate::Reload
        || changeCount > kMostSingleChanges)
        reloadItems(items);
    else
        updateItems(items, difference);
}

void ListUpdater::reloadItems(const ClipboardItemList &items)
{
    const int selected = m_tableView.selectedRow();
    const QUuid selectedId = selected < 0 ? QUuid() : m_model.items().at(selected)->id;
    m_model.reload(items);
    if (!selectedId.isNull())
        selectItem(selectedId);
}

void ListUpdater::updateItems(const ClipboardItemList &items,
                                               const ListDifference &difference)
{
    // Left alone, the view would select the neighbour of a selected row that goes.
    const int selected = m_tableView.selectedRow();
    QUuid movedId;
    if (selected >= 0 && std::ranges::binary_search(difference.removedRows, selected)) {
        movedId = m_model.items().at(selected)->id;
        m_tableView.deselectAll();
    }
    m_model.update(items, difference);
    if (!movedId.isNull())
        selectItem(movedId);
}

/// Selects the row of an entry, if it is listed, without moving the list.
void ListUpdater::selectItem(const QUuid &id)
{
    const qsizetype row = indexOfItem(m_model.items(), id);
    if (row >= 0)
        m_tableView.selectRowInPlace(int(row));
}
