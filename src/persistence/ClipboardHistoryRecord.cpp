#include "persistence/ClipboardHistoryRecord.h"

#include "core/ReadBack.h"
#include "foundation/TextTools.h"
#include "persistence/SQLiteConnection.h"
#include "persistence/StoredParts.h"

#include <algorithm>
#include <array>

#include <nlohmann/json.hpp>

using namespace Qt::StringLiterals;

namespace {

/// Places in kColumnNames, and so in every row that is read; parameters are numbered one higher.
namespace Column {
enum : int {
    id,
    position,
    timestamp,
    contentTypeRaw,
    imageFileName,
    imageThumbnailFileName,
    imageDigest,
    filePath,
    fileBookmarkData,
    fileTypesJSON,
    tagsJSON,
    isFavorite,
    cloudRecordID,
    syncStatusRaw,
    lastSyncTime,
    sourceAppBundleID,
    isRemoteClipboard,
    updatedAt,
    contentHash,
    deletedAt,
    stringValue,
    htmlRepresentation,
    rtfRepresentation,
};
} // namespace Column

constexpr std::array kColumnNames{
    "id",
    "position",
    "timestamp",
    "contentTypeRaw",
    "imageFileName",
    "imageThumbnailFileName",
    "imageDigest",
    "filePath",
    "fileBookmarkData",
    "fileTypesJSON",
    "tagsJSON",
    "isFavorite",
    "cloudRecordID",
    "syncStatusRaw",
    "lastSyncTime",
    "sourceAppBundleID",
    "isRemoteClipboard",
    "updatedAt",
    "contentHash",
    "deletedAt",
    "stringValue",
    "htmlRepresentation",
    "rtfRepresentation",
};
static_assert(kColumnNames.size() == Column::rtfRepresentation + 1);

static_assert(ClipboardHistoryRecord::kSchemaVersion == 1);
// What may be long comes last, so that the rest of a row is read without passing through it.
constexpr auto kCreateTable = R"(
CREATE TABLE ClipboardHistoryRecord (
    id TEXT NOT NULL UNIQUE,
    position INTEGER NOT NULL,
    timestamp INTEGER NOT NULL,
    contentTypeRaw TEXT NOT NULL,
    imageFileName TEXT,
    imageThumbnailFileName TEXT,
    imageDigest TEXT,
    filePath TEXT,
    fileBookmarkData BLOB,
    fileTypesJSON BLOB NOT NULL,
    tagsJSON BLOB NOT NULL DEFAULT x'',
    isFavorite INTEGER NOT NULL,
    cloudRecordID TEXT,
    syncStatusRaw TEXT NOT NULL DEFAULT 'local',
    lastSyncTime INTEGER,
    sourceAppBundleID TEXT,
    isRemoteClipboard INTEGER,
    updatedAt INTEGER,
    contentHash TEXT,
    deletedAt INTEGER,
    stringValue TEXT,
    htmlRepresentation BLOB,
    rtfRepresentation BLOB
);
CREATE INDEX ClipboardHistoryRecord_loadOrder
    ON ClipboardHistoryRecord (timestamp) WHERE deletedAt IS NULL;
PRAGMA user_version = 1;
)";

// A row whose size changes is written anew as a whole, and a deletion adds a date of eight bytes.
// So the list of tags of a long live row ends in eight blanks, which mean nothing to JSON; the
// date takes their place, and the long text stays where it is.
constexpr QByteArrayView kRoomForDate = "        ";
constexpr qsizetype kLongRow = 4096;

constexpr auto kMarkDeleted = R"(
UPDATE ClipboardHistoryRecord
SET deletedAt = :now, updatedAt = :now,
    lastSyncTime = CASE WHEN cloudRecordID IS NULL AND syncStatusRaw = 'local'
                   THEN lastSyncTime END,
    syncStatusRaw = CASE WHEN cloudRecordID IS NULL AND syncStatusRaw = 'local'
                    THEN syncStatusRaw ELSE 'pending' END,
    tagsJSON = CASE WHEN deletedAt IS NULL AND substr(tagsJSON, -8) = x'2020202020202020'
               THEN substr(tagsJSON, 1, length(tagsJSON) - 8) ELSE tagsJSON END
