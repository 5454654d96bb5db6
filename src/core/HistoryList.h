#pragma once

#include "core/ContentIndex.h"

/// The history in memory: newest first, with what it takes to keep it so without looking at every
/// entry for each copy.
class HistoryList
{
public:
    const ClipboardItemList &items() const { return m_items; }
    qsizetype favoriteCount() const { return m_favoriteCount; }

    /// Replaces everything by \a items, sorted newest first; equals keep their order.
    void assign(ClipboardItemList items);

    std::optional<qsizetype> indexOf(const QUuid &id) const;

    /// The index of the first entry that holds what \a item holds; absent if none does.
    std::optional<qsizetype> firstDuplicateIndex(const ClipboardItem &item) const;

    /// Puts \a item at its place, in front of entries of the same time.
    void insert(const ClipboardItemPointer &item);

    /// \a item must have the timestamp of the entry that it replaces.
    void replaceAt(qsizetype index, const ClipboardItemPointer &item);
    void removeAt(qsizetype index);

    /// Takes the oldest entries beyond \a capacity out; favourites neither count nor go. Returns
    /// what was taken, newest first.
    ClipboardItemList trim(qsizetype capacity);

private:
    void unshare();
    qsizetype placeOf(const ClipboardItem &item) const;
    qsizetype firstNotNewerThan(Timestamp time) const;
    void noteAdded(const ClipboardItem &item);
    void noteRemoved(const ClipboardItem &item);

    ClipboardItemList m_items;
    ContentIndex m_contents; ///< Of every element of m_items.
    qsizetype m_favoriteCount = 0;
};
