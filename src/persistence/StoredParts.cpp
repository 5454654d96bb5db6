#include "persistence/StoredParts.h"

#include "core/StoreError.h"
#include "foundation/Log.h"
#include "persistence/ClipboardHistoryRecord.h"

#include <array>

using namespace Qt::StringLiterals;

namespace {

// A reader of the log waits for nobody but in rare moments of its upkeep. What was read is asked
// for again by nobody soon, so it is not cached here.
constexpr auto kConfigure = "PRAGMA busy_timeout = 250;"
                            "PRAGMA query_only = ON;"
                            "PRAGMA cache_size = -64;";

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

struct StoredParts::Impl
{
    Impl(const QString &storePath, SQLiteAccess access) : connection(storePath, access)
    {
        connection.execute(kConfigure);
    }

    SQLiteStatement &selectPart(StoredPart part)
    {
        auto &statement = m_selectPart[int(part)];
        if (!statement)
            statement.emplace(connection, ClipboardHistoryRecord::selectPartSql(part));
        return *statement;
    }

    SQLiteConnection connection;
    bool hasFailed = false;

private:
    std::array<std::optional<SQLiteStatement>, 3> m_selectPart;
};

StoredParts::StoredParts(const QString &storePath, SQLiteAccess access)
    : m_impl(std::make_unique<Impl>(storePath, access))
{
}

StoredParts::~StoredParts() = default;

void StoredParts::reopen(const QString &storePath, SQLiteAccess access)
{
    auto opened = std::make_unique<Impl>(storePath, access);
    const std::lock_guard lock(m_mutex);
    m_impl = std::move(opened);
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
    const std::lock_guard lock(m_mutex);
    try {
        SQLiteStatement &row = m_impl->selectPart(part);
        const SQLiteRun run(row);
        row.bindText(1, ClipboardHistoryRecord::storedId(id));
        if (!contentHash.isEmpty())
            row.bindText(2, contentHash);
        if (!row.step())
            return std::nullopt;
        m_impl->hasFailed = false;
        return row.bytes(0).toByteArray();
    } catch (const StoreError &error) {
        // A search may ask for thousands.
        if (!m_impl->hasFailed)
            printLine(u"Failed to read clipboard item back: "_s + QString::fromUtf8(error.what()));
        m_impl->hasFailed = true;
        return std::nullopt;
    }
}
