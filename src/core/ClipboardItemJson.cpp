#include "core/ClipboardItemJson.h"

#include "core/ReadBack.h"
#include "foundation/TextTools.h"

#include <QDateTime>

#include <nlohmann/json.hpp>

using namespace Qt::StringLiterals;
using Json = nlohmann::ordered_json;

namespace {

std::string text(const QString &string)
{
    return string.toStdString();
}

std::string date(Timestamp time)
{
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time).time_since_epoch();
    const QString date
        = QDateTime::fromSecsSinceEpoch(seconds.count(), Qt::UTC).toString(Qt::ISODate);
    if (date.size() != "2026-01-01T00:00:00Z"_L1.size())
        throw StoreError("a date is out of range");
    return date.toStdString();
}

Json list(const QStringList &strings)
{
    Json array = Json::array();
    for (const QString &string : strings)
        array.push_back(text(string));
    return array;
}

void addText(Json &object, const char *key, const std::optional<QString> &value)
{
    if (value)
        object[key] = text(*value);
}

void addBytes(Json &object, const char *key, const std::optional<QByteArray> &value)
{
    if (value)
        object[key] = value->toBase64().toStdString();
}

void addBytes(Json &object, const char *key, const std::optional<LazyBytes> &value)
{
    if (value)
        object[key] = readBack(*value).toBase64().toStdString();
}

void addDate(Json &object, const char *key, const std::optional<Timestamp> &value)
{
    if (value)
        object[key] = date(*value);
}

[[noreturn]] void refuse(const char *key, const char *complaint)
{
    throw StoreError("'" + std::string(key) + "' " + complaint);
}

/// The decimal number of the two or four digits at \a position; -1 if they are no digits.
int digits(QByteArrayView bytes, qsizetype position, qsizetype count)
{
    int number = 0;
    for (const char digit : bytes.sliced(position, count)) {
        if (digit < '0' || digit > '9')
            return -1;
        number = number * 10 + (digit - '0');
    }
    return number;
}

/// The offset of "Z" or "+hh:mm".
std::optional<std::chrono::minutes> zoneOffset(QByteArrayView zone)
{
    if (zone == "Z")
        return std::chrono::minutes(0);
    if (zone.size() != 6 || (zone[0] != '+' && zone[0] != '-') || zone[3] != ':')
        return std::nullopt;
    const int hours = digits(zone, 1, 2);
    const int minutes = digits(zone, 4, 2);
    if (hours < 0 || hours > 23 || minutes < 0 || minutes > 59)
        return std::nullopt;
    const auto offset = std::chrono::minutes(hours * 60 + minutes);
    return zone[0] == '-' ? -offset : offset;
}

/// Internet date-time with whole seconds, as "2026-04-11T09:30:00Z"; nothing more lenient, so that a
/// file of another form is refused rather than misread.
std::optional<Timestamp> parsedDate(QByteArrayView form)
{
    if (form.size() < 20 || form[4] != '-' || form[7] != '-' || form[10] != 'T' || form[13] != ':'
        || form[16] != ':')
        return std::nullopt;
    const int year = digits(form, 0, 4);
    const int month = digits(form, 5, 2);
    const int day = digits(form, 8, 2);
    const int hour = digits(form, 11, 2);
    const int minute = digits(form, 14, 2);
    const int second = digits(form, 17, 2);
    if (year < 0 || month < 0 || day < 0)
        return std::nullopt;
    const std::chrono::year_month_day date{std::chrono::year(year),
                                           std::chrono::month(unsigned(month)),
                                           std::chrono::day(unsigned(day))};
    const auto offset = zoneOffset(form.sliced(19));
    const bool isTime
        = hour >= 0 && hour < 24 && minute >= 0 && minute < 60 && second >= 0 && second < 60;
    if (!date.ok() || !isTime || !offset)
        return std::nullopt;
    return Timestamp(std::chrono::sys_days(date)) + std::chrono::hours(hour)
        + std::chrono::minutes(minute) + std::chrono::seconds(second) - *offset;
}

/// Reads the fields of one JSON object. A null counts as missing.
class FieldReader
{
public:
    explicit FieldReader(const Json &object) : m_object(object)
    {
        if (!object.is_object())
            throw StoreError("an entry is no object");
    }

    std::optional<QByteArray> utf8(const char *key) const
    {
        const Json *value = find(key);
        if (!value)
            return std::nullopt;
        if (!value->is_string())
            refuse(key, "is no string");
        const auto &string = value->get_ref<const std::string &>();
        return QByteArray(string.data(), qsizetype(string.size()));
    }

    std::optional<QString> string(const char *key) const
    {
        const auto bytes = utf8(key);
        return bytes ? std::optional(decodedUtf8(*bytes)) : std::nullopt;
    }

    std::optional<QByteArray> bytes(const char *key) const
    {
        const auto base64 = utf8(key);
        if (!base64)
            return std::nullopt;
        const auto result
            = QByteArray::fromBase64Encoding(*base64, QByteArray::AbortOnBase64DecodingErrors);
        if (!result)
            refuse(key, "is no Base64");
        return *result;
    }

