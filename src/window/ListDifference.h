#pragma once

#include "core/ClipboardItem.h"

/// What turns one list into another. Entries are the same if their ids are; one that changed its
/// place is removed and inserted.
struct ListDifference
{
    QList<qsizetype> removedRows; ///< Indexes in the old list, ascending.
    QList<qsizetype> insertedRows; ///< Indexes in the new list, ascending.
    QList<qsizetype> changedRows; ///< Indexes in the new list of entries that look different now.

    friend bool operator==(const ListDifference &, const ListDifference &) = default;
};

/// The smallest difference. No id may stand twice in a list.
ListDifference listDifference(const ClipboardItemList &before, const ClipboardItemList &after);

/// Where the entry of \a newRow, which is none of the inserted rows, stood before.
qsizetype oldRow(const ListDifference &difference, qsizetype newRow);

enum class ListUpdate { Reload, Animate };

/// Whether rows should come and go one by one or the list be shown anew at once.
/// \a changeCount counts removals and insertions together.
ListUpdate chooseListUpdate(qsizetype oldCount, qsizetype newCount, qsizetype removedCount,
                            qsizetype changeCount);
