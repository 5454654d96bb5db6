#include "persistence/SwiftDataClipboardHistoryStore.h"

#include "foundation/PrivateFiles.h"
#include "persistence/ClipboardHistoryRecord.h"
#include "persistence/SQLiteConnection.h"
#include "persistence/SQLiteMaintenance.h"
#include "persistence/StoredParts.h"
#include "platform/Clock.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

// A commit writes whole pages, so small pages keep the bytes written for a short text small. The
// size only counts when the file is created.
constexpr auto kBeforeFirstUse = "PRAGMA busy_timeout = 2000;"
                                 "PRAGMA page_size = 1024;";

// FULL syncs the log at each commit: a copy must survive a power cut. The log is carried over into
// the file, and cut, after some megabytes; the less often, the fewer pages are written twice.
// Deleted texts are wiped where that costs no further write; compaction removes the rest.
constexpr auto kConfigure = "PRAGMA journal_mode = WAL;"
                            "PRAGMA synchronous = FULL;"
                            "PRAGMA wal_autocheckpoint = 4000;"
                            "PRAGMA journal_size_limit = 4194304;"
                            "PRAGMA secure_delete = FAST;"
                            "PRAGMA cache_size = -512;";

/// Refuses what is not ours and what a later version wrote.
void requireKnownSchema(SQLiteConnection &connection)
{
    const qint64 version = connection.integer("PRAGMA user_version");
    if (version > ClipboardHistoryRecord::kSchemaVersion)
        throw StoreError("it was written by a newer version of the program");
    const bool isOurs = version == 0
        ? connection.integer("SELECT count(*) FROM sqlite_schema") == 0
        : version > 0 && ClipboardHistoryRecord::hasTable(connection);
    if (!isOurs)
        throw StoreError("it is the database of another program");
}

void createSchemaIfMissing(SQLiteConnection &connection)
{
    if (connection.integer("PRAGMA user_version") == ClipboardHistoryRecord::kSchemaVersion)
        return;
    SQLiteTransaction transaction(connection);
    ClipboardHistoryRecord::createTable(connection);
    transaction.commit();
}

std::unique_ptr<SQLiteConnection> openDatabase(const QString &path)
{
    if (!ensurePrivateFile(path))
        throw StoreError("the file cannot be created");
    // Other programs can have left them behind with other rights.
    closeToOthers(path + u"-wal"_s);
    closeToOthers(path + u"-shm"_s);

    auto connection = std::make_unique<SQLiteConnection>(path);
    connection->execute(kBeforeFirstUse);
    // What is not ours must not be touched, so this comes before the rest of the settings.
    requireKnownSchema(*connection);
    connection->execute(kConfigure);
    createSchemaIfMissing(*connection);
    return connection;
}

/// Opens what lies in the file alone, which is the whole history where no log is beside it.
std::unique_ptr<SQLiteConnection> openUnchangingDatabase(const QString &path)
{
    if (QFileInfo(path + u"-wal"_s).size() > 0)
        throw StoreError("what is in the log cannot be read");
    auto connection = std::make_unique<SQLiteConnection>(path, SQLiteAccess::Immutable);
    requireKnownSchema(*connection);
    return connection;
}

} // namespace

/// The connection with what is prepared on it.
struct SwiftDataClipboardHistoryStore::Impl
{
    Impl(const QString &storePath, SQLiteAccess access)
        : connection(access == SQLiteAccess::Immutable ? openUnchangingDatabase(storePath)
                                                       : openDatabase(storePath))
    {
    }

    std::unique_ptr<SQLiteConnection> connection;
    SQLiteStatement selectLive{*connection, ClipboardHistoryRecord::selectLiveSql()};
    SQLiteStatement upsert{*connection, ClipboardHistoryRecord::upsertSql()};
    SQLiteStatement markDeleted{*connection, ClipboardHistoryRecord::markDeletedSql()};
    SQLiteStatement hardDelete{*connection, "DELETE FROM ClipboardHistoryRecord WHERE id = :id"};
    SQLiteStatement purgeDeleted{*connection,
                                 "DELETE FROM ClipboardHistoryRecord WHERE deletedAt IS NOT NULL"};

    /// A page that cannot be read may be one that a write takes for free.
    void requireSound() const
    {
        if (connection->isDamaged())
            throw StoreError("the database is damaged, and is left as it is");
    }

    /// False if the row was updated later than \a item.
    bool store(const ClipboardItem &item)
    {
        const SQLiteRun run(upsert);
        ClipboardHistoryRecord::bindItem(upsert, item);
        upsert.step();
        return connection->changedRowCount() > 0;
    }

