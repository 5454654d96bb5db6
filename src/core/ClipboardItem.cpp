#include "core/ClipboardItem.h"

#include "foundation/Digest.h"
#include "foundation/TextTools.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

template <typename Enum>
struct RawName
{
    Enum value;
    QStringView name;
};

constexpr std::array kContentTypes{
    RawName<ClipboardContentType>{ClipboardContentType::Text, u"text"},
    RawName<ClipboardContentType>{ClipboardContentType::Image, u"image"},
    RawName<ClipboardContentType>{ClipboardContentType::File, u"file"},
    RawName<ClipboardContentType>{ClipboardContentType::Url, u"url"},
    RawName<ClipboardContentType>{ClipboardContentType::Mixed, u"mixed"},
};

constexpr std::array kSyncStatuses{
    RawName<SyncStatus>{SyncStatus::Local, u"local"},
    RawName<SyncStatus>{SyncStatus::Pending, u"pending"},
    RawName<SyncStatus>{SyncStatus::Synced, u"synced"},
    RawName<SyncStatus>{SyncStatus::Failed, u"failed"},
};

template <typename Table, typename Enum>
QString nameOf(const Table &table, Enum value)
{
    const auto row = std::ranges::find(table, value, [](const auto &r) { return r.value; });
    Q_ASSERT(row != table.end());
    return row->name.toString();
}

template <typename Table>
auto valueOf(const Table &table, QStringView name) -> std::optional<decltype(table[0].value)>
{
    const auto row = std::ranges::find(table, name, [](const auto &r) { return r.name; });
    if (row == table.end())
        return std::nullopt;
    return row->value;
}

/// Absent or empty bytes stand for nothing.
QByteArray digestOrNothing(const std::optional<LazyBytes> &bytes)
{
    return bytes && !bytes->isEmpty() ? sha256Hex(bytes->bytes()) : QByteArray();
}

QByteArray textHash(QByteArrayView typeName, const ClipboardItem &item)
{
    const QByteArray text
        = item.stringValue ? withLineFeeds(item.stringValue->utf8()) : QByteArray();
    Sha256 hash;
    hash.add(typeName);
    hash.add("|");
    hash.add(trimmedUtf8(text));
    hash.add("|");
    hash.add(digestOrNothing(item.htmlRepresentation));
    hash.add("|");
    hash.add(digestOrNothing(item.rtfRepresentation));
    return hash.hexDigest();
}

QByteArray imageHash(const ClipboardItem &item)
{
    if (item.imageDigest && !item.imageDigest->isEmpty())
        return sha256Hex("image|digest|" + *item.imageDigest);
    if (item.imageRepresentation)
        return sha256Hex("image|data|" + sha256Hex(*item.imageRepresentation));
    return sha256Hex("image|file|" + item.imageFileName.value_or(QString()).toUtf8());
}

QByteArray fileHash(const ClipboardItem &item)
{
    QStringList types;
    for (const QString &type : item.fileTypes)
        types.append(type.toLower());
    types.sort();
    const qsizetype bookmarkSize = item.fileBookmarkData ? item.fileBookmarkData->size() : 0;
    return sha256Hex("file|" + item.filePath.value_or(QString()).toUtf8() + '|'
                     + types.join(u',').toUtf8() + '|' + QByteArray::number(bookmarkSize));
}

QByteArray mixedHash(const ClipboardItem &item)
{
    const QByteArray text = item.stringValue ? item.stringValue->utf8() : QByteArray();
    return sha256Hex("mixed|" + text + '|' + item.filePath.value_or(QString()).toUtf8());
}

QString lineOf(const Utf8Text &text, qsizetype limit)
{
    if (!text.isLong())
        return singleLine(text.start(), limit);
    // Rows are drawn from the start alone, but for texts that begin with a page of blanks.
    if (const auto line = singleLineOfStart(text.start(), limit))
        return *line;
    return singleLine(text.utf8(), limit);
}

bool isSameImage(const ClipboardItem &one, const ClipboardItem &other)
{
    if (one.imageDigest && other.imageDigest)
        return *one.imageDigest == *other.imageDigest;
    if (one.imageRepresentation && other.imageRepresentation)
        return *one.imageRepresentation == *other.imageRepresentation;
    return one.imageFileName && other.imageFileName && *one.imageFileName == *other.imageFileName;
}

} // namespace

QString rawValue(ClipboardContentType type)
{
    return nameOf(kContentTypes, type);
}

QString rawValue(SyncStatus status)
{
    return nameOf(kSyncStatuses, status);
}

std::optional<ClipboardContentType> contentTypeFromRaw(QStringView raw)
{
    return valueOf(kContentTypes, raw);
}

std::optional<SyncStatus> syncStatusFromRaw(QStringView raw)
{
    return valueOf(kSyncStatuses, raw);
}

QString uuidString(const QUuid &id)
{
    return id.toString(QUuid::WithoutBraces).toUpper();
}

bool ClipboardItem::hasSameContent(const ClipboardItem &other) const
{
    // An entry that was not inserted yet may have no hash; two of them have nothing in common.
    if (!contentHash.isEmpty() && contentHash == other.contentHash)
        return true;
    if (contentType != other.contentType)
        return false;
    switch (contentType) {
    case ClipboardContentType::File: return filePath == other.filePath;
    case ClipboardContentType::Mixed:
        return stringValue == other.stringValue && filePath == other.filePath;
    case ClipboardContentType::Image: return isSameImage(*this, other);
    case ClipboardContentType::Text:
    case ClipboardContentType::Url:
        return stringValue == other.stringValue && htmlRepresentation == other.htmlRepresentation
            && rtfRepresentation == other.rtfRepresentation;
    }
    return false;
}

std::optional<QString> ClipboardItem::singleLinePreview(qsizetype limit) const
{
    if (!stringValue)
        return std::nullopt;
    const QString line = lineOf(*stringValue, limit);
    if (line.isEmpty())
        return std::nullopt;
    return line;
}

void ClipboardItem::markChanged(ContentHash refresh, Timestamp now)
{
    updatedAt = now;
    if (refresh == ContentHash::Refresh) {
        deletedAt.reset();
        contentHash = computeContentHash(*this);
    }
    markForSync();
}

void ClipboardItem::markForSync()
{
    if (!cloudRecordID && syncStatus == SyncStatus::Local)
        return;
    syncStatus = SyncStatus::Pending;
    lastSyncTime.reset();
}

ClipboardItem makeItem(ClipboardContentType type, Timestamp now)
{
    ClipboardItem item;
    item.id = QUuid::createUuid();
    item.timestamp = now;
    item.contentType = type;
    item.updatedAt = now;
    return item;
}

QByteArray computeContentHash(const ClipboardItem &item)
{
    switch (item.contentType) {
    case ClipboardContentType::Text: return textHash("text", item);
    case ClipboardContentType::Url: return textHash("url", item);
    case ClipboardContentType::Image: return imageHash(item);
    case ClipboardContentType::File: return fileHash(item);
    case ClipboardContentType::Mixed: return mixedHash(item);
    }
    return {};
}

std::optional<qsizetype> firstDuplicateIndex(const ClipboardItemList &items,
                                             const ClipboardItem &item)
{
    const auto found = std::ranges::find_if(items, [&item](const ClipboardItemPointer &element) {
        return element->hasSameContent(item);
    });
    if (found == items.end())
        return std::nullopt;
    return found - items.begin();
}

qsizetype indexOfItem(const ClipboardItemList &items, const QUuid &id)
{
    const auto found = std::ranges::find(items, id, [](const auto &item) { return item->id; });
    return found == items.end() ? -1 : found - items.begin();
}
