#pragma once

#include "core/ClipboardHistoryStore.h"

#include <memory>

class Clock;
class StoredParts;
enum class SQLiteAccess;

/// The normal store: each entry one row of an SQLite database.
///
/// What an operation has written survives the end of the process and of the machine. Operations
/// that find nothing to change write nothing.
///
/// A history that cannot be written, on a full or a read-only disk, is loaded all the same. Each
/// change then fails with the reason, until one finds that writing works again.
class SwiftDataClipboardHistoryStore : public ClipboardHistoryStore
{
public:
    /// Opens the database, or creates it for the user alone. \a clock must outlive the store.
    /// \throws StoreError if the file is no history that this version can read; it is left as it is.
    SwiftDataClipboardHistoryStore(const QString &storePath, const Clock &clock);
    ~SwiftDataClipboardHistoryStore() override;

    ClipboardItemList loadItems() override;
    void upsertItem(const ClipboardItem &item) override;
    void markItemsDeleted(const QList<QUuid> &ids) override;
    void hardDeleteItems(const QList<QUuid> &ids) override;
    void purgeDeletedItems() override;

    /// \throws SQLiteMaintenanceError
    void compactStorage() override;

private:
    struct Impl;

    void open(SQLiteAccess access);
    bool openForReading();
    Impl &writable();

    QString m_storePath;
    const Clock &m_clock;
    std::shared_ptr<StoredParts> m_parts;
    std::unique_ptr<Impl> m_impl;
};
