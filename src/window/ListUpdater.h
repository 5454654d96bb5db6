#pragma once

#include "window/HistoryListModel.h"

class ClipboardTableView;

/// Carries a new list of entries to the view with as little disturbance as possible: where the list
/// stands stays where it is, and a selected row keeps its entry for as long as that is listed.
class ListUpdater
{
public:
    /// Both must outlive the updater; \a model is the view's.
    ListUpdater(ClipboardTableView &tableView, HistoryListModel &model)
        : m_tableView(tableView)
        , m_model(model)
    {
    }

    void showItems(const ClipboardItemList &items);

private:
    void reloadItems(const ClipboardItemList &items);
    void updateItems(const ClipboardItemList &items, const ListDifference &difference);
    void selectItem(const QUuid &id);

    ClipboardTableView &m_tableView;
    HistoryListModel &m_model;
};
