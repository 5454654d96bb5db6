#include "core/ClipboardItemJson.h"

#include "core/StoreError.h"
#include "tests/fakes/SampleItems.h"

#include <QTest>

#include <nlohmann/json.hpp>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Json = nlohmann::ordered_json;

namespace {

/// 2026-04-12T13:20:00Z.
const Timestamp kNow = timestampFromMicroseconds(1'776'000'000'000'000);
constexpr auto kId = "0F8FAD5B-D9CB-469F-A165-70867728950E";

Json smallest()
{
    return Json::parse(R"({"id":")" + std::string(kId)
                       + R"(","timestamp":"2026-04-12T13:20:00Z","contentType":"text"})");
}

Json smallestWith(const char *key, const Json &value)
{
    Json object = smallest();
    object[key] = value;
    return object;
}

QStringList keysOf(const Json &object)
{
    QStringList keys;
    for (const auto &[key, value] : object.items())
        keys.append(QString::fromStdString(key));
    return keys;
}

} // namespace

class ClipboardItemJsonTest : public QObject
{
    Q_OBJECT

private slots:
    void writesEveryKeyInOrder();
    void leavesAbsentValuesOut();
    void writesTheForms();
    void everyFieldComesBack();
    void anyEntryComesBackButForItsFractions();
    void thePictureInMemoryIsLeftOut();
    void fractionsOfASecondAreCut();
    void aDateBeyondTheCalendarIsNotWritten();
    void missingKeysTakeTheirDefaults();
    void nullCountsAsMissing();
    void unknownKeysAreIgnored();
    void aMissingHashIsComputed_data();
    void aMissingHashIsComputed();
    void aGivenHashIsTakenAsItIs();
    void anOldImageHashesByItsFileName();
    void anUnknownSyncStatusIsLocal();
    void idsOfEitherCaseAreRead();
    void datesWithAnOffsetAreRead();
    void whatIsMissingOrMalformedIsRefused_data();
    void whatIsMissingOrMalformedIsRefused();
};

void ClipboardItemJsonTest::writesEveryKeyInOrder()
{
    ClipboardItem item = itemWithEveryField(kNow);
    item.deletedAt = kNow;
    QCOMPARE(keysOf(toJson(item)),
             (QStringList{u"id"_s, u"timestamp"_s, u"contentType"_s, u"stringValue"_s,
                          u"htmlRepresentation"_s, u"rtfRepresentation"_s, u"imageFileName"_s,
                          u"imageThumbnailFileName"_s, u"imageDigest"_s, u"filePath"_s,
                          u"fileBookmarkData"_s, u"fileTypes"_s, u"isFavorite"_s,
                          u"cloudRecordID"_s, u"syncStatus"_s, u"lastSyncTime"_s,
                          u"sourceAppBundleID"_s, u"isRemoteClipboard"_s, u"updatedAt"_s,
                          u"contentHash"_s, u"deletedAt"_s, u"tags"_s}));
}

void ClipboardItemJsonTest::leavesAbsentValuesOut()
{
    QCOMPARE(keysOf(toJson(makeItem(ClipboardContentType::Image, kNow))),
             (QStringList{u"id"_s, u"timestamp"_s, u"contentType"_s, u"fileTypes"_s,
                          u"isFavorite"_s, u"syncStatus"_s, u"isRemoteClipboard"_s, u"updatedAt"_s,
                          u"contentHash"_s, u"tags"_s}));
}

void ClipboardItemJsonTest::writesTheForms()
{
    ClipboardItem item = itemWithEveryField(kNow);
    item.id = QUuid(QString::fromLatin1(kId));
    const Json object = toJson(item);
    QCOMPARE(object["id"], kId);
    QCOMPARE(object["timestamp"], "2026-04-12T13:20:00Z");
    QCOMPARE(object["contentType"], "file");
    QCOMPARE(object["htmlRepresentation"], "PGI+AP88L2I+");
    QCOMPARE(object["fileTypes"], Json::parse(R"(["TXT", "", "md"])"));
    QCOMPARE(object["isFavorite"], true);
    QCOMPARE(object["syncStatus"], "failed");
}

void ClipboardItemJsonTest::everyFieldComesBack()
{
    ClipboardItem item = itemWithEveryField(kNow);
    item.deletedAt = kNow + 90s;
    const std::string written = toJson(item).dump();
    QVERIFY(clipboardItemFromJson(Json::parse(written)) == item);
}

