#pragma once

#include "core/ClipboardItem.h"
#include "persistence/SQLiteConnection.h"

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

/// The parts of a record that need not be in memory.
enum class StoredPart { Text, Html, Rtf };

/// Rich data of more bytes is read back from the database where it is asked for.
inline constexpr qsizetype kLongRichData = 256;

/// Reads long texts and rich data back from the database. Any thread.
///
/// It has connections of its own, so that nobody who reads waits for a commit, nor for somebody else
/// who reads something huge. It outlives the store for as long as an entry needs it.
class StoredParts : public std::enable_shared_from_this<StoredParts>
{
public:
    /// \throws StoreError if the database cannot be opened.
    StoredParts(const QString &storePath, SQLiteAccess access);
    ~StoredParts();

    /// Reads from the database as it is at \a storePath now.
    /// \throws StoreError if it cannot be opened; then everything stays as it was.
    void reopen(const QString &storePath, SQLiteAccess access);

    /// Where \a part of the record of \a item lies, as long as it is what \a item holds.
    std::shared_ptr<const ByteSource> source(const ClipboardItem &item, StoredPart part);

    /// Has the long parts of \a item leave memory, in all copies. Its record must be committed.
    void takeOver(const ClipboardItem &item);

    /// Absent if the record has gone, or has another hash than \a contentHash and that is not empty.
    std::optional<QByteArray> read(const QUuid &id, StoredPart part, const QByteArray &contentHash);

private:
    class Reader;
    class Loan;

    std::shared_ptr<Reader> takeReader();
    void giveBack(const std::shared_ptr<Reader> &reader);

    std::atomic<bool> m_hasFailed = false; ///< At the last reading.

    std::mutex m_mutex; ///< Guards everything below; nobody reads while holding it.
    std::condition_variable m_readerGivenBack;
    QString m_storePath;
    SQLiteAccess m_access = SQLiteAccess::ReadWrite;
    std::vector<std::shared_ptr<Reader>> m_readers; ///< All that read the database as it is now.
    std::vector<std::shared_ptr<Reader>> m_idleReaders;
};
