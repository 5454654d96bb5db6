#include "persistence/SwiftDataClipboardHistoryStore.h"
#include "tests/fakes/FakeClock.h"
#include "tests/fakes/SampleItems.h"
#include "tests/persistence/RawDatabase.h"
#include "tests/persistence/WholeFile.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class SwiftDataClipboardHistoryStoreTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void theColumnsCarryTheNamesOfTheAttributes();
    void aRowHoldsTheValuesInTheirStoredForm();
    void theNewestEntryIsLoadedFirst();
    void rowsOfTheSameTimeAllLoad();
    void aMixedEntryLoads();
    void aRowOfAnUnknownTypeIsSkippedAndStays();
    void aRowWithoutUpdateTimeTakesItsTimestamp();
    void anUpsertIsComparedWithTheTimestampOfARowWithoutUpdateTime();
    void brokenListsAreEmpty_data();
    void brokenListsAreEmpty();
    void anUnknownSyncStatusIsLocal();
    void aRowWithoutRemoteMarkIsNotRemote();
    void aRowWithoutHashGetsAComputedOne_data();
    void aRowWithoutHashGetsAComputedOne();
    void malformedTextIsRepairedOnLoading();
    void repeatedTextsAreHeldOnce();
    void operationsWithNothingToChangeWriteNothing_data();
    void operationsWithNothingToChangeWriteNothing();
    void aTombstoneOfAnUnknownIdIsARowOfItsOwn();
    void anIdGivenTwiceLeavesOneTombstone();
    void aTombstoneKeepsItsContent();
    void deletingALongTextDoesNotWriteItAgain();
    void aTombstoneOfASyncedRecordIsPending_data();
    void aTombstoneOfASyncedRecordIsPending();
    void positionIsAlwaysZero();
    void aFailedOperationLeavesNothingBehind();
    void aFullFileIsReportedAndWritingGoesOnOnceThereIsRoom();
    void aReaderNextDoorDoesNotDisturb();
    void compactionShrinksTheFile();
    void compactionOfARemovedFileCreatesNothing();
    void theFilesBelongToTheUserAlone();
    void aFileOpenToOthersIsClosedToThem();
    void aFileThatIsNoDatabaseIsRefusedAndKept();
    void theDatabaseOfAnotherProgramIsRefusedAndKept();
    void aNewerSchemaIsRefusedAndKept();
    void aMissingDirectoryIsRefused();
    void aTableWithoutItsColumnsIsRefused();
    void aHistoryThatCannotBeWrittenIsLoaded();
    void aHistoryIsWrittenAgainOnceThatIsPossible();
    void aHistoryWithALogThatCannotBeReadIsRefused();

private:
    QString path() const { return m_directory->filePath(u"clipboard_history.store"_s); }
    void open() { m_store = std::make_unique<SwiftDataClipboardHistoryStore>(path(), m_clock); }
    QString raw(const QByteArray &sql) { return RawDatabase(path()).value(sql); }
    ClipboardItem stored(const QString &text);
    ClipboardItem onlyItem();
    void preventWriting();

    std::optional<QTemporaryDir> m_directory;
    FakeClock m_clock;
    std::unique_ptr<SwiftDataClipboardHistoryStore> m_store;
};

namespace {

QByteArray upperCaseId(const ClipboardItem &item)
{
    return item.id.toByteArray(QUuid::WithoutBraces).toUpper();
}

mode_t modeOf(const QString &path)
{
    struct stat status = {};
    stat(QFile::encodeName(path).constData(), &status);
    return status.st_mode & 07777;
}

} // namespace

void SwiftDataClipboardHistoryStoreTest::init()
{
    m_directory.emplace();
    open();
}

void SwiftDataClipboardHistoryStoreTest::cleanup()
{
    m_store.reset();
}

ClipboardItem SwiftDataClipboardHistoryStoreTest::stored(const QString &text)
{
    const ClipboardItem item = textItem(text, m_clock.now());
    m_store->upsertItem(item);
    return item;
}

ClipboardItem SwiftDataClipboardHistoryStoreTest::onlyItem()
{
    const ClipboardItemList items = m_store->loadItems();
    return items.size() == 1 ? *items.first() : ClipboardItem();
}

