#pragma once

#include "window/HistoryListModel.h"
#include "window/RowTransition.h"

class ClipboardTableView;

/// Carries a new list of entries to the view with as little disturbance as possible. A selected row
/// keeps its entry for as long as that is listed. At its top the list stays at the top, so that a
/// new entry is seen; scrolled away from it, the rows in sight stay where they are.
class ListUpdater
{
public:
    enum class Motion {
        Skip, ///< For what a person narrows: the whole answer is there with the first frame.
        Show, ///< For single entries that come and go.
    };

    /// Both must outlive the updater, and what they are made of too; \a model is the view's.
    ListUpdater(ClipboardTableView &tableView, HistoryListModel &model, Scheduler &scheduler,
                const Clock &clock);
    ~ListUpdater();

    void showItems(const ClipboardItemList &items, Motion motion);

    /// Takes one row out. Selects nothing in its place.
    void removeItem(qsizetype row);

    RowTransition &transition() { return m_transition; }

private:
    void reloadItems(const ClipboardItemList &items);
    void updateItems(const ClipboardItemList &items, const ListDifference &difference,
                     Motion motion);
    void updateInSight(const ClipboardItemList &items, const ListDifference &difference);
    QModelIndex firstStayingRow(const ListDifference &difference) const;
    void deselect();
    void selectItem(const QUuid &id);

    ClipboardTableView &m_tableView;
    HistoryListModel &m_model;
    RowTransition m_transition;
};
