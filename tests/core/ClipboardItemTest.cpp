#include "core/ClipboardItem.h"

#include "foundation/Digest.h"
#include "tests/fakes/SampleItems.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const Timestamp kNow = timestampFromMicroseconds(1'776'000'000'000'000);

ClipboardItem item(ClipboardContentType type)
{
    return makeItem(type, kNow);
}

ClipboardItem withText(ClipboardContentType type, const QString &text)
{
    ClipboardItem result = item(type);
    result.stringValue = Utf8Text(text);
    result.contentHash = computeContentHash(result);
    return result;
}

ClipboardItem image(const std::optional<QByteArray> &digest, const std::optional<QByteArray> &bytes,
                    const std::optional<QString> &fileName)
{
    ClipboardItem result = item(ClipboardContentType::Image);
    result.imageDigest = digest;
    result.imageRepresentation = bytes;
    result.imageFileName = fileName;
    // What an older version stored; the hashes of this test must not decide.
    result.contentHash = result.id.toByteArray();
    return result;
}

ClipboardItem file(const std::optional<QString> &path, const QStringList &types = {})
{
    ClipboardItem result = item(ClipboardContentType::File);
    result.filePath = path;
    result.fileTypes = types;
    result.contentHash = result.id.toByteArray();
    return result;
}

QByteArray hashOf(const QString &text)
{
    return withText(ClipboardContentType::Text, text).contentHash;
}

} // namespace

class ClipboardItemTest : public QObject
{
    Q_OBJECT

private slots:
    void aNewEntryHasAnIdAndItsTimes();
    void typesAndStatesHaveTheirStoredNames();

    void theHashOfATextCoversItsPayload();
    void lineEndsAndSurroundingBlanksDoNotChangeTheHash();
    void aLoneCarriageReturnChangesTheHash();
    void aLinkAndATextOfTheSameCharactersDiffer();
    void richDataChangesTheHash();
    void emptyRichDataHashesLikeNone();
    void theHashOfAnImageGoesByTheBestThatIsKnown();
    void anOldImageRecordDoesNotMatchAFreshCaptureByHash();
    void theOrderAndCaseOfFileTypesDoNotChangeTheHash();
    void theHashOfAFileCoversItsPayload();
    void theHashOfAMixedEntryCoversItsPayload();

    void equalHashesDecideWhateverElseDiffers();
    void textsThatDifferInBlanksAreTheSameByHash();
    void textsAreComparedAsTheyStand();
    void richDataAreCompared();
    void filesAreComparedByPath();
    void mixedEntriesAreComparedByTextAndPath();
    void imagesAreComparedByTheFirstThatBothHave();
    void theFirstDuplicateIsFound();
    void entriesOfAnotherTypeAreNoDuplicates();

    void aPreviewIsCutAfterTheLimit();
    void aTextOfBlanksHasNoPreview();
    void anEntryWithoutTextHasNoPreview();

    void aChangeMovesTheUpdateTime();
    void aRefreshedHashEndsATombstone();
    void aKeptHashKeepsATombstone();
    void aLocalEntryStaysLocal();
    void anEntryThatWasSyncedIsPendingAgain_data();
    void anEntryThatWasSyncedIsPendingAgain();
};

void ClipboardItemTest::aNewEntryHasAnIdAndItsTimes()
{
    const ClipboardItem one = makeItem(ClipboardContentType::Url, kNow);
    const ClipboardItem two = makeItem(ClipboardContentType::Url, kNow);
    QVERIFY(!one.id.isNull());
    QVERIFY(one.id != two.id);
    QCOMPARE(one.contentType, ClipboardContentType::Url);
    QCOMPARE(one.timestamp, kNow);
    QCOMPARE(one.updatedAt, kNow);
    QCOMPARE(one.syncStatus, SyncStatus::Local);
    QVERIFY(!one.isFavorite && !one.isRemoteClipboard && !one.deletedAt && one.tags.isEmpty());
}

void ClipboardItemTest::typesAndStatesHaveTheirStoredNames()
{
    const QStringList types{u"text"_s, u"image"_s, u"file"_s, u"url"_s, u"mixed"_s};
    for (qsizetype i = 0; i < types.size(); ++i) {
        QCOMPARE(rawValue(ClipboardContentType(i)), types[i]);
        QCOMPARE(contentTypeFromRaw(types[i]), ClipboardContentType(i));
    }
    const QStringList states{u"local"_s, u"pending"_s, u"synced"_s, u"failed"_s};
    for (qsizetype i = 0; i < states.size(); ++i) {
        QCOMPARE(rawValue(SyncStatus(i)), states[i]);
        QCOMPARE(syncStatusFromRaw(states[i]), SyncStatus(i));
    }
    for (const QString &other : {u""_s, u"Text"_s, u"text "_s, u"Local"_s}) {
        QVERIFY(!contentTypeFromRaw(other));
        QVERIFY(!syncStatusFromRaw(other));
    }
}

