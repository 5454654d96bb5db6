#include "persistence/JSONClipboardHistoryStore.h"

#include "core/ClipboardItemJson.h"
#include "foundation/PrivateFiles.h"
#include "platform/Clock.h"

#include <QFile>
#include <QHash>
#include <QSet>

#include <algorithm>

#include <nlohmann/json.hpp>

namespace {

QList<ClipboardItem> decoded(const QByteArray &bytes)
{
    const auto array = nlohmann::ordered_json::parse(bytes.begin(), bytes.end());
    if (!array.is_array())
        throw StoreError("there is no array");
    QList<ClipboardItem> records;
    records.reserve(qsizetype(array.size()));
    for (const auto &element : array)
        records.append(clipboardItemFromJson(element));
    return records;
}

std::string encoded(const QList<ClipboardItem> &records)
{
    auto array = nlohmann::ordered_json::array();
    for (const ClipboardItem &record : records)
        array.push_back(toJson(record));
    return array.dump();
}

} // namespace

JSONClipboardHistoryStore::JSONClipboardHistoryStore(QString filePath, const Clock &clock)
    : m_filePath(std::move(filePath))
    , m_clock(clock)
{
}

ClipboardItemList JSONClipboardHistoryStore::loadItems()
{
    ClipboardItemList items;
    for (const ClipboardItem &record : read()) {
        if (!record.deletedAt)
            items.append(std::make_shared<const ClipboardItem>(record));
    }
    return items;
}

void JSONClipboardHistoryStore::upsertItem(const ClipboardItem &item)
{
    QList<ClipboardItem> records = read();
    const auto record = std::ranges::find(records, item.id, &ClipboardItem::id);
    if (record == records.end())
        records.append(item);
    else if (item.updatedAt < record->updatedAt)
        return;
    else
        *record = item;
    write(records);
}

void JSONClipboardHistoryStore::markItemsDeleted(const QList<QUuid> &ids)
{
    if (ids.isEmpty())
        return;
    QList<ClipboardItem> records = read();
    QHash<QUuid, qsizetype> indexes;
    indexes.reserve(records.size());
    for (qsizetype index = 0; index < records.size(); ++index)
        indexes.insert(records.at(index).id, index);

    const Timestamp now = m_clock.now();
    for (const QUuid &id : ids) {
        const auto index = indexes.constFind(id);
        if (index == indexes.constEnd()) {
            records.append(makeTombstone(id, now));
            continue;
        }
        ClipboardItem &record = records[*index];
        record.markChanged(ClipboardItem::ContentHash::Keep, now);
        record.deletedAt = now;
    }
    write(records);
}

void JSONClipboardHistoryStore::hardDeleteItems(const QList<QUuid> &ids)
{
    if (ids.isEmpty())
        return;
    const QSet<QUuid> deleted(ids.begin(), ids.end());
    QList<ClipboardItem> records = read();
    records.removeIf([&](const ClipboardItem &record) { return deleted.contains(record.id); });
    write(records);
}

void JSONClipboardHistoryStore::purgeDeletedItems()
{
    QList<ClipboardItem> records = read();
    records.removeIf([](const ClipboardItem &record) { return record.deletedAt.has_value(); });
    write(records);
}

QList<ClipboardItem> JSONClipboardHistoryStore::read() const
{
    QFile file(m_filePath);
    if (!file.exists())
        return {};
    const auto fail = [this](const std::string &reason) {
        throw StoreError("Failed to read " + m_filePath.toStdString() + ": " + reason);
    };
    if (!file.open(QIODevice::ReadOnly))
        fail(file.errorString().toStdString());
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        fail(file.errorString().toStdString());
    try {
        return decoded(bytes);
    } catch (const std::exception &error) {
        fail(error.what());
    }
    return {};
}

void JSONClipboardHistoryStore::write(const QList<ClipboardItem> &records) const
{
    // Encoded first: what cannot be encoded must not cost what is on disk.
    const std::string bytes = encoded(records);
    QFile file(m_filePath);
    const bool isWritten = ensurePrivateFile(m_filePath)
        && file.open(QIODevice::WriteOnly | QIODevice::Truncate)
        && file.write(bytes.data(), qint64(bytes.size())) == qint64(bytes.size()) && file.flush();
    if (!isWritten)
        throw StoreError("Failed to write " + m_filePath.toStdString() + ": "
                         + file.errorString().toStdString());
}
