#include "persistence/JSONClipboardHistoryStore.h"
#include "persistence/SwiftDataClipboardHistoryStore.h"
#include "tests/fakes/FakeClock.h"
#include "tests/fakes/SampleItems.h"

#include <QTemporaryDir>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// What both stores promise. Each test runs once for each of them.
class HistoryStoreContractTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase_data();
    void init();
    void cleanup();

    void aMissingHistoryLoadsEmpty();
    void everyFieldSurvivesReopening();
    void anyEntriesSurviveReopening();
    void absentFieldsStayAbsent();
    void emptyValuesAreNotAbsentOnes();
    void aTextWithZeroCharactersSurvives();
    void aLongTextSurvives();
    void thePictureInMemoryIsNotStored();
    void anUpsertOfAKnownIdReplacesTheRecord();
    void anEqualUpdateTimeReplacesTheRecord();
    void anEarlierUpdateIsDroppedSilently();
    void aDeletedEntryIsNotLoaded();
    void tombstonesAloneLoadAsEmpty();
    void anEarlierUpsertDoesNotReviveATombstone();
    void aLaterUpsertRevivesATombstone();
    void aLaterUpsertOfADeletedEntryStaysHidden();
    void deletingAnUnknownIdLeavesATombstone();
    void hardDeletionRemovesLiveRecords();
    void hardDeletionRemovesTombstones();
    void hardDeletionIgnoresUnknownIds();
    void purgingRemovesTombstonesOnly();
    void emptyListsOfIdsChangeNothing();
    void compactionKeepsTheHistory();
    void operationsWorkAfterCompaction();

private:
    void reopen();
    QList<ClipboardItem> loaded();
    QStringList loadedTexts();
    ClipboardItem stored(const QString &text, std::chrono::seconds age = 0s);

    std::optional<QTemporaryDir> m_directory;
    FakeClock m_clock;
    std::unique_ptr<ClipboardHistoryStore> m_store;
};

void HistoryStoreContractTest::initTestCase_data()
{
    QTest::addColumn<bool>("isDatabase");
    QTest::newRow("database") << true;
    QTest::newRow("JSON file") << false;
}

void HistoryStoreContractTest::init()
{
    m_directory.emplace();
    reopen();
}

void HistoryStoreContractTest::cleanup()
{
    m_store.reset();
}

void HistoryStoreContractTest::reopen()
{
    QFETCH_GLOBAL(const bool, isDatabase);
    m_store.reset();
    if (isDatabase)
        m_store = std::make_unique<SwiftDataClipboardHistoryStore>(
            m_directory->filePath(u"history.store"_s), m_clock);
    else
        m_store = std::make_unique<JSONClipboardHistoryStore>(
            m_directory->filePath(u"history.json"_s), m_clock);
}

QList<ClipboardItem> HistoryStoreContractTest::loaded()
{
    QList<ClipboardItem> items;
    for (const ClipboardItemPointer &item : m_store->loadItems())
        items.append(*item);
    return items;
}

/// In alphabetical order: the order of loading is not part of the contract.
QStringList HistoryStoreContractTest::loadedTexts()
{
    QStringList texts;
    for (const ClipboardItem &item : loaded())
        texts.append(item.stringValue->toString());
    texts.sort();
    return texts;
}

ClipboardItem HistoryStoreContractTest::stored(const QString &text, std::chrono::seconds age)
{
    const ClipboardItem item = textItem(text, m_clock.now() - age);
    m_store->upsertItem(item);
    return item;
}

void HistoryStoreContractTest::aMissingHistoryLoadsEmpty()
{
    QVERIFY(m_store->loadItems().isEmpty());
}

void HistoryStoreContractTest::everyFieldSurvivesReopening()
{
    const ClipboardItem item = itemWithEveryField(m_clock.now());
    m_store->upsertItem(item);
    reopen();
    QCOMPARE(loaded().size(), 1);
    QVERIFY(loaded().first() == item);
}