void ClipboardItemTest::theHashOfATextCoversItsPayload()
{
    QCOMPARE(hashOf(u"naïve"_s), sha256Hex("text|na\xC3\xAFve||"));
    QCOMPARE(computeContentHash(item(ClipboardContentType::Text)), sha256Hex("text|||"));
    QCOMPARE(withText(ClipboardContentType::Url, u"https://a.org"_s).contentHash,
             sha256Hex("url|https://a.org||"));
    ClipboardItem rich = withText(ClipboardContentType::Text, u"a"_s);
    rich.htmlRepresentation = "<b>a</b>"_ba;
    rich.rtfRepresentation = "{\\rtf1 a}"_ba;
    QCOMPARE(computeContentHash(rich), sha256Hex("text|a|" + sha256Hex("<b>a</b>") + '|'
                                                 + sha256Hex("{\\rtf1 a}")));
}

void ClipboardItemTest::lineEndsAndSurroundingBlanksDoNotChangeTheHash()
{
    QCOMPARE(hashOf(u"a\r\nb"_s), hashOf(u"a\nb"_s));
    QCOMPARE(hashOf(u"  a\nb\n"_s), hashOf(u"a\nb"_s));
    QCOMPARE(hashOf(u"\u3000a\nb\u2029"_s), hashOf(u"a\nb"_s));
}

void ClipboardItemTest::aLoneCarriageReturnChangesTheHash()
{
    QVERIFY(hashOf(u"a\rb"_s) != hashOf(u"a\nb"_s));
}

void ClipboardItemTest::aLinkAndATextOfTheSameCharactersDiffer()
{
    const ClipboardItem text = withText(ClipboardContentType::Text, u"https://a.org"_s);
    const ClipboardItem link = withText(ClipboardContentType::Url, u"https://a.org"_s);
    QVERIFY(text.contentHash != link.contentHash);
    QVERIFY(!text.hasSameContent(link));
    QVERIFY(!link.hasSameContent(text));
}

void ClipboardItemTest::richDataChangesTheHash()
{
    ClipboardItem rich = withText(ClipboardContentType::Text, u"a"_s);
    rich.htmlRepresentation = "same"_ba;
    const QByteArray withHtml = computeContentHash(rich);
    std::swap(rich.htmlRepresentation, rich.rtfRepresentation);
    QVERIFY(withHtml != computeContentHash(rich));
    QVERIFY(withHtml != hashOf(u"a"_s));
}

void ClipboardItemTest::emptyRichDataHashesLikeNone()
{
    ClipboardItem rich = withText(ClipboardContentType::Text, u"a"_s);
    rich.htmlRepresentation = QByteArray();
    QCOMPARE(computeContentHash(rich), hashOf(u"a"_s));
}

void ClipboardItemTest::theHashOfAnImageGoesByTheBestThatIsKnown()
{
    QCOMPARE(computeContentHash(image("d1", "bytes", u"a.png"_s)), sha256Hex("image|digest|d1"));
    QCOMPARE(computeContentHash(image("", "bytes", u"a.png"_s)),
             sha256Hex("image|data|" + sha256Hex("bytes")));
    QCOMPARE(computeContentHash(image({}, "", u"a.png"_s)),
             sha256Hex("image|data|" + sha256Hex("")));
    QCOMPARE(computeContentHash(image({}, {}, u"a.png"_s)), sha256Hex("image|file|a.png"));
    QCOMPARE(computeContentHash(image({}, {}, {})), sha256Hex("image|file|"));
}

void ClipboardItemTest::anOldImageRecordDoesNotMatchAFreshCaptureByHash()
{
    ClipboardItem old = image({}, {}, u"a.png"_s);
    ClipboardItem fresh = image(sha256Hex("bytes"), "bytes", {});
    old.contentHash = computeContentHash(old);
    fresh.contentHash = computeContentHash(fresh);
    QVERIFY(old.contentHash != fresh.contentHash);
    QVERIFY(!old.hasSameContent(fresh));
}

void ClipboardItemTest::theOrderAndCaseOfFileTypesDoNotChangeTheHash()
{
    QCOMPARE(computeContentHash(file(u"/a"_s, {u"TXT"_s, u"md"_s})),
             computeContentHash(file(u"/a"_s, {u"md"_s, u"txt"_s})));
    QVERIFY(computeContentHash(file(u"/a"_s, {u"md"_s}))
            != computeContentHash(file(u"/a"_s, {u"md"_s, u"md"_s})));
}