    /// False if there is no such row.
    bool markRowDeleted(const QUuid &id, Timestamp now)
    {
        const SQLiteRun run(markDeleted);
        markDeleted.bind(1, microsecondsSinceEpoch(now));
        markDeleted.bindText(2, ClipboardHistoryRecord::storedId(id));
        markDeleted.step();
        return connection->changedRowCount() > 0;
    }

    void deleteRow(const QUuid &id)
    {
        const SQLiteRun run(hardDelete);
        hardDelete.bindText(1, ClipboardHistoryRecord::storedId(id));
        hardDelete.step();
    }
};

SwiftDataClipboardHistoryStore::SwiftDataClipboardHistoryStore(const QString &storePath,
                                                               const Clock &clock)
    : m_storePath(storePath)
    , m_clock(clock)
{
    const auto fail = [&storePath](const StoreError &error) {
        throw StoreError("Failed to open the history " + storePath.toStdString() + ": "
                         + error.what());
    };
    try {
        open(SQLiteAccess::ReadWrite);
    } catch (const DatabaseBusyError &error) {
        fail(error); // Who reads past the lock of another program may read half of what it writes.
    } catch (const StoreError &error) {
        if (!openForReading())
            fail(error);
    }
}

SwiftDataClipboardHistoryStore::~SwiftDataClipboardHistoryStore() = default;

void SwiftDataClipboardHistoryStore::open(SQLiteAccess access)
{
    auto impl = std::make_unique<Impl>(m_storePath, access);
    if (m_parts)
        m_parts->reopen(m_storePath, access);
    else
        m_parts = std::make_shared<StoredParts>(m_storePath, access);
    m_impl = std::move(impl);
}

bool SwiftDataClipboardHistoryStore::openForReading()
{
    try {
        open(SQLiteAccess::Immutable);
        return true;
    } catch (const StoreError &) {
        return false; // The reason why it could not be opened for writing is the one to tell.
    }
}

SwiftDataClipboardHistoryStore::Impl &SwiftDataClipboardHistoryStore::writable()
{
    // Before it is opened anew, which forgets what was found.
    m_impl->requireSound();
    if (m_impl->connection->isReadOnly())
        open(SQLiteAccess::ReadWrite);
    return *m_impl;
}

ClipboardItemList SwiftDataClipboardHistoryStore::loadItems()
{
    ClipboardItemList items;
    {
        SQLiteStatement &row = m_impl->selectLive;
        const SQLiteRun run(row);
        ClipboardHistoryRecord::RowReader reader(m_parts);
        while (row.step()) {
            if (ClipboardItemPointer item = reader.item(row))
                items.append(std::move(item));
        }
    }
    // The whole history went through the page cache, and it is not read again.
    m_impl->connection->releaseMemory();
    return items;
}

void SwiftDataClipboardHistoryStore::upsertItem(const ClipboardItem &item)
{
    // One statement is a transaction of its own.
    if (writable().store(item))
        m_parts->takeOver(item);
}

void SwiftDataClipboardHistoryStore::markItemsDeleted(const QList<QUuid> &ids)
{
    if (ids.isEmpty())
        return;
    const Timestamp now = m_clock.now();
    Impl &impl = writable();
    SQLiteTransaction transaction(*impl.connection);
    for (const QUuid &id : ids) {
        if (!impl.markRowDeleted(id, now))
            impl.store(makeTombstone(id, now));
    }
    transaction.commit();
}

void SwiftDataClipboardHistoryStore::hardDeleteItems(const QList<QUuid> &ids)
{
    if (ids.isEmpty())
        return;
    Impl &impl = writable();
    SQLiteTransaction transaction(*impl.connection);
    for (const QUuid &id : ids)
        impl.deleteRow(id);
    transaction.commit();
}

void SwiftDataClipboardHistoryStore::purgeDeletedItems()
{
    SQLiteStatement &purgeDeleted = writable().purgeDeleted;
    const SQLiteRun run(purgeDeleted);
    purgeDeleted.step();
}

void SwiftDataClipboardHistoryStore::compactStorage()
{
    m_impl->requireSound();
    compactDatabase(m_storePath);
    try {
        // The rebuilt file is in the log until now; only this makes the file itself small.
        m_impl->connection->execute("PRAGMA wal_checkpoint(TRUNCATE)");
    } catch (const StoreError &) {
        // A reader in the way: a later checkpoint does it.
    }
}
