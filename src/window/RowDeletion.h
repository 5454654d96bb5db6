#pragma once

#include <QObject>
#include <QUuid>

#include <functional>

class ClipboardItemManager;
class ClipboardTableView;
class HistoryListModel;

/// Takes entries out of the history and their rows out of the list.
///
/// While the selected row is being deleted the list takes no keys and presses, so that deletions
/// that are asked for in a row follow one after the other.
class RowDeletion : public QObject
{
    Q_OBJECT

public:
    /// All of them must outlive the object.
    RowDeletion(ClipboardTableView &tableView, const HistoryListModel &model,
                ClipboardItemManager &itemManager);

    /// Afterwards the row is selected that followed the deleted one, or if that was the last, the
    /// one before, wherever it is by then. The list does not scroll.
    void deleteSelectedRow();

    /// Leaves the selection to itself.
    void deleteRow(int row);

    /// Called when the entry is gone from the history, to show the list as it is then; may be empty.
    std::function<void()> onRemoved;

    /// Lets the row of an entry fade from sight, and calls \a done then. Without it rows go at once.
    std::function<void(const QUuid &id, const std::function<void()> &done)> fadeRow;

private:
    void removeRow(int row, const std::function<void()> &finish);
    void finishSelected(const QUuid &neighbourId, int nextRow);

    ClipboardTableView &m_tableView;
    const HistoryListModel &m_model;
    ClipboardItemManager &m_itemManager;
};