void ClipboardItemTest::theHashOfAFileCoversItsPayload()
{
    ClipboardItem one = file(u"/tmp/a.TXT"_s, {u"TXT"_s, u""_s, u"md"_s});
    QCOMPARE(computeContentHash(one), sha256Hex("file|/tmp/a.TXT|,md,txt|0"));
    one.fileBookmarkData = QByteArray(12, 'x');
    QCOMPARE(computeContentHash(one), sha256Hex("file|/tmp/a.TXT|,md,txt|12"));
    QCOMPARE(computeContentHash(file({})), sha256Hex("file|||0"));
}

void ClipboardItemTest::theHashOfAMixedEntryCoversItsPayload()
{
    ClipboardItem mixed = withText(ClipboardContentType::Mixed, u" a\r\n"_s);
    mixed.filePath = u"/b"_s;
    QCOMPARE(computeContentHash(mixed), sha256Hex("mixed| a\r\n|/b"));
    QCOMPARE(computeContentHash(item(ClipboardContentType::Mixed)), sha256Hex("mixed||"));
}

void ClipboardItemTest::equalHashesDecideWhateverElseDiffers()
{
    ClipboardItem text = withText(ClipboardContentType::Text, u"a"_s);
    ClipboardItem other = file(u"/b"_s);
    text.contentHash = other.contentHash = "same";
    QVERIFY(text.hasSameContent(other));
}

void ClipboardItemTest::textsThatDifferInBlanksAreTheSameByHash()
{
    QVERIFY(textItem(u" a"_s, kNow).hasSameContent(textItem(u"a "_s, kNow)));
}

void ClipboardItemTest::textsAreComparedAsTheyStand()
{
    ClipboardItem one = textItem(u" a"_s, kNow);
    ClipboardItem other = textItem(u"a "_s, kNow);
    one.contentHash = "one";
    other.contentHash = "other";
    QVERIFY(!one.hasSameContent(other));
    other.stringValue = one.stringValue;
    QVERIFY(one.hasSameContent(other));
    other.stringValue.reset();
    QVERIFY(!one.hasSameContent(other));
    one.stringValue = Utf8Text();
    QVERIFY(!one.hasSameContent(other));
    one.stringValue.reset();
    QVERIFY(one.hasSameContent(other));
}

void ClipboardItemTest::richDataAreCompared()
{
    ClipboardItem one = textItem(u"a"_s, kNow);
    ClipboardItem other = one;
    other.contentHash = "other";
    QVERIFY(one.hasSameContent(other));
    other.htmlRepresentation = QByteArray();
    QVERIFY(!one.hasSameContent(other));
    one.htmlRepresentation = QByteArray();
    QVERIFY(one.hasSameContent(other));
    other.rtfRepresentation = "x"_ba;
    QVERIFY(!one.hasSameContent(other));
}

void ClipboardItemTest::filesAreComparedByPath()
{
    QVERIFY(file(u"/a"_s, {u"x"_s}).hasSameContent(file(u"/a"_s)));
    QVERIFY(!file(u"/a"_s).hasSameContent(file(u"/b"_s)));
    QVERIFY(!file(u"/a"_s).hasSameContent(file({})));
    QVERIFY(!file(u""_s).hasSameContent(file({})));
    QVERIFY(file({}).hasSameContent(file({})));
}

void ClipboardItemTest::mixedEntriesAreComparedByTextAndPath()
{
    ClipboardItem one = withText(ClipboardContentType::Mixed, u"a"_s);
    one.filePath = u"/a"_s;
    ClipboardItem other = one;
    other.contentHash = "other";
    QVERIFY(one.hasSameContent(other));
    other.filePath = u"/b"_s;
    QVERIFY(!one.hasSameContent(other));
    other.filePath = one.filePath;
    other.stringValue.reset();
    QVERIFY(!one.hasSameContent(other));
}

void ClipboardItemTest::imagesAreComparedByTheFirstThatBothHave()
{
    // The digests decide, also against the rest.
    QVERIFY(image("d", "1", u"1"_s).hasSameContent(image("d", "2", u"2"_s)));
    QVERIFY(!image("d", "1", u"1"_s).hasSameContent(image("e", "1", u"1"_s)));
    // Then the bytes.
    QVERIFY(image("d", "1", u"1"_s).hasSameContent(image({}, "1", u"2"_s)));
    QVERIFY(!image({}, "1", u"1"_s).hasSameContent(image("d", "2", u"1"_s)));
    // Then the names, which both must have.
    QVERIFY(image("d", "1", u"1"_s).hasSameContent(image({}, {}, u"1"_s)));
    QVERIFY(!image({}, {}, u"1"_s).hasSameContent(image({}, {}, u"2"_s)));
    QVERIFY(!image({}, {}, u"1"_s).hasSameContent(image({}, {}, {})));
    QVERIFY(!image({}, {}, {}).hasSameContent(image({}, {}, {})));
}

