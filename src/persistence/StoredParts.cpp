#include "persistence/StoredParts.h"

#include "core/StoreError.h"
#include "foundation/Log.h"
#include "persistence/ClipboardHistoryRecord.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

// A reader of the log waits for nobody but in rare moments of its upkeep. What was read is asked
// for again by nobody soon, so it is not cached here.
constexpr auto kConfigure = "PRAGMA busy_timeout = 250;"
                            "PRAGMA query_only = ON;"
                            "PRAGMA cache_size = -64;";

/// A person's search, what prepares the next one, and the store at its work.
constexpr size_t kMostReaders = 3;

/// The text and the rich data of a record change together with its hash, and this is the one that
/// tells them apart. Empty for other entries: their text never changes, but the hash of a file does,
/// with its bookmark.
QByteArray hashOfParts(const ClipboardItem &item)
{
    const bool isTextual = item.contentType == ClipboardContentType::Text
        || item.contentType == ClipboardContentType::Url;
    return isTextual ? item.contentHash : QByteArray();
}

class PartSource : public ByteSource
{
public:
    PartSource(std::shared_ptr<StoredParts> parts, const QUuid &id, StoredPart part,
               const QByteArray &contentHash)
        : m_parts(std::move(parts))
        , m_id(id)
        , m_contentHash(contentHash)
        , m_part(part)
    {
    }

    std::optional<QByteArray> read() const override
    {
        return m_parts->read(m_id, m_part, m_contentHash);
    }

private:
    std::shared_ptr<StoredParts> m_parts;
    QUuid m_id;
    QByteArray m_contentHash;
    StoredPart m_part;
};

} // namespace

/// Used by one thread at a time.
class StoredParts::Reader
{
public:
    Reader(const QString &storePath, SQLiteAccess access) : m_connection(storePath, access)
    {
        m_connection.execute(kConfigure);
    }

    std::optional<QByteArray> read(const QUuid &id, StoredPart part, const QByteArray &contentHash)
    {
        SQLiteStatement &row = selectPart(part);
        const SQLiteRun run(row);
        row.bindText(1, ClipboardHistoryRecord::storedId(id));
        if (!contentHash.isEmpty())
            row.bindText(2, contentHash);
        return row.step() ? std::optional(row.bytes(0).toByteArray()) : std::nullopt;
    }

private:
    SQLiteStatement &selectPart(StoredPart part)
    {
        auto &statement = m_selectPart[size_t(part)];
        if (!statement)
            statement.emplace(m_connection, ClipboardHistoryRecord::selectPartSql(part));
        return *statement;
    }

    SQLiteConnection m_connection;
    std::array<std::optional<SQLiteStatement>, 3> m_selectPart;
};

/// A reader for as long as somebody needs it.
class StoredParts::Loan
{
public:
    explicit Loan(StoredParts &parts) : m_parts(parts), m_reader(parts.takeReader()) {}
    ~Loan() { m_parts.giveBack(m_reader); }
    Loan(const Loan &) = delete;
    Loan &operator=(const Loan &) = delete;

    Reader *operator->() const { return m_reader.get(); }

private:
    StoredParts &m_parts;
    std::shared_ptr<Reader> m_reader;
};

StoredParts::StoredParts(const QString &storePath, SQLiteAccess access)
{
    reopen(storePath, access);
}

StoredParts::~StoredParts() = default;

void StoredParts::reopen(const QString &storePath, SQLiteAccess access)
{
    auto opened = std::make_shared<Reader>(storePath, access);
    const std::lock_guard lock(m_mutex);
    m_storePath = storePath;
    m_access = access;
    m_readers.assign({opened});
    m_idleReaders.assign({std::move(opened)});
    m_readerGivenBack.notify_one();
}

std::shared_ptr<const ByteSource> StoredParts::source(const ClipboardItem &item, StoredPart part)
{
    return std::make_shared<const PartSource>(shared_from_this(), item.id, part, hashOfParts(item));
}

void StoredParts::takeOver(const ClipboardItem &item)
{
    if (item.stringValue && item.stringValue->isLong())
        item.stringValue->longBytes().moveTo(source(item, StoredPart::Text));
    if (item.htmlRepresentation && item.htmlRepresentation->size() > kLongRichData)
        item.htmlRepresentation->moveTo(source(item, StoredPart::Html));
    if (item.rtfRepresentation && item.rtfRepresentation->size() > kLongRichData)
        item.rtfRepresentation->moveTo(source(item, StoredPart::Rtf));
}

std::optional<QByteArray> StoredParts::read(const QUuid &id, StoredPart part,
                                            const QByteArray &contentHash)
{
    try {
        auto bytes = Loan(*this)->read(id, part, contentHash);
        m_hasFailed = false;
        return bytes;
    } catch (const StoreError &error) {
        // A search may ask for thousands.
        if (!m_hasFailed.exchange(true))
            printLine(u"Failed to read clipboard item back: "_s + QString::fromUtf8(error.what()));
        return std::nullopt;
    }
}

std::shared_ptr<StoredParts::Reader> StoredParts::takeReader()
{
    std::unique_lock lock(m_mutex);
    if (m_idleReaders.empty() && m_readers.size() < kMostReaders) {
        try {
            m_readers.push_back(std::make_shared<Reader>(m_storePath, m_access));
            return m_readers.back();
        } catch (const StoreError &) {
            // Those that there are will do; one of them comes back.
        }
    }
    m_readerGivenBack.wait(lock, [this] { return !m_idleReaders.empty(); });
    auto reader = std::move(m_idleReaders.back());
    m_idleReaders.pop_back();
    return reader;
}

void StoredParts::giveBack(const std::shared_ptr<Reader> &reader)
{
    const std::lock_guard lock(m_mutex);
    // One that reads the database as it was ends here.
    if (std::ranges::find(m_readers, reader) == m_readers.end())
        return;
    m_idleReaders.push_back(reader);
    m_readerGivenBack.notify_one();
}