void HistoryStoreContractTest::anyEntriesSurviveReopening()
{
    QFETCH_GLOBAL(const bool, isDatabase);
    RandomItems random(7);
    QHash<QUuid, ClipboardItem> expected;
    for (int i = 0; i < 60; ++i) {
        const ClipboardItem item = random.next();
        m_store->upsertItem(item);
        expected.insert(item.id, isDatabase ? item : inWholeSeconds(item));
    }
    reopen();
    QCOMPARE(loaded().size(), expected.size());
    for (const ClipboardItem &item : loaded())
        QVERIFY2(item == expected.value(item.id), qPrintable(item.id.toString()));
}

void HistoryStoreContractTest::absentFieldsStayAbsent()
{
    ClipboardItem item = makeItem(ClipboardContentType::Mixed, m_clock.now());
    item.contentHash = computeContentHash(item);
    m_store->upsertItem(item);
    QVERIFY(loaded().first() == item);
}

void HistoryStoreContractTest::emptyValuesAreNotAbsentOnes()
{
    ClipboardItem item = textItem(QString(), m_clock.now());
    item.htmlRepresentation = QByteArray();
    item.fileBookmarkData = QByteArray();
    item.imageFileName = QString();
    item.imageDigest = QByteArray();
    item.sourceAppBundleID = QString();
    m_store->upsertItem(item);
    QVERIFY(loaded().first() == item);
    QVERIFY(loaded().first().htmlRepresentation.has_value());
    QVERIFY(loaded().first().sourceAppBundleID.has_value());
}

void HistoryStoreContractTest::aTextWithZeroCharactersSurvives()
{
    const QString text = u"before"_s + QChar(0) + u"after"_s;
    stored(text);
    QCOMPARE(loadedTexts(), QStringList{text});
}