WHERE id = :id
)";

/// "a, b, c", each name put into \a form in place of "%".
std::string columnList(const std::string &form, size_t firstColumn = 0,
                       size_t endColumn = kColumnNames.size())
{
    std::string list;
    for (size_t column = firstColumn; column < endColumn; ++column) {
        if (!list.empty())
            list += ", ";
        for (const char character : form) {
            if (character == '%')
                list += kColumnNames[column];
            else
                list += character;
        }
    }
    return list;
}

QByteArray jsonOf(const QStringList &strings)
{
    if (strings.isEmpty())
        return "[]";
    nlohmann::json array = nlohmann::json::array();
    for (const QString &string : strings)
        array.push_back(string.toStdString());
    return QByteArray::fromStdString(array.dump());
}

/// Anything but an array of strings is an empty list.
QStringList listOf(QByteArrayView json)
{
    const auto array = nlohmann::json::parse(json.begin(), json.end(), nullptr, false);
    if (!array.is_array())
        return {};
    QStringList strings;
    for (const nlohmann::json &element : array) {
        if (!element.is_string())
            return {};
        strings.append(decodedUtf8(QByteArray::fromStdString(element.get<std::string>())));
    }
    return strings;
}

bool isLong(const ClipboardItem &item)
{
    const qsizetype textSize = item.stringValue ? item.stringValue->byteCount() : 0;
    const qsizetype htmlSize = item.htmlRepresentation ? item.htmlRepresentation->size() : 0;
    const qsizetype rtfSize = item.rtfRepresentation ? item.rtfRepresentation->size() : 0;
    return textSize + htmlSize + rtfSize > kLongRow;
}

/// The bytes of \a column, or their number in place of many: that is known without reading them.
std::string bytesOrSizeSql(const std::string &column)
{
    return "CASE WHEN typeof(" + column + ") = 'blob' AND length(" + column + ") > "
        + std::to_string(kLongRichData) + " THEN length(" + column + ") ELSE CAST(" + column
        + " AS BLOB) END";
}

/// Sets parameters by column; what is absent stays null.
class RowBinder
{
public:
    explicit RowBinder(SQLiteStatement &statement) : m_statement(statement) {}

    void number(int column, qint64 value) { m_statement.bind(column + 1, value); }
    void utf8(int column, const QByteArray &text) { m_statement.bindText(column + 1, text); }

    void text(int column, const std::optional<QString> &value)
    {
        if (value)
            utf8(column, value->toUtf8());
    }

    void text(int column, const std::optional<Utf8Text> &value)
    {
        if (value)
            m_statement.bindText(column + 1, readBack(*value));
    }

    void bytes(int column, const std::optional<QByteArray> &value)
    {
        if (value)
            m_statement.bindBytes(column + 1, *value);
    }

    void bytes(int column, const std::optional<LazyBytes> &value)
    {
        if (value)
            m_statement.bindBytes(column + 1, readBack(*value));
    }

    void date(int column, const std::optional<Timestamp> &value)
    {
        if (value)
            number(column, microsecondsSinceEpoch(*value));
    }

    void list(int column, const QStringList &strings, QByteArrayView blanks = {})
    {
        m_statement.bindBytes(column + 1, jsonOf(strings).append(blanks));
    }

private:
    SQLiteStatement &m_statement;
};

std::optional<QByteArray> optionalBytes(const SQLiteStatement &row, int column)
{
    if (row.isNull(column))
        return std::nullopt;
    return row.bytes(column).toByteArray();
}

std::optional<QString> optionalText(const SQLiteStatement &row, int column)
{
    if (row.isNull(column))
        return std::nullopt;
    return decodedUtf8(row.bytes(column).toByteArray());
}

