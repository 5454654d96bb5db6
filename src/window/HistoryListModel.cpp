#include "window/HistoryListModel.h"

#include "window/HistoryRow.h"

HistoryListModel::HistoryListModel(HistoryRowCache &rows, QObject *parent)
    : QAbstractListModel(parent)
    , m_rows(rows)
{
}

int HistoryListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_items.size());
}

QVariant HistoryListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const ClipboardItemPointer &item = m_items.at(index.row());
    switch (role) {
    case Qt::DisplayRole: return m_rows.row(item).content;
    case Qt::AccessibleTextRole: return m_rows.spokenRow(item);
    default: return {};
    }
}

void HistoryListModel::reload(const ClipboardItemList &items)
{
    beginResetModel();
    m_items = items;
    endResetModel();
}

void HistoryListModel::update(const ClipboardItemList &items, const ListDifference &difference)
{
    // From the end, so that the indexes still to come stay right.
    const QList<qsizetype> &removed = difference.removedRows;
    for (qsizetype last = removed.size() - 1; last >= 0;) {
        qsizetype first = last;
        while (first > 0 && removed[first - 1] == removed[first] - 1)
            --first;
        removeRange(removed[first], removed[last]);
        last = first - 1;
    }
    const QList<qsizetype> &inserted = difference.insertedRows;
    for (qsizetype first = 0; first < inserted.size();) {
        qsizetype last = first;
        while (last + 1 < inserted.size() && inserted[last + 1] == inserted[last] + 1)
            ++last;
        insertRange(items, inserted[first], inserted[last]);
        first = last + 1;
    }
    m_items = items;
    for (const qsizetype row : difference.changedRows)
        emit dataChanged(index(int(row)), index(int(row)));
}

void HistoryListModel::replaceItem(int row, const ClipboardItemPointer &item)
{
    m_items[row] = item;
    emit dataChanged(index(row), index(row));
}

void HistoryListModel::announceAllChanged()
{
    if (!m_items.isEmpty())
        emit dataChanged(index(0), index(int(m_items.size()) - 1));
}

void HistoryListModel::removeRange(qsizetype first, qsizetype last)
{
    beginRemoveRows({}, int(first), int(last));
    m_items.remove(first, last - first + 1);
    endRemoveRows();
}

void HistoryListModel::insertRange(const ClipboardItemList &items, qsizetype first, qsizetype last)
{
    beginInsertRows({}, int(first), int(last));
    if (m_items.size() + last - first + 1 == items.size()) {
        // The last range: taking the whole list copies nothing.
        m_items = items;
        endInsertRows();
        return;
    }
    m_items.insert(first, last - first + 1, nullptr);
    std::copy(items.begin() + first, items.begin() + last + 1, m_items.begin() + first);
    endInsertRows();
}