void HistoryStoreContractTest::aLongTextSurvives()
{
    const QString text = u"long 文 "_s.repeated(200'000);
    stored(text);
    QCOMPARE(loadedTexts(), QStringList{text});
}

void HistoryStoreContractTest::thePictureInMemoryIsNotStored()
{
    ClipboardItem item = makeItem(ClipboardContentType::Image, m_clock.now());
    item.imageRepresentation = QByteArray("pixels");
    item.contentHash = computeContentHash(item);
    m_store->upsertItem(item);
    QVERIFY(!loaded().first().imageRepresentation);
    QCOMPARE(loaded().first().contentHash, item.contentHash);
}

void HistoryStoreContractTest::anUpsertOfAKnownIdReplacesTheRecord()
{
    const ClipboardItem first = stored(u"first"_s);
    ClipboardItem changed = itemWithEveryField(m_clock.now());
    changed.id = first.id;
    m_store->upsertItem(changed);
    QCOMPARE(loaded().size(), 1);
    QVERIFY(loaded().first() == changed);
}

void HistoryStoreContractTest::anEqualUpdateTimeReplacesTheRecord()
{
    ClipboardItem item = stored(u"old"_s);
    item.stringValue = Utf8Text(u"new"_s);
    m_store->upsertItem(item);
    QCOMPARE(loadedTexts(), QStringList{u"new"_s});
}

void HistoryStoreContractTest::anEarlierUpdateIsDroppedSilently()
{
    ClipboardItem item = stored(u"kept"_s);
    item.stringValue = Utf8Text(u"too late"_s);
    item.updatedAt -= 1s;
    m_store->upsertItem(item);
    QCOMPARE(loadedTexts(), QStringList{u"kept"_s});
}

void HistoryStoreContractTest::aDeletedEntryIsNotLoaded()
{
    const ClipboardItem deleted = stored(u"deleted"_s);
    stored(u"kept"_s);
    m_store->markItemsDeleted({deleted.id});
    QCOMPARE(loadedTexts(), QStringList{u"kept"_s});
    reopen();
    QCOMPARE(loadedTexts(), QStringList{u"kept"_s});
}

void HistoryStoreContractTest::tombstonesAloneLoadAsEmpty()
{
    const ClipboardItem one = stored(u"one"_s);
    const ClipboardItem two = stored(u"two"_s);
    m_store->markItemsDeleted({one.id, two.id});
    QVERIFY(m_store->loadItems().isEmpty());
}

void HistoryStoreContractTest::anEarlierUpsertDoesNotReviveATombstone()
{
    const ClipboardItem item = stored(u"deleted"_s, 10s);
    m_store->markItemsDeleted({item.id}); // Moves the time of the record to now.
    m_store->upsertItem(item);
    QVERIFY(m_store->loadItems().isEmpty());
}

void HistoryStoreContractTest::aLaterUpsertRevivesATombstone()
{
    ClipboardItem item = stored(u"back again"_s);
    m_store->markItemsDeleted({item.id});
    item.updatedAt = m_clock.now() + 1s;
    m_store->upsertItem(item);
    QCOMPARE(loaded().size(), 1);
    QVERIFY(loaded().first() == item);
}

void HistoryStoreContractTest::aLaterUpsertOfADeletedEntryStaysHidden()
{
    ClipboardItem item = stored(u"deleted"_s);
    m_store->markItemsDeleted({item.id});
    item.updatedAt = m_clock.now() + 1s;
    item.deletedAt = m_clock.now();
    m_store->upsertItem(item);
    QVERIFY(m_store->loadItems().isEmpty());
}

void HistoryStoreContractTest::deletingAnUnknownIdLeavesATombstone()
{
    ClipboardItem item = textItem(u"arrives late"_s, m_clock.now() - 1s);
    m_store->markItemsDeleted({item.id});
    QVERIFY(m_store->loadItems().isEmpty());
    m_store->upsertItem(item);
    QVERIFY(m_store->loadItems().isEmpty());
}

void HistoryStoreContractTest::hardDeletionRemovesLiveRecords()
{
    const ClipboardItem deleted = stored(u"deleted"_s);
    stored(u"kept"_s);
    m_store->hardDeleteItems({deleted.id});
    QCOMPARE(loadedTexts(), QStringList{u"kept"_s});
}

void HistoryStoreContractTest::hardDeletionRemovesTombstones()
{
    const ClipboardItem item = stored(u"text"_s, 10s);
    m_store->markItemsDeleted({item.id});
    m_store->hardDeleteItems({item.id});
    // A tombstone would turn this away.
    m_store->upsertItem(item);
    QCOMPARE(loadedTexts(), QStringList{u"text"_s});
}

void HistoryStoreContractTest::hardDeletionIgnoresUnknownIds()
{
    stored(u"kept"_s);
    m_store->hardDeleteItems({QUuid::createUuid()});
    QCOMPARE(loadedTexts(), QStringList{u"kept"_s});
}

void HistoryStoreContractTest::purgingRemovesTombstonesOnly()
{
    const ClipboardItem deleted = stored(u"deleted"_s, 10s);
    stored(u"kept"_s);
    m_store->markItemsDeleted({deleted.id});
    m_store->purgeDeletedItems();
    QCOMPARE(loadedTexts(), QStringList{u"kept"_s});
    // A tombstone would turn this away.
    m_store->upsertItem(deleted);
    QCOMPARE(loadedTexts(), (QStringList{u"deleted"_s, u"kept"_s}));
}

void HistoryStoreContractTest::emptyListsOfIdsChangeNothing()
{
    stored(u"kept"_s);
    m_store->markItemsDeleted({});
    m_store->hardDeleteItems({});
    QCOMPARE(loadedTexts(), QStringList{u"kept"_s});
}

void HistoryStoreContractTest::compactionKeepsTheHistory()
{
    const ClipboardItem item = itemWithEveryField(m_clock.now());
    m_store->upsertItem(item);
    m_store->compactStorage();
    QVERIFY(loaded().first() == item);
    reopen();
    QVERIFY(loaded().first() == item);
}

void HistoryStoreContractTest::operationsWorkAfterCompaction()
{
    const ClipboardItem item = stored(u"one"_s);
    m_store->compactStorage();
    stored(u"two"_s);
    m_store->markItemsDeleted({item.id});
    m_store->purgeDeletedItems();
    m_store->compactStorage();
    QCOMPARE(loadedTexts(), QStringList{u"two"_s});
}

QTEST_APPLESS_MAIN(HistoryStoreContractTest)
#include "HistoryStoreContractTest.moc"