/// Within the calendar, so that nobody who reckons with it gets beyond the range of the type.
Timestamp date(const SQLiteStatement &row, int column)
{
    constexpr Timestamp kFirst = std::chrono::sys_days(std::chrono::year(0) / 1 / 1);
    constexpr Timestamp kEnd = std::chrono::sys_days(std::chrono::year(10'000) / 1 / 1);
    return std::clamp(timestampFromMicroseconds(row.integer(column)), kFirst,
                      kEnd - std::chrono::microseconds(1));
}

std::optional<Timestamp> optionalDate(const SQLiteStatement &row, int column)
{
    if (row.isNull(column))
        return std::nullopt;
    return date(row, column);
}

int columnOf(StoredPart part)
{
    switch (part) {
    case StoredPart::Text: return Column::stringValue;
    case StoredPart::Html: return Column::htmlRepresentation;
    case StoredPart::Rtf: return Column::rtfRepresentation;
    }
    return -1;
}

} // namespace

namespace ClipboardHistoryRecord {

bool hasTable(SQLiteConnection &connection)
{
    return connection.integer("SELECT count(*) FROM sqlite_schema"
                              " WHERE name = 'ClipboardHistoryRecord'")
        > 0;
}

void createTable(SQLiteConnection &connection)
{
    connection.execute(kCreateTable);
}

std::string selectLiveSql()
{
    return "SELECT " + columnList("%", 0, Column::htmlRepresentation) + ", "
        + bytesOrSizeSql(kColumnNames[Column::htmlRepresentation]) + ", "
        + bytesOrSizeSql(kColumnNames[Column::rtfRepresentation])
        + " FROM ClipboardHistoryRecord WHERE deletedAt IS NULL ORDER BY timestamp DESC";
}

std::string selectPartSql(StoredPart part)
{
    const auto column = std::string(kColumnNames[columnOf(part)]);
    return "SELECT " + column + " FROM ClipboardHistoryRecord"
        " WHERE id = :id AND (:contentHash IS NULL OR contentHash = :contentHash)";
}

std::string upsertSql()
{
    return "INSERT INTO ClipboardHistoryRecord (" + columnList("%") + ") VALUES ("
        + columnList(":%") + ") ON CONFLICT (id) DO UPDATE SET "
        + columnList("% = excluded.%", Column::position)
        + " WHERE excluded.updatedAt >= CAST(coalesce(ClipboardHistoryRecord.updatedAt,"
          " ClipboardHistoryRecord.timestamp) AS INTEGER)";
}

std::string markDeletedSql()
{
    return kMarkDeleted;
}

void bindItem(SQLiteStatement &statement, const ClipboardItem &item)
{
    RowBinder row(statement);
    row.utf8(Column::id, storedId(item.id));
    row.number(Column::position, 0); // The order of the history is that of the timestamps.
    row.date(Column::timestamp, item.timestamp);
    row.utf8(Column::contentTypeRaw, rawValue(item.contentType).toUtf8());
    row.text(Column::stringValue, item.stringValue);
    row.bytes(Column::htmlRepresentation, item.htmlRepresentation);
    row.bytes(Column::rtfRepresentation, item.rtfRepresentation);
    row.text(Column::imageFileName, item.imageFileName);
    row.text(Column::imageThumbnailFileName, item.imageThumbnailFileName);
    if (item.imageDigest)
        row.utf8(Column::imageDigest, *item.imageDigest);
    row.text(Column::filePath, item.filePath);
    row.bytes(Column::fileBookmarkData, item.fileBookmarkData);
    row.list(Column::fileTypesJSON, item.fileTypes);
    const bool needsRoom = isLong(item) && !item.deletedAt;
    row.list(Column::tagsJSON, item.tags, needsRoom ? kRoomForDate : QByteArrayView());
    row.number(Column::isFavorite, item.isFavorite);
    row.text(Column::cloudRecordID, item.cloudRecordID);
    row.utf8(Column::syncStatusRaw, rawValue(item.syncStatus).toUtf8());
    row.date(Column::lastSyncTime, item.lastSyncTime);
    row.text(Column::sourceAppBundleID, item.sourceAppBundleID);
    row.number(Column::isRemoteClipboard, item.isRemoteClipboard);
    row.date(Column::updatedAt, item.updatedAt);
    row.utf8(Column::contentHash, item.contentHash);
    row.date(Column::deletedAt, item.deletedAt);
}

QByteArray storedId(const QUuid &id)
{
    return id.toByteArray(QUuid::WithoutBraces).toUpper();
}

ClipboardItemPointer RowReader::item(const SQLiteStatement &row)
{
    const auto type = contentTypeFromRaw(sharedText(row, Column::contentTypeRaw).value_or(u""_s));
    const QUuid id = QUuid::fromString(QLatin1StringView(row.bytes(Column::id)));
    if (!type || id.isNull())
        return nullptr;

    const auto item = std::make_shared<ClipboardItem>();
    item->id = id;
    item->timestamp = date(row, Column::timestamp);
    item->contentType = *type;
    item->imageFileName = optionalText(row, Column::imageFileName);
    item->imageThumbnailFileName = optionalText(row, Column::imageThumbnailFileName);
    item->imageDigest = optionalBytes(row, Column::imageDigest);
    item->filePath = optionalText(row, Column::filePath);
    item->fileBookmarkData = optionalBytes(row, Column::fileBookmarkData);
    item->fileTypes = sharedList(row, Column::fileTypesJSON);
    item->tags = sharedList(row, Column::tagsJSON);
    item->isFavorite = row.integer(Column::isFavorite) != 0;
    item->cloudRecordID = optionalText(row, Column::cloudRecordID);
    item->syncStatus
        = syncStatusFromRaw(sharedText(row, Column::syncStatusRaw).value_or(u""_s))
              .value_or(SyncStatus::Local);
    item->lastSyncTime = optionalDate(row, Column::lastSyncTime);
    item->sourceAppBundleID = sharedText(row, Column::sourceAppBundleID);
    item->isRemoteClipboard = row.integer(Column::isRemoteClipboard) != 0;
    item->updatedAt = optionalDate(row, Column::updatedAt).value_or(item->timestamp);
    item->deletedAt = optionalDate(row, Column::deletedAt);
    item->contentHash = row.bytes(Column::contentHash).toByteArray();
    readParts(row, *item);
    if (item->contentHash.isEmpty())
        item->contentHash = computeContentHash(*item);
    return item;
}

void RowReader::readParts(const SQLiteStatement &row, ClipboardItem &item) const
{
    if (!row.isNull(Column::stringValue)) {
        const QByteArrayView utf8 = row.bytes(Column::stringValue);
        if (utf8.size() > Utf8Text::kLongText && utf8.isValidUtf8())
            item.stringValue = Utf8Text::elsewhere(utf8, m_parts->source(item, StoredPart::Text));
        else
            item.stringValue = Utf8Text::fromUtf8(utf8.toByteArray());
    }
    const auto richData = [&](StoredPart part) -> std::optional<LazyBytes> {
        const int column = columnOf(part);
        if (row.isInteger(column))
            return LazyBytes::elsewhere(qsizetype(row.integer(column)),
                                        m_parts->source(item, part));
        return optionalBytes(row, column);
    };
    item.htmlRepresentation = richData(StoredPart::Html);
    item.rtfRepresentation = richData(StoredPart::Rtf);
}

std::optional<QString> RowReader::sharedText(const SQLiteStatement &row, int column)
{
    if (row.isNull(column))
        return std::nullopt;
    const QByteArrayView utf8 = row.bytes(column);
    const auto known = m_texts.constFind(QByteArray::fromRawData(utf8.data(), utf8.size()));
    if (known != m_texts.constEnd())
        return *known;
    return *m_texts.insert(utf8.toByteArray(), decodedUtf8(utf8.toByteArray()));
}

QStringList RowReader::sharedList(const SQLiteStatement &row, int column)
{
    const QByteArrayView json = row.bytes(column);
    if (json.isEmpty() || json == "[]")
        return {};
    const auto known = m_lists.constFind(QByteArray::fromRawData(json.data(), json.size()));
    if (known != m_lists.constEnd())
        return *known;
    return *m_lists.insert(json.toByteArray(), listOf(json));
}

} // namespace ClipboardHistoryRecord
