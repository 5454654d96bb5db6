#include "persistence/StoredParts.h"
#include "persistence/SwiftDataClipboardHistoryStore.h"
#include "tests/fakes/FakeClock.h"
#include "tests/fakes/PrintedLines.h"
#include "tests/fakes/SampleItems.h"
#include "tests/persistence/RawDatabase.h"

#include <QTemporaryDir>
#include <QTest>

#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class StoredPartsTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void whatIsCommittedLeavesMemory();
    void shortPartsStayInMemory();
    void whatIsLoadedIsReadBackByteForByte();
    void loadedEntriesEqualThoseThatWereStored();
    void aChangedEntryIsStoredWithItsLongParts();
    void whatCouldNotBeWrittenStaysInMemory();
    void whatWasDroppedAsOlderStaysInMemory();
    void anEditedTextIsReadFromItsNewRow();
    void aRemovedRecordGivesNothing();
    void aTombstoneStillGivesItsText();
    void whatCannotBeReadBackIsNotStored();
    void compactionLeavesEverythingReadable();
    void aCommitInProgressKeepsNobodyFromReading();
    void manyReadAtTheSameTime();
    void theStoreMayEndFirst();
    void richDataStoredAsTextIsRead();
    void malformedLongTextIsRepaired();
    void theHashOfALongEntryWithoutOneIsComputed();
    void aTextOfAFileOutlivesTheChangeOfItsHash();

private:
    QString path() const { return m_directory->filePath(u"clipboard_history.store"_s); }
    void open() { m_store = std::make_unique<SwiftDataClipboardHistoryStore>(path(), m_clock); }
    ClipboardItem longItem() const;
    ClipboardItem stored();
    ClipboardItem reloaded();

    std::optional<QTemporaryDir> m_directory;
    FakeClock m_clock;
    std::unique_ptr<SwiftDataClipboardHistoryStore> m_store;
};

namespace {

const QString kLong = u"naïve 剪贴板 \U0001F600 "_s.repeated(1000);
const QByteArray kHtml = QByteArray("<p>\0\xFF</p>", 9).repeated(1000);
const QByteArray kRtf = QByteArray("{\\rtf1 \xE4}").repeated(500);

bool isElsewhere(const ClipboardItem &item)
{
    return !item.stringValue->longBytes().isInMemory() && !item.htmlRepresentation->isInMemory()
        && !item.rtfRepresentation->isInMemory();
}

} // namespace

void StoredPartsTest::init()
{
    m_directory.emplace();
    open();
}

void StoredPartsTest::cleanup()
{
    m_store.reset();
}

ClipboardItem StoredPartsTest::longItem() const
{
    ClipboardItem item = makeItem(ClipboardContentType::Text, m_clock.now());
    item.stringValue = Utf8Text(kLong);
    item.htmlRepresentation = kHtml;
    item.rtfRepresentation = kRtf;
    item.contentHash = computeContentHash(item);
    return item;
}

ClipboardItem StoredPartsTest::stored()
{
    ClipboardItem item = longItem();
    m_store->upsertItem(item);
    return item;
}

ClipboardItem StoredPartsTest::reloaded()
{
    open();
    const ClipboardItemList items = m_store->loadItems();
    return items.size() == 1 ? *items.first() : ClipboardItem();
}

void StoredPartsTest::whatIsCommittedLeavesMemory()
{
    const ClipboardItem item = longItem();
    const ClipboardItem copy = item;
    QVERIFY(!isElsewhere(item));
    m_store->upsertItem(item);
    QVERIFY(isElsewhere(item));
    QVERIFY(isElsewhere(copy));
    QCOMPARE(copy.stringValue->toString(), kLong);
    QCOMPARE(copy.htmlRepresentation->bytes(), kHtml);
    QCOMPARE(copy.rtfRepresentation->bytes(), kRtf);
}

void StoredPartsTest::shortPartsStayInMemory()
{
    ClipboardItem item = textItem(u"x"_s.repeated(Utf8Text::kLongText), m_clock.now());
    item.htmlRepresentation = QByteArray(kLongRichData, 'h');
    item.rtfRepresentation = ""_ba;
    item.contentHash = computeContentHash(item);
    m_store->upsertItem(item);
    for (const ClipboardItem &each : {item, reloaded()}) {
        QVERIFY(!each.stringValue->isLong());
        QVERIFY(each.htmlRepresentation->isInMemory());
        QVERIFY(each.rtfRepresentation->isEmpty());
        QCOMPARE(each, item);
    }
}

