#pragma once

#include "window/ListDifference.h"

#include <QAbstractListModel>

class HistoryRowCache;

/// The entries that the list shows, row by row.
class HistoryListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    /// \a rows must outlive the model.
    explicit HistoryListModel(HistoryRowCache &rows, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;

    const ClipboardItemList &items() const { return m_items; }

    /// Shows \a items instead, as a new list.
    void reload(const ClipboardItemList &items);

    /// Shows \a items instead, row by row as \a difference says, so that what stands on a row that
    /// stays is told of it.
    void update(const ClipboardItemList &items, const ListDifference &difference);

    void replaceItem(int row, const ClipboardItemPointer &item);
    void announceAllChanged();

private:
    void removeRange(qsizetype first, qsizetype last);
    void insertRange(const ClipboardItemList &items, qsizetype first, qsizetype last);

    HistoryRowCache &m_rows;
    ClipboardItemList m_items;
};
