#pragma once

#include "core/ClipboardItem.h"
#include "core/StoreError.h"

/// Keeps the history between runs. Used by one thread at a time.
///
/// Deleting is soft: a deleted entry becomes a tombstone, which loadItems() never returns and which
/// only hardDeleteItems() and purgeDeletedItems() remove for good.
class ClipboardHistoryStore
{
public:
    virtual ~ClipboardHistoryStore() = default;

    /// All live entries; empty if nothing was ever stored.
    /// \throws StoreError if a history exists but cannot be read; nothing is lost by trying.
    virtual ClipboardItemList loadItems() = 0;

    /// Inserts \a item, or replaces the record with its id unless that was updated later.
    /// \throws StoreError, and leaves the store as it was.
    virtual void upsertItem(const ClipboardItem &item) = 0;

    /// Turns the records into tombstones; an id without record gets a tombstone of its own.
    /// \throws StoreError, and leaves the store as it was.
    virtual void markItemsDeleted(const QList<QUuid> &ids) = 0;

    /// Removes records and tombstones for good; unknown ids are ignored.
    /// \throws StoreError, and leaves the store as it was.
    virtual void hardDeleteItems(const QList<QUuid> &ids) = 0;

    /// Removes every tombstone for good.
    /// \throws StoreError, and leaves the store as it was.
    virtual void purgeDeletedItems() = 0;

    /// Gives disk space back.
    /// \throws StoreError if that was not possible; the history is whole all the same.
    virtual void compactStorage() = 0;
};

/// The record that stands for a deleted entry that the store never knew.
ClipboardItem makeTombstone(const QUuid &id, Timestamp now);