void StoredPartsTest::whatIsLoadedIsReadBackByteForByte()
{
    stored();
    const ClipboardItem item = reloaded();
    QVERIFY(isElsewhere(item));
    QCOMPARE(item.stringValue->byteCount(), kLong.toUtf8().size());
    QVERIFY(kLong.startsWith(QString::fromUtf8(item.stringValue->start())));
    QCOMPARE(item.stringValue->toString(), kLong);
    QCOMPARE(item.htmlRepresentation->size(), kHtml.size());
    QCOMPARE(item.htmlRepresentation->bytes(), kHtml);
    QCOMPARE(item.rtfRepresentation->bytes(), kRtf);
}

void StoredPartsTest::loadedEntriesEqualThoseThatWereStored()
{
    const ClipboardItem item = stored();
    ClipboardItem inMemory = longItem();
    inMemory.id = item.id;
    const ClipboardItem loaded = reloaded();
    QCOMPARE(loaded, inMemory);
    inMemory.id = QUuid::createUuid();
    inMemory.contentHash = "unlike"_ba;
    QVERIFY(loaded.hasSameContent(inMemory));
    inMemory.htmlRepresentation = QByteArray(kHtml.size(), 'x');
    QVERIFY(!loaded.hasSameContent(inMemory));
}

void StoredPartsTest::aChangedEntryIsStoredWithItsLongParts()
{
    stored();
    ClipboardItem item = reloaded();
    item.isFavorite = true;
    item.tags = {u"work"_s};
    m_store->upsertItem(item);
    const ClipboardItem again = reloaded();
    QVERIFY(again.isFavorite);
    QCOMPARE(again.stringValue->toString(), kLong);
    QCOMPARE(again.htmlRepresentation->bytes(), kHtml);
    QCOMPARE(again.rtfRepresentation->bytes(), kRtf);
}

void StoredPartsTest::whatCouldNotBeWrittenStaysInMemory()
{
    RawDatabase(path()).value("CREATE TRIGGER refuse BEFORE INSERT ON ClipboardHistoryRecord "
                              "BEGIN SELECT raise(ABORT, 'refused'); END");
    const ClipboardItem item = longItem();
    QVERIFY_THROWS_EXCEPTION(StoreError, m_store->upsertItem(item));
    QVERIFY(item.stringValue->longBytes().isInMemory());
    QVERIFY(item.htmlRepresentation->isInMemory());
    QVERIFY(item.rtfRepresentation->isInMemory());
}

void StoredPartsTest::whatWasDroppedAsOlderStaysInMemory()
{
    const ClipboardItem item = stored();
    ClipboardItem older = longItem();
    older.id = item.id;
    older.updatedAt = item.updatedAt - 1s;
    older.stringValue = Utf8Text(u"other "_s.repeated(1000));
    m_store->upsertItem(older);
    QVERIFY(older.stringValue->longBytes().isInMemory());
    QCOMPARE(older.stringValue->toString(), u"other "_s.repeated(1000));
    QCOMPARE(item.stringValue->toString(), kLong);
}

void StoredPartsTest::anEditedTextIsReadFromItsNewRow()
{
    const ClipboardItem item = stored();
    ClipboardItem edited = item;
    // As long as the text before, so that only the hash tells them apart.
    const QString newText = kLong.chopped(1) + u"!"_s;
    edited.stringValue = Utf8Text(newText);
    edited.htmlRepresentation.reset();
    edited.rtfRepresentation.reset();
    edited.markChanged(ClipboardItem::ContentHash::Refresh, m_clock.now() + 1s);
    m_store->upsertItem(edited);
    QCOMPARE(edited.stringValue->toString(), newText);
    QCOMPARE(reloaded().stringValue->toString(), newText);
    // Who still has the entry as it was gets no other text for its own.
    QVERIFY(!item.stringValue->read());
    QVERIFY(!item.htmlRepresentation->read());
}

void StoredPartsTest::aRemovedRecordGivesNothing()
{
    const ClipboardItem item = stored();
    const auto held = item.stringValue->longBytes().hold();
    m_store->hardDeleteItems({item.id});
    QVERIFY(!item.htmlRepresentation->read());
    QCOMPARE(item.stringValue->toString(), kLong); // Held before.
}

void StoredPartsTest::aTombstoneStillGivesItsText()
{
    const ClipboardItem item = stored();
    m_store->markItemsDeleted({item.id});
    QCOMPARE(item.stringValue->toString(), kLong);
}