void SwiftDataClipboardHistoryStoreTest::theColumnsCarryTheNamesOfTheAttributes()
{
    const QStringList expected{
        u"id"_s, u"position"_s, u"timestamp"_s, u"contentTypeRaw"_s, u"imageFileName"_s,
        u"imageThumbnailFileName"_s, u"imageDigest"_s, u"filePath"_s, u"fileBookmarkData"_s,
        u"fileTypesJSON"_s, u"tagsJSON"_s, u"isFavorite"_s, u"cloudRecordID"_s,
        u"syncStatusRaw"_s, u"lastSyncTime"_s, u"sourceAppBundleID"_s, u"isRemoteClipboard"_s,
        u"updatedAt"_s, u"contentHash"_s, u"deletedAt"_s, u"stringValue"_s,
        u"htmlRepresentation"_s, u"rtfRepresentation"_s};
    QCOMPARE(RawDatabase(path()).rows("SELECT name FROM pragma_table_info("
                                      "'ClipboardHistoryRecord')"),
             expected);
    QCOMPARE(raw("PRAGMA user_version"), u"1"_s);
    QCOMPARE(raw("PRAGMA journal_mode"), u"wal"_s);
}

void SwiftDataClipboardHistoryStoreTest::aRowHoldsTheValuesInTheirStoredForm()
{
    const ClipboardItem item = itemWithEveryField(timestampFromMicroseconds(1'700'000'000'123'456));
    m_store->upsertItem(item);
    QCOMPARE(raw("SELECT id FROM ClipboardHistoryRecord"), QString::fromLatin1(upperCaseId(item)));
    QCOMPARE(raw("SELECT timestamp, typeof(timestamp), updatedAt, lastSyncTime"
                 " FROM ClipboardHistoryRecord"),
             u"1700000000123456|integer|1700000060123456|1700000005123456"_s);
    QCOMPARE(raw("SELECT contentTypeRaw, syncStatusRaw, isFavorite, isRemoteClipboard, position"
                 " FROM ClipboardHistoryRecord"),
             u"file|failed|1|1|0"_s);
    QCOMPARE(raw("SELECT hex(htmlRepresentation), typeof(htmlRepresentation), typeof(stringValue)"
                 " FROM ClipboardHistoryRecord"),
             u"3C623E00FF3C2F623E|blob|text"_s);
    QCOMPARE(raw("SELECT typeof(fileTypesJSON), CAST(fileTypesJSON AS TEXT)"
                 " FROM ClipboardHistoryRecord"),
             u"blob|[\"TXT\",\"\",\"md\"]"_s);
    QCOMPARE(raw("SELECT CAST(tagsJSON AS TEXT), deletedAt FROM ClipboardHistoryRecord"),
             u"[\"work\",\"später\",\"a \\\"b\\\", c\"]|null"_s);
}

void SwiftDataClipboardHistoryStoreTest::theNewestEntryIsLoadedFirst()
{
    const auto now = m_clock.now();
    for (const auto age : {5s, 1s, 9s, 3s})
        m_store->upsertItem(textItem(u"text"_s, now - age));
    QList<Timestamp> times;
    for (const ClipboardItemPointer &item : m_store->loadItems())
        times.append(item->timestamp);
    QCOMPARE(times, (QList<Timestamp>{now - 1s, now - 3s, now - 5s, now - 9s}));
}

void SwiftDataClipboardHistoryStoreTest::aMixedEntryLoads()
{
    stored(u"text"_s);
    raw("UPDATE ClipboardHistoryRecord SET contentTypeRaw = 'mixed'");
    QCOMPARE(onlyItem().contentType, ClipboardContentType::Mixed);
}

void SwiftDataClipboardHistoryStoreTest::rowsOfTheSameTimeAllLoad()
{
    m_store->upsertItem(textItem(u"one"_s, m_clock.now()));
    m_store->upsertItem(textItem(u"other"_s, m_clock.now()));
    QCOMPARE(m_store->loadItems().size(), 2);
}

void SwiftDataClipboardHistoryStoreTest::aRowOfAnUnknownTypeIsSkippedAndStays()
{
    const ClipboardItem odd = stored(u"odd"_s);
    stored(u"kept"_s);
    raw("UPDATE ClipboardHistoryRecord SET contentTypeRaw = 'sound' WHERE id = '"
        + upperCaseId(odd) + "'");
    QCOMPARE(onlyItem().stringValue, Utf8Text(u"kept"_s));
    QCOMPARE(raw("SELECT count(*) FROM ClipboardHistoryRecord"), u"2"_s);
}

void SwiftDataClipboardHistoryStoreTest::aRowWithoutUpdateTimeTakesItsTimestamp()
{
    ClipboardItem item = textItem(u"text"_s, m_clock.now());
    item.updatedAt += 1h;
    m_store->upsertItem(item);
    raw("UPDATE ClipboardHistoryRecord SET updatedAt = NULL");
    QCOMPARE(onlyItem().updatedAt, item.timestamp);
}

void SwiftDataClipboardHistoryStoreTest::
    anUpsertIsComparedWithTheTimestampOfARowWithoutUpdateTime()
{
    ClipboardItem item = stored(u"first"_s);
    raw("UPDATE ClipboardHistoryRecord SET updatedAt = NULL");
    item.stringValue = Utf8Text(u"earlier"_s);
    item.updatedAt = item.timestamp - 1us;
    m_store->upsertItem(item);
    QCOMPARE(onlyItem().stringValue, Utf8Text(u"first"_s));
    item.updatedAt = item.timestamp;
    m_store->upsertItem(item);
    QCOMPARE(onlyItem().stringValue, Utf8Text(u"earlier"_s));
}

void SwiftDataClipboardHistoryStoreTest::brokenListsAreEmpty_data()
{
    QTest::addColumn<QByteArray>("stored");
    QTest::newRow("no bytes") << QByteArray("x''");
    QTest::newRow("an array of numbers") << QByteArray("CAST('[1, 2]' AS BLOB)");
    QTest::newRow("strings and a number") << QByteArray("CAST('[\"a\", 2]' AS BLOB)");
    QTest::newRow("an object") << QByteArray("CAST('{\"a\": 1}' AS BLOB)");
    QTest::newRow("cut off") << QByteArray("CAST('[\"a\"' AS BLOB)");
    QTest::newRow("no JSON") << QByteArray("x'FF00'");
}

void SwiftDataClipboardHistoryStoreTest::brokenListsAreEmpty()
{
    QFETCH(const QByteArray, stored);
    m_store->upsertItem(itemWithEveryField(m_clock.now()));
    raw("UPDATE ClipboardHistoryRecord SET tagsJSON = " + stored + ", fileTypesJSON = " + stored);
    QCOMPARE(m_store->loadItems().size(), 1);
    QCOMPARE(onlyItem().tags, QStringList());
    QCOMPARE(onlyItem().fileTypes, QStringList());
}

void SwiftDataClipboardHistoryStoreTest::anUnknownSyncStatusIsLocal()
{
    m_store->upsertItem(itemWithEveryField(m_clock.now()));
    raw("UPDATE ClipboardHistoryRecord SET syncStatusRaw = 'lost'");
    QCOMPARE(m_store->loadItems().size(), 1);
    QCOMPARE(onlyItem().syncStatus, SyncStatus::Local);
}

void SwiftDataClipboardHistoryStoreTest::aRowWithoutRemoteMarkIsNotRemote()
{
    m_store->upsertItem(itemWithEveryField(m_clock.now()));
    raw("UPDATE ClipboardHistoryRecord SET isRemoteClipboard = NULL");
    QCOMPARE(m_store->loadItems().size(), 1);
    QVERIFY(!onlyItem().isRemoteClipboard);
}

void SwiftDataClipboardHistoryStoreTest::aRowWithoutHashGetsAComputedOne_data()
{
    QTest::addColumn<QByteArray>("stored");
    QTest::newRow("absent") << QByteArray("NULL");
    QTest::newRow("empty") << QByteArray("''");
}

void SwiftDataClipboardHistoryStoreTest::aRowWithoutHashGetsAComputedOne()
{
    QFETCH(const QByteArray, stored);
    const ClipboardItem item = itemWithEveryField(m_clock.now());
    m_store->upsertItem(item);
    raw("UPDATE ClipboardHistoryRecord SET contentHash = " + stored);
    QCOMPARE(onlyItem().contentHash, computeContentHash(item));
}

void SwiftDataClipboardHistoryStoreTest::malformedTextIsRepairedOnLoading()
{
    stored(u"text"_s);
    raw("UPDATE ClipboardHistoryRecord SET stringValue = CAST(x'61FF62' AS TEXT)");
    QCOMPARE(onlyItem().stringValue, Utf8Text(u"a\uFFFDb"_s));
}

void SwiftDataClipboardHistoryStoreTest::repeatedTextsAreHeldOnce()
{
    for (int i = 0; i < 2; ++i) {
        ClipboardItem item = textItem(u"text"_s, m_clock.now());
        item.sourceAppBundleID = u"org.example.Editor"_s;
        item.tags = {u"work"_s};
        m_store->upsertItem(item);
    }
    const ClipboardItemList items = m_store->loadItems();
    QCOMPARE(items.size(), 2);
    QVERIFY(items[0]->sourceAppBundleID->constData() == items[1]->sourceAppBundleID->constData());
    QVERIFY(items[0]->tags.isSharedWith(items[1]->tags));
}

void SwiftDataClipboardHistoryStoreTest::operationsWithNothingToChangeWriteNothing_data()
{
    QTest::addColumn<QString>("operation");
    for (const char *operation :
         {"earlier upsert", "deletion of nothing", "hard deletion of nothing",
          "hard deletion of an unknown id", "purge without tombstones"})
        QTest::newRow(operation) << QString::fromLatin1(operation);
}

void SwiftDataClipboardHistoryStoreTest::operationsWithNothingToChangeWriteNothing()
{
    QFETCH(const QString, operation);
    ClipboardItem item = stored(u"text"_s);
    item.updatedAt -= 1us;
    RawDatabase observer(path());
    const QString before = observer.value("PRAGMA data_version");
    const qint64 logSize = QFileInfo(path() + u"-wal"_s).size();

    if (operation == u"earlier upsert")
        m_store->upsertItem(item);
    else if (operation == u"deletion of nothing")
        m_store->markItemsDeleted({});
    else if (operation == u"hard deletion of nothing")
        m_store->hardDeleteItems({});
    else if (operation == u"hard deletion of an unknown id")
        m_store->hardDeleteItems({QUuid::createUuid()});
    else
        m_store->purgeDeletedItems();

    QCOMPARE(observer.value("PRAGMA data_version"), before);
    QCOMPARE(QFileInfo(path() + u"-wal"_s).size(), logSize);
    // The measure itself must notice a write.
    stored(u"another"_s);
    QVERIFY(observer.value("PRAGMA data_version") != before);
}

void SwiftDataClipboardHistoryStoreTest::aTombstoneOfAnUnknownIdIsARowOfItsOwn()
{
    const QUuid id = QUuid::createUuid();
    m_store->markItemsDeleted({id});
    const QString now = QString::number(microsecondsSinceEpoch(m_clock.now()));
    QCOMPARE(raw("SELECT id, contentTypeRaw, syncStatusRaw, timestamp, updatedAt, deletedAt,"
                 " contentHash, stringValue, isFavorite FROM ClipboardHistoryRecord"),
             (QStringList{id.toString(QUuid::WithoutBraces).toUpper(), u"text"_s, u"pending"_s, now,
                          now, now, u"tombstone:"_s + id.toString(QUuid::WithoutBraces).toLower(),
                          u"null"_s, u"0"_s}
                  .join(u'|')));
    QVERIFY(m_store->loadItems().isEmpty());
}

void SwiftDataClipboardHistoryStoreTest::anIdGivenTwiceLeavesOneTombstone()
{
    const QUuid id = QUuid::createUuid();
    m_store->markItemsDeleted({id, id});
    QCOMPARE(raw("SELECT count(*) FROM ClipboardHistoryRecord"), u"1"_s);
}

void SwiftDataClipboardHistoryStoreTest::aTombstoneKeepsItsContent()
{
    const ClipboardItem item = stored(u"text"_s);
    m_clock.advance(1s);
    m_store->markItemsDeleted({item.id});
    const QString then = QString::number(microsecondsSinceEpoch(item.timestamp));
    const QString now = QString::number(microsecondsSinceEpoch(m_clock.now()));
    QCOMPARE(raw("SELECT stringValue, timestamp, updatedAt, deletedAt FROM ClipboardHistoryRecord"),
             (QStringList{u"text"_s, then, now, now}.join(u'|')));
}

void SwiftDataClipboardHistoryStoreTest::deletingALongTextDoesNotWriteItAgain()
{
    ClipboardItem item = textItem(u"long "_s.repeated(100'000), m_clock.now());
    item.tags = {u"work"_s};
    m_store->upsertItem(item);
    QVERIFY(onlyItem() == item);
    m_store->compactStorage(); // The log begins anew.
    m_store->markItemsDeleted({item.id});
    QVERIFY(QFileInfo(path() + u"-wal"_s).size() < 20'000);
    QCOMPARE(raw("SELECT CAST(tagsJSON AS TEXT), length(stringValue) FROM ClipboardHistoryRecord"),
             u"[\"work\"]|500000"_s);
    m_store->markItemsDeleted({item.id});
    QCOMPARE(raw("SELECT CAST(tagsJSON AS TEXT) FROM ClipboardHistoryRecord"), u"[\"work\"]"_s);
    // And back to life.
    item.updatedAt = m_clock.now() + 1s;
    m_store->upsertItem(item);
    QVERIFY(onlyItem() == item);
}

void SwiftDataClipboardHistoryStoreTest::aTombstoneOfASyncedRecordIsPending_data()
{
    QTest::addColumn<SyncStatus>("status");
    QTest::addColumn<bool>("hasCloudRecord");
    QTest::addColumn<bool>("isPending");
    QTest::newRow("local") << SyncStatus::Local << false << false;
    QTest::newRow("local with a cloud record") << SyncStatus::Local << true << true;
    QTest::newRow("synced without a cloud record") << SyncStatus::Synced << false << true;
    QTest::newRow("failed with a cloud record") << SyncStatus::Failed << true << true;
}

void SwiftDataClipboardHistoryStoreTest::aTombstoneOfASyncedRecordIsPending()
{
    QFETCH(const SyncStatus, status);
    QFETCH(const bool, hasCloudRecord);
    QFETCH(const bool, isPending);
    ClipboardItem item = textItem(u"text"_s, m_clock.now());
    item.syncStatus = status;
    item.lastSyncTime = timestampFromMicroseconds(7);
    if (hasCloudRecord)
        item.cloudRecordID = u"record"_s;
    m_store->upsertItem(item);
    m_store->markItemsDeleted({item.id});
    QCOMPARE(raw("SELECT syncStatusRaw, lastSyncTime FROM ClipboardHistoryRecord"),
             isPending ? u"pending|null"_s : u"local|7"_s);
}

void SwiftDataClipboardHistoryStoreTest::positionIsAlwaysZero()
{
    ClipboardItem item = stored(u"one"_s);
    stored(u"two"_s);
    m_store->upsertItem(item);
    m_store->markItemsDeleted({item.id, QUuid::createUuid()});
    m_store->compactStorage();
    QCOMPARE(raw("SELECT count(*), min(position), max(position) FROM ClipboardHistoryRecord"),
             u"3|0|0"_s);
}

void SwiftDataClipboardHistoryStoreTest::aFailedOperationLeavesNothingBehind()
{
    const ClipboardItem one = stored(u"one"_s);
    const ClipboardItem two = stored(u"two"_s);
    raw("CREATE TRIGGER fault BEFORE UPDATE ON ClipboardHistoryRecord"
        " WHEN new.stringValue = 'two' BEGIN SELECT raise(ABORT, 'no such luck'); END");
    try {
        m_store->markItemsDeleted({one.id, two.id});
        QFAIL("the second row cannot be changed");
    } catch (const StoreError &error) {
        QCOMPARE(error.what(), "no such luck");
    }
    QCOMPARE(m_store->loadItems().size(), 2);
    // Nothing is left open either.
    stored(u"three"_s);
    QCOMPARE(m_store->loadItems().size(), 3);
}

void SwiftDataClipboardHistoryStoreTest::aFullFileIsReportedAndWritingGoesOnOnceThereIsRoom()
{
    stored(u"one"_s);
    // The limit on the size of files stands for the end of the disk.
    QCOMPARE(raw("PRAGMA page_size"), u"1024"_s);
    rlimit before = {};
    getrlimit(RLIMIT_FSIZE, &before);
    const auto previousHandler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit tight = {rlim_t(QFileInfo(path() + u"-wal"_s).size() + 2048), before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &tight);
    bool hasFailed = false;
    try {
        m_store->upsertItem(textItem(u"x"_s.repeated(100'000), m_clock.now()));
    } catch (const StoreError &) {
        hasFailed = true;
    }
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, previousHandler);

    QVERIFY(hasFailed);
    QCOMPARE(onlyItem().stringValue, Utf8Text(u"one"_s));
    stored(u"two"_s);
    QCOMPARE(m_store->loadItems().size(), 2);
    QCOMPARE(raw("PRAGMA integrity_check"), u"ok"_s);
}

void SwiftDataClipboardHistoryStoreTest::aReaderNextDoorDoesNotDisturb()
{
    stored(u"one"_s);
    RawDatabase reader(path());
    reader.rows("BEGIN");
    QCOMPARE(reader.value("SELECT count(*) FROM ClipboardHistoryRecord"), u"1"_s);
    const ClipboardItem two = stored(u"two"_s);
    m_store->markItemsDeleted({two.id});
    m_store->purgeDeletedItems();
    reader.rows("COMMIT");
    QCOMPARE(reader.value("SELECT count(*) FROM ClipboardHistoryRecord"), u"1"_s);
}

void SwiftDataClipboardHistoryStoreTest::compactionShrinksTheFile()
{
    QList<QUuid> ids;
    for (int i = 0; i < 200; ++i)
        ids.append(stored(QString::number(i).repeated(3'000)).id);
    stored(u"kept"_s);
    m_store->compactStorage();
    const qint64 before = QFileInfo(path()).size();
    QVERIFY(before > 1'000'000);
    m_store->hardDeleteItems(ids);
    m_store->compactStorage();
    QVERIFY(QFileInfo(path()).size() < 100'000);
    QCOMPARE(QFileInfo(path() + u"-wal"_s).size(), 0);
    QCOMPARE(onlyItem().stringValue, Utf8Text(u"kept"_s));
}

void SwiftDataClipboardHistoryStoreTest::compactionOfARemovedFileCreatesNothing()
{
    QVERIFY(QFile::remove(path()));
    try {
        m_store->compactStorage();
        QFAIL("there is no file to open");
    } catch (const StoreError &error) {
        QCOMPARE(QString::fromUtf8(error.what()),
                 u"Failed to open SQLite database at "_s + path());
    }
    QVERIFY(!QFileInfo::exists(path()));
}

void SwiftDataClipboardHistoryStoreTest::theFilesBelongToTheUserAlone()
{
    for (const mode_t mask : {0u, 022u, 0277u}) {
        m_store.reset();
        QFile::remove(path());
        const mode_t before = umask(mask);
        open();
        stored(u"text"_s);
        umask(before);
        QCOMPARE(modeOf(path()), mode_t(0600));
        QCOMPARE(modeOf(path() + u"-wal"_s), mode_t(0600));
        QCOMPARE(modeOf(path() + u"-shm"_s), mode_t(0600));
    }
}

void SwiftDataClipboardHistoryStoreTest::aFileOpenToOthersIsClosedToThem()
{
    stored(u"text"_s);
    m_store.reset();
    QVERIFY(QFile::setPermissions(path(), QFile::Permissions(0x6644)));
    open();
    QCOMPARE(modeOf(path()), mode_t(0600));
    QCOMPARE(m_store->loadItems().size(), 1);
}

void SwiftDataClipboardHistoryStoreTest::aFileThatIsNoDatabaseIsRefusedAndKept()
{
    const QString other = m_directory->filePath(u"letter"_s);
    const QByteArray letter = QByteArray("Dear all, ").repeated(500);
    write(other, letter);
    try {
        SwiftDataClipboardHistoryStore store(other, m_clock);
        QFAIL("a letter is no database");
    } catch (const StoreError &error) {
        QCOMPARE(QString::fromUtf8(error.what()),
                 u"Failed to open the history %1: file is not a database"_s.arg(other));
    }
    QCOMPARE(contentOf(other), letter);
}

void SwiftDataClipboardHistoryStoreTest::theDatabaseOfAnotherProgramIsRefusedAndKept()
{
    const QString other = m_directory->filePath(u"other.db"_s);
    RawDatabase(other).rows("CREATE TABLE songs (title TEXT)");
    const QByteArray before = contentOf(other);
    QVERIFY_EXCEPTION_THROWN(SwiftDataClipboardHistoryStore(other, m_clock), StoreError);
    QCOMPARE(contentOf(other), before);
}

void SwiftDataClipboardHistoryStoreTest::aNewerSchemaIsRefusedAndKept()
{
    stored(u"text"_s);
    m_store.reset();
    raw("PRAGMA user_version = 2");
    QVERIFY_EXCEPTION_THROWN(open(), StoreError);
    QCOMPARE(raw("SELECT count(*) FROM ClipboardHistoryRecord"), u"1"_s);
    raw("PRAGMA user_version = 1");
    open();
    QCOMPARE(m_store->loadItems().size(), 1);
}

void SwiftDataClipboardHistoryStoreTest::aMissingDirectoryIsRefused()
{
    const QString missing = m_directory->filePath(u"nowhere/history.store"_s);
    QVERIFY_EXCEPTION_THROWN(SwiftDataClipboardHistoryStore(missing, m_clock), StoreError);
    QVERIFY(!QFileInfo::exists(m_directory->filePath(u"nowhere"_s)));
}

void SwiftDataClipboardHistoryStoreTest::aTableWithoutItsColumnsIsRefused()
{
    m_store.reset();
    raw("ALTER TABLE ClipboardHistoryRecord DROP COLUMN tagsJSON");
    QVERIFY_EXCEPTION_THROWN(open(), StoreError);
}

/// The log cannot be used without its shared memory, which links are not taken for.
void SwiftDataClipboardHistoryStoreTest::preventWriting()
{
    m_store.reset();
    QVERIFY(!QFileInfo::exists(path() + u"-shm"_s));
    QVERIFY(QFile::link(m_directory->filePath(u"nothing"_s), path() + u"-shm"_s));
}

void SwiftDataClipboardHistoryStoreTest::aHistoryThatCannotBeWrittenIsLoaded()
{
    const ClipboardItem one = stored(u"one"_s);
    preventWriting();
    open();
    QCOMPARE(onlyItem().stringValue, Utf8Text(u"one"_s));
    QVERIFY_EXCEPTION_THROWN(stored(u"two"_s), StoreError);
    QVERIFY_EXCEPTION_THROWN(m_store->markItemsDeleted({one.id}), StoreError);
    QVERIFY_EXCEPTION_THROWN(m_store->hardDeleteItems({one.id}), StoreError);
    QVERIFY_EXCEPTION_THROWN(m_store->purgeDeletedItems(), StoreError);
    QCOMPARE(onlyItem().stringValue, Utf8Text(u"one"_s));
}

void SwiftDataClipboardHistoryStoreTest::aHistoryIsWrittenAgainOnceThatIsPossible()
{
    const QString longText = u"long "_s.repeated(50'000);
    stored(longText);
    preventWriting();
    open();
    const ClipboardItem loaded = onlyItem();
    QVERIFY(QFile::remove(path() + u"-shm"_s));

    stored(u"two"_s);
    QCOMPARE(m_store->loadItems().size(), 2);
    // What was loaded before is read back from where it is now.
    QCOMPARE(loaded.stringValue, Utf8Text(longText));
    m_store->markItemsDeleted({loaded.id});
    QCOMPARE(onlyItem().stringValue, Utf8Text(u"two"_s));
}

void SwiftDataClipboardHistoryStoreTest::aHistoryWithALogThatCannotBeReadIsRefused()
{
    stored(u"one"_s);
    preventWriting();
    write(path() + u"-wal"_s, "the latest copies");
    QVERIFY_EXCEPTION_THROWN(open(), StoreError);
    QCOMPARE(contentOf(path() + u"-wal"_s), "the latest copies");
}

QTEST_APPLESS_MAIN(SwiftDataClipboardHistoryStoreTest)
#include "SwiftDataClipboardHistoryStoreTest.moc"