    std::optional<Timestamp> date(const char *key) const
    {
        const auto form = utf8(key);
        if (!form)
            return std::nullopt;
        const auto time = parsedDate(*form);
        if (!time)
            refuse(key, "is no date");
        return time;
    }

    bool boolean(const char *key) const
    {
        const Json *value = find(key);
        if (!value)
            return false;
        if (!value->is_boolean())
            refuse(key, "is no boolean");
        return value->get<bool>();
    }

    QStringList strings(const char *key) const
    {
        const Json *value = find(key);
        if (!value)
            return {};
        if (!value->is_array())
            refuse(key, "is no array");
        QStringList strings;
        for (const Json &element : *value) {
            if (!element.is_string())
                refuse(key, "holds something that is no string");
            strings.append(decodedUtf8(QByteArray::fromStdString(element.get<std::string>())));
        }
        return strings;
    }

    template <typename T>
    static T required(const char *key, std::optional<T> value)
    {
        if (!value)
            refuse(key, "is missing");
        return *std::move(value);
    }

private:
    const Json *find(const char *key) const
    {
        const auto field = m_object.find(key);
        return field == m_object.end() || field->is_null() ? nullptr : &*field;
    }

    const Json &m_object;
};

QUuid requiredId(const FieldReader &fields)
{
    const QByteArray form = FieldReader::required("id", fields.utf8("id"));
    const QUuid id = QUuid::fromString(QLatin1StringView(form));
    // Nothing but the plain form; the id of zeros is an id like any other.
    if (form.toLower() != id.toByteArray(QUuid::WithoutBraces))
        refuse("id", "is no UUID");
    return id;
}

ClipboardContentType requiredContentType(const FieldReader &fields)
{
    const QString raw = FieldReader::required("contentType", fields.string("contentType"));
    const auto type = contentTypeFromRaw(raw);
    if (!type)
        refuse("contentType", "is unknown");
    return *type;
}

std::optional<Utf8Text> optionalText(std::optional<QByteArray> utf8)
{
    if (!utf8)
        return std::nullopt;
    return Utf8Text::fromUtf8(*std::move(utf8));
}

} // namespace

Json toJson(const ClipboardItem &item)
{
    Json object;
    object["id"] = text(uuidString(item.id));
    object["timestamp"] = date(item.timestamp);
    object["contentType"] = text(rawValue(item.contentType));
    if (item.stringValue)
        object["stringValue"] = readBack(*item.stringValue).toStdString();
    addBytes(object, "htmlRepresentation", item.htmlRepresentation);
    addBytes(object, "rtfRepresentation", item.rtfRepresentation);
    addText(object, "imageFileName", item.imageFileName);
    addText(object, "imageThumbnailFileName", item.imageThumbnailFileName);
    if (item.imageDigest)
        object["imageDigest"] = item.imageDigest->toStdString();
    addText(object, "filePath", item.filePath);
    addBytes(object, "fileBookmarkData", item.fileBookmarkData);
    object["fileTypes"] = list(item.fileTypes);
    object["isFavorite"] = item.isFavorite;
    addText(object, "cloudRecordID", item.cloudRecordID);
    object["syncStatus"] = text(rawValue(item.syncStatus));
    addDate(object, "lastSyncTime", item.lastSyncTime);
    addText(object, "sourceAppBundleID", item.sourceAppBundleID);
    object["isRemoteClipboard"] = item.isRemoteClipboard;
    object["updatedAt"] = date(item.updatedAt);
    object["contentHash"] = item.contentHash.toStdString();
    addDate(object, "deletedAt", item.deletedAt);
    object["tags"] = list(item.tags);
    return object;
}

ClipboardItem clipboardItemFromJson(const Json &object)
{
    const FieldReader fields(object);
    ClipboardItem item;
    item.id = requiredId(fields);
    item.timestamp = FieldReader::required("timestamp", fields.date("timestamp"));
    item.contentType = requiredContentType(fields);
    item.stringValue = optionalText(fields.utf8("stringValue"));
    item.htmlRepresentation = fields.bytes("htmlRepresentation");
    item.rtfRepresentation = fields.bytes("rtfRepresentation");
    item.imageFileName = fields.string("imageFileName");
    item.imageThumbnailFileName = fields.string("imageThumbnailFileName");
    item.imageDigest = fields.utf8("imageDigest");
    item.filePath = fields.string("filePath");
    item.fileBookmarkData = fields.bytes("fileBookmarkData");
    item.fileTypes = fields.strings("fileTypes");
    item.isFavorite = fields.boolean("isFavorite");
    item.cloudRecordID = fields.string("cloudRecordID");
    item.syncStatus = syncStatusFromRaw(fields.string("syncStatus").value_or(QString()))
                          .value_or(SyncStatus::Local);
    item.lastSyncTime = fields.date("lastSyncTime");
    item.sourceAppBundleID = fields.string("sourceAppBundleID");
    item.isRemoteClipboard = fields.boolean("isRemoteClipboard");
    item.updatedAt = fields.date("updatedAt").value_or(item.timestamp);
    item.deletedAt = fields.date("deletedAt");
    item.tags = fields.strings("tags");
    item.contentHash = fields.utf8("contentHash").value_or(QByteArray());
    if (item.contentHash.isEmpty())
        item.contentHash = computeContentHash(item);
    return item;
}