void StoredPartsTest::whatCannotBeReadBackIsNotStored()
{
    ClipboardItem item = stored();
    RawDatabase(path()).value("UPDATE ClipboardHistoryRecord SET htmlRepresentation = x'00'");
    item.isFavorite = true;
    QVERIFY_THROWS_EXCEPTION(StoreError, m_store->upsertItem(item));
    QCOMPARE(RawDatabase(path()).value("SELECT isFavorite FROM ClipboardHistoryRecord"), u"0"_s);
}

void StoredPartsTest::compactionLeavesEverythingReadable()
{
    const ClipboardItem other = textItem(u"other "_s.repeated(1000), m_clock.now());
    m_store->upsertItem(other);
    const ClipboardItem item = stored();
    QCOMPARE(item.htmlRepresentation->bytes(), kHtml);
    m_store->hardDeleteItems({other.id});
    m_store->compactStorage();
    QCOMPARE(item.stringValue->toString(), kLong);
    QCOMPARE(item.htmlRepresentation->bytes(), kHtml);
}

void StoredPartsTest::aCommitInProgressKeepsNobodyFromReading()
{
    const ClipboardItem item = stored();
    RawDatabase writer(path());
    writer.rows("BEGIN IMMEDIATE");
    writer.value("UPDATE ClipboardHistoryRecord SET isFavorite = 1");
    QCOMPARE(item.stringValue->toString(), kLong);
    writer.rows("COMMIT");
}

void StoredPartsTest::manyReadAtTheSameTime()
{
    QList<ClipboardItem> items;
    for (int i = 0; i < 20; ++i) {
        items.append(textItem(QString::number(i) + kLong, m_clock.now()));
        m_store->upsertItem(items.last());
    }
    std::atomic<int> readCount = 0;
    {
        std::vector<std::jthread> readers;
        for (int i = 0; i < 6; ++i) {
            readers.emplace_back([&] {
                for (int k = 0; k < items.size(); ++k) {
                    if (items.at(k).stringValue->toString() == QString::number(k) + kLong)
                        ++readCount;
                }
            });
        }
    }
    QCOMPARE(readCount.load(), 6 * 20);
}

void StoredPartsTest::theStoreMayEndFirst()
{
    const ClipboardItem item = stored();
    m_store.reset();
    QCOMPARE(item.stringValue->toString(), kLong);
}

void StoredPartsTest::richDataStoredAsTextIsRead()
{
    stored();
    const QString text = u"ü"_s.repeated(1000);
    RawDatabase(path()).value("UPDATE ClipboardHistoryRecord SET htmlRepresentation = '"
                              + text.toUtf8() + "', rtfRepresentation = 7");
    const ClipboardItem item = reloaded();
    QCOMPARE(item.htmlRepresentation->bytes(), text.toUtf8());
    QCOMPARE(item.rtfRepresentation->bytes(), "7"_ba);
}

void StoredPartsTest::malformedLongTextIsRepaired()
{
    stored();
    RawDatabase(path()).value("UPDATE ClipboardHistoryRecord SET stringValue = "
                              "CAST(x'FF' AS TEXT) || stringValue");
    const ClipboardItem item = reloaded();
    QCOMPARE(item.stringValue->toString(), QChar(QChar::ReplacementCharacter) + kLong);
}

void StoredPartsTest::theHashOfALongEntryWithoutOneIsComputed()
{
    const ClipboardItem item = stored();
    RawDatabase(path()).value("UPDATE ClipboardHistoryRecord SET contentHash = NULL");
    const ClipboardItem loaded = reloaded();
    QCOMPARE(loaded.contentHash, item.contentHash);
    QCOMPARE(loaded.stringValue->toString(), kLong);
}

void StoredPartsTest::aTextOfAFileOutlivesTheChangeOfItsHash()
{
    ClipboardItem file = makeItem(ClipboardContentType::File, m_clock.now());
    file.stringValue = Utf8Text(kLong);
    file.filePath = u"/tmp/a"_s;
    file.contentHash = computeContentHash(file);
    m_store->upsertItem(file);
    const ClipboardItem before = file;
    file.fileBookmarkData = "token"_ba;
    file.markChanged(ClipboardItem::ContentHash::Refresh, m_clock.now() + 1s);
    QVERIFY(file.contentHash != before.contentHash);
    m_store->upsertItem(file);
    QCOMPARE(file.stringValue->toString(), kLong);
    QCOMPARE(before.stringValue->toString(), kLong);
}

QTEST_GUILESS_MAIN(StoredPartsTest)
#include "StoredPartsTest.moc"
