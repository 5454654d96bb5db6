#include "window/RowDeletion.h"

#include "core/ClipboardItemManager.h"
#include "window/ClipboardTableView.h"
#include "window/HistoryListModel.h"

#include <QPointer>

RowDeletion::RowDeletion(ClipboardTableView &tableView, const HistoryListModel &model,
                         ClipboardItemManager &itemManager)
    : m_tableView(tableView)
    , m_model(model)
    , m_itemManager(itemManager)
{
}

void RowDeletion::deleteSelectedRow()
{
    const int row = m_tableView.selectedRow();
    if (row < 0 || !m_tableView.acceptsInput())
        return;
    const bool isLast = row == m_model.rowCount() - 1;
    const int nextRow = isLast ? row - 1 : row; // Once the row is gone.
    const ClipboardItemPointer neighbour = m_model.items().value(isLast ? row - 1 : row + 1);
    const QUuid neighbourId = neighbour ? neighbour->id : QUuid();
    m_tableView.setAcceptsInput(false);
    removeRow(row, [this, neighbourId, nextRow] { finishSelected(neighbourId, nextRow); });
}

void RowDeletion::deleteRow(int row)
{
    removeRow(row, [] {});
}

void RowDeletion::removeRow(int row, const std::function<void()> &finish)
{
    const QUuid id = m_model.items().at(row)->id;
    const QPointer<RowDeletion> self(this);
    const auto leave = [self, finish] {
        if (!self)
            return;
        if (self->onRemoved)
            self->onRemoved();
        finish();
    };
    m_itemManager.removeItem(id, [self, id, leave] {
        if (self && self->fadeRow)
            self->fadeRow(id, leave);
        else
            leave();
    });
}

void RowDeletion::finishSelected(const QUuid &neighbourId, int nextRow)
{
    m_tableView.setAcceptsInput(true);
    const int count = m_model.rowCount();
    if (count == 0)
        return;
    // Rows may have come and gone meanwhile, so the number alone may be that of any entry.
    const auto neighbour = int(indexOfItem(m_model.items(), neighbourId));
    const int fallback = nextRow >= 0 && nextRow < count ? nextRow : 0;
    m_tableView.selectRowInPlace(neighbour >= 0 ? neighbour : fallback);
}
