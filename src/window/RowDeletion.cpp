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
    const int lastRow = m_model.rowCount() - 1;
    const int nextRow = row == lastRow ? row - 1 : row;
    m_tableView.setAcceptsInput(false);
    removeRow(row, [this, nextRow] { finishSelected(nextRow); });
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

void RowDeletion::finishSelected(int nextRow)
{
    m_tableView.setAcceptsInput(true);
    const int count = m_model.rowCount();
    if (count > 0)
        m_tableView.selectRowInPlace(nextRow >= 0 && nextRow < count ? nextRow : 0);
}