void ClipboardItemTest::theFirstDuplicateIsFound()
{
    ClipboardItemList items;
    for (const QString &text : {u"a"_s, u"b"_s, u"c"_s, u"b"_s})
        items.append(std::make_shared<const ClipboardItem>(textItem(text, kNow)));
    QCOMPARE(firstDuplicateIndex(items, textItem(u"b"_s, kNow)), 1);
    QCOMPARE(firstDuplicateIndex(items, textItem(u" c"_s, kNow)), 2);
    QVERIFY(!firstDuplicateIndex(items, textItem(u"d"_s, kNow)));
    QVERIFY(!firstDuplicateIndex({}, textItem(u"a"_s, kNow)));
}

void ClipboardItemTest::entriesOfAnotherTypeAreNoDuplicates()
{
    const ClipboardItemList items{
        std::make_shared<const ClipboardItem>(withText(ClipboardContentType::Url, u"a.org"_s))};
    QVERIFY(!firstDuplicateIndex(items, textItem(u"a.org"_s, kNow)));
}

void ClipboardItemTest::aPreviewIsCutAfterTheLimit()
{
    const auto preview
        = [](qsizetype size) { return textItem(QString(size, u'x'), kNow).singleLinePreview(80); };
    QCOMPARE(preview(80), QString(80, u'x'));
    QCOMPARE(preview(81)->size(), 83);
    QVERIFY(preview(81)->endsWith(u"x..."_s));
}

void ClipboardItemTest::aTextOfBlanksHasNoPreview()
{
    QVERIFY(!textItem(u" \u3000 "_s, kNow).singleLinePreview(80));
    QVERIFY(!textItem(QString(), kNow).singleLinePreview(80));
}

void ClipboardItemTest::anEntryWithoutTextHasNoPreview()
{
    QVERIFY(!item(ClipboardContentType::Image).singleLinePreview(80));
}

void ClipboardItemTest::aChangeMovesTheUpdateTime()
{
    ClipboardItem changed = textItem(u"a"_s, kNow);
    changed.stringValue = Utf8Text(u"b"_s);
    changed.markChanged(ClipboardItem::ContentHash::Keep, kNow + 1s);
    QCOMPARE(changed.updatedAt, kNow + 1s);
    QCOMPARE(changed.timestamp, kNow);
    QCOMPARE(changed.contentHash, hashOf(u"a"_s));
}

void ClipboardItemTest::aRefreshedHashEndsATombstone()
{
    ClipboardItem changed = textItem(u"a"_s, kNow);
    changed.deletedAt = kNow;
    changed.stringValue = Utf8Text(u"b"_s);
    changed.markChanged(ClipboardItem::ContentHash::Refresh, kNow);
    QVERIFY(!changed.deletedAt);
    QCOMPARE(changed.contentHash, hashOf(u"b"_s));
}

void ClipboardItemTest::aKeptHashKeepsATombstone()
{
    ClipboardItem changed = textItem(u"a"_s, kNow);
    changed.deletedAt = kNow;
    changed.markChanged(ClipboardItem::ContentHash::Keep, kNow + 1s);
    QCOMPARE(changed.deletedAt, kNow);
}

void ClipboardItemTest::aLocalEntryStaysLocal()
{
    ClipboardItem changed = textItem(u"a"_s, kNow);
    changed.lastSyncTime = kNow;
    changed.markChanged(ClipboardItem::ContentHash::Refresh, kNow);
    QCOMPARE(changed.syncStatus, SyncStatus::Local);
    QCOMPARE(changed.lastSyncTime, kNow);
}

void ClipboardItemTest::anEntryThatWasSyncedIsPendingAgain_data()
{
    QTest::addColumn<SyncStatus>("status");
    QTest::addColumn<bool>("hasCloudRecord");
    QTest::newRow("failed without a cloud record") << SyncStatus::Failed << false;
    QTest::newRow("synced without a cloud record") << SyncStatus::Synced << false;
    QTest::newRow("local with a cloud record") << SyncStatus::Local << true;
    QTest::newRow("pending") << SyncStatus::Pending << false;
}

void ClipboardItemTest::anEntryThatWasSyncedIsPendingAgain()
{
    QFETCH(const SyncStatus, status);
    QFETCH(const bool, hasCloudRecord);
    ClipboardItem changed = textItem(u"a"_s, kNow);
    changed.syncStatus = status;
    changed.lastSyncTime = kNow;
    if (hasCloudRecord)
        changed.cloudRecordID = u"record"_s;
    changed.markChanged(ClipboardItem::ContentHash::Keep, kNow);
    QCOMPARE(changed.syncStatus, SyncStatus::Pending);
    QVERIFY(!changed.lastSyncTime);
}

QTEST_APPLESS_MAIN(ClipboardItemTest)
#include "ClipboardItemTest.moc"