void ClipboardItemJsonTest::anyEntryComesBackButForItsFractions()
{
    RandomItems items(7);
    for (int i = 0; i < 300; ++i) {
        const ClipboardItem item = items.next();
        const std::string written = toJson(item).dump();
        QVERIFY(!QByteArrayView(written).contains('\n'));
        const ClipboardItem read = clipboardItemFromJson(Json::parse(written));
        QVERIFY2(read == inWholeSeconds(item), written.c_str());
        QCOMPARE(toJson(read).dump(), written);
    }
}

void ClipboardItemJsonTest::thePictureInMemoryIsLeftOut()
{
    ClipboardItem item = makeItem(ClipboardContentType::Image, kNow);
    item.imageRepresentation = "pixels";
    QVERIFY(!toJson(item).contains("imageRepresentation"));
    QVERIFY(!clipboardItemFromJson(smallestWith("imageRepresentation", "cGl4ZWxz"))
                 .imageRepresentation);
}

void ClipboardItemJsonTest::fractionsOfASecondAreCut()
{
    QCOMPARE(toJson(makeItem(ClipboardContentType::Text, kNow + 999'999us))["timestamp"],
             "2026-04-12T13:20:00Z");
    const Timestamp beforeTheEpoch = timestampFromMicroseconds(-1);
    QCOMPARE(toJson(makeItem(ClipboardContentType::Text, beforeTheEpoch))["timestamp"],
             "1969-12-31T23:59:59Z");
}

void ClipboardItemJsonTest::aDateBeyondTheCalendarIsNotWritten()
{
    const ClipboardItem item
        = makeItem(ClipboardContentType::Text, Timestamp(std::chrono::hours(24 * 366 * 9'000)));
    QVERIFY_EXCEPTION_THROWN(toJson(item), StoreError);
}

void ClipboardItemJsonTest::missingKeysTakeTheirDefaults()
{
    const ClipboardItem item = clipboardItemFromJson(smallest());
    ClipboardItem expected = makeItem(ClipboardContentType::Text, kNow);
    expected.id = QUuid(QString::fromLatin1(kId));
    expected.contentHash = computeContentHash(expected);
    QVERIFY(item == expected);
    QCOMPARE(item.updatedAt, kNow);
}

void ClipboardItemJsonTest::nullCountsAsMissing()
{
    for (const char *key : {"stringValue", "fileTypes", "isFavorite", "syncStatus", "updatedAt",
                            "contentHash", "deletedAt", "tags", "fileBookmarkData"})
        QVERIFY(clipboardItemFromJson(smallestWith(key, nullptr))
                == clipboardItemFromJson(smallest()));
}

void ClipboardItemJsonTest::unknownKeysAreIgnored()
{
    QVERIFY(clipboardItemFromJson(smallestWith("colour", 7)) == clipboardItemFromJson(smallest()));
}

void ClipboardItemJsonTest::aMissingHashIsComputed_data()
{
    QTest::addColumn<bool>("isEmpty");
    QTest::newRow("missing") << false;
    QTest::newRow("empty") << true;
}

void ClipboardItemJsonTest::aMissingHashIsComputed()
{
    QFETCH(const bool, isEmpty);
    Json object = smallestWith("stringValue", " a\r\nb ");
    if (isEmpty)
        object["contentHash"] = "";
    QCOMPARE(clipboardItemFromJson(object).contentHash, textItem(u"a\nb"_s, kNow).contentHash);
}

void ClipboardItemJsonTest::aGivenHashIsTakenAsItIs()
{
    QCOMPARE(clipboardItemFromJson(smallestWith("contentHash", "odd")).contentHash, "odd");
}

void ClipboardItemJsonTest::anOldImageHashesByItsFileName()
{
    Json object = smallestWith("imageFileName", "a.png");
    object["contentType"] = "image";
    ClipboardItem image = makeItem(ClipboardContentType::Image, kNow);
    image.imageFileName = u"a.png"_s;
    QCOMPARE(clipboardItemFromJson(object).contentHash, computeContentHash(image));
}

void ClipboardItemJsonTest::anUnknownSyncStatusIsLocal()
{
    QCOMPARE(clipboardItemFromJson(smallestWith("syncStatus", "lost")).syncStatus,
             SyncStatus::Local);
    QCOMPARE(clipboardItemFromJson(smallestWith("syncStatus", "synced")).syncStatus,
             SyncStatus::Synced);
}

void ClipboardItemJsonTest::idsOfEitherCaseAreRead()
{
    const QUuid id(QString::fromLatin1(kId));
    const QString lowerCase = id.toString(QUuid::WithoutBraces);
    QCOMPARE(clipboardItemFromJson(smallestWith("id", lowerCase.toStdString())).id, id);
    QVERIFY(clipboardItemFromJson(smallestWith("id", "00000000-0000-0000-0000-000000000000"))
                .id.isNull());
}

void ClipboardItemJsonTest::datesWithAnOffsetAreRead()
{
    for (const char *form : {"2026-04-12T13:20:00Z", "2026-04-12T15:50:00+02:30",
                             "2026-04-11T23:20:00-14:00", "2026-04-12T13:20:00+00:00"})
        QCOMPARE(clipboardItemFromJson(smallestWith("timestamp", form)).timestamp, kNow);
    QCOMPARE(clipboardItemFromJson(smallestWith("timestamp", "1970-01-01T00:00:00Z")).timestamp,
             Timestamp());
}

void ClipboardItemJsonTest::whatIsMissingOrMalformedIsRefused_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("value"); // Empty takes the key away.
    const auto row = [](const char *name, const char *key, const char *value) {
        QTest::newRow(name) << QByteArray(key) << QByteArray(value);
    };
    row("no id", "id", "");
    row("no time", "timestamp", "");
    row("no type", "contentType", "");
    row("id of null", "id", "null");
    row("id that is none", "id", "\"7\"");
    row("id with braces", "id", "\"{0F8FAD5B-D9CB-469F-A165-70867728950E}\"");
    row("id with something behind", "id", "\"0F8FAD5B-D9CB-469F-A165-70867728950E0\"");
    row("number as id", "id", "7");
    row("unknown type", "contentType", "\"sound\"");
    row("number as type", "contentType", "1");
    row("date without time", "timestamp", "\"2026-04-12\"");
    row("date without zone", "timestamp", "\"2026-04-12T13:20:00\"");
    row("fraction of a second", "timestamp", "\"2026-04-12T13:20:00.5Z\"");
    row("blank in a date", "timestamp", "\"2026-04-12 13:20:00Z\"");
    row("month that is none", "timestamp", "\"2026-13-12T13:20:00Z\"");
    row("day that is none", "timestamp", "\"2026-02-29T13:20:00Z\"");
    row("hour that is none", "timestamp", "\"2026-04-12T24:20:00Z\"");
    row("sign for a digit", "timestamp", "\"2026-04-12T13:20:-1Z\"");
    row("offset without colon", "timestamp", "\"2026-04-12T13:20:00+0200\"");
    row("number as date", "timestamp", "1776000000");
    row("malformed optional date", "deletedAt", "\"yesterday\"");
    row("malformed update time", "updatedAt", "\"\"");
    row("number as text", "stringValue", "7");
    row("bytes that are no Base64", "htmlRepresentation", "\"###\"");
    row("array as bytes", "rtfRepresentation", "[1]");
    row("number as flag", "isFavorite", "1");
    row("text as flag", "isRemoteClipboard", "\"true\"");
    row("number as sync status", "syncStatus", "1");
    row("text as list", "tags", "\"work\"");
    row("number in a list", "fileTypes", "[\"md\", 1]");
    row("number as hash", "contentHash", "1");
}

void ClipboardItemJsonTest::whatIsMissingOrMalformedIsRefused()
{
    QFETCH(const QByteArray, key);
    QFETCH(const QByteArray, value);
    Json object = smallest();
    if (value.isEmpty())
        object.erase(key.toStdString());
    else
        object[key.toStdString()] = Json::parse(value.toStdString());
    try {
        clipboardItemFromJson(object);
        QFAIL("it was accepted");
    } catch (const StoreError &error) {
        QVERIFY2(QByteArray(error.what()).contains(key), error.what());
    }
    QVERIFY_EXCEPTION_THROWN(clipboardItemFromJson(Json::array()), StoreError);
}

QTEST_APPLESS_MAIN(ClipboardItemJsonTest)
#include "ClipboardItemJsonTest.moc"
