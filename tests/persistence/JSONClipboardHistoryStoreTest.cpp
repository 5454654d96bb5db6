#include "persistence/JSONClipboardHistoryStore.h"
#include "tests/fakes/FakeClock.h"
#include "tests/fakes/SampleItems.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

#include <nlohmann/json.hpp>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class JSONClipboardHistoryStoreTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void loadingAMissingFileCreatesNone();
    void theFileIsOneArrayOnOneLine();
    void anEarlierUpsertLeavesTheFileAsItIs();
    void loadingARecordWithoutHashDoesNotRewriteTheFile();
    void theFileIsWrittenOverInPlace();
    void aReplacedRecordKeepsItsPlace();
    void datesLoseWhatIsFinerThanASecond();
    void aTombstoneOfAnUnknownIdIsAppended();
    void anIdGivenTwiceLeavesTwoTombstones();
    void theLastOfEqualIdsIsMarkedDeleted();
    void aTombstoneOfASyncedRecordIsPending();
    void aTombstoneOfALocalRecordStaysLocal();
    void hardDeletionCreatesAnEmptyArray();
    void purgingCreatesAnEmptyArray();
    void purgingKeepsTheOrderOfTheLiveEntries();
    void aDamagedFileIsNeverWrittenOver_data();
    void aDamagedFileIsNeverWrittenOver();
    void anUnreadableFileFails();
    void aFileThatCannotBeWrittenFails();
    void theFileBelongsToTheUserAlone();

private:
    QString path() const { return m_directory->filePath(u"clipboard_history.json"_s); }
    QByteArray content() const;
    nlohmann::ordered_json json() const;
    void write(const QByteArray &bytes) const;
    ClipboardItem stored(const QString &text);

    std::optional<QTemporaryDir> m_directory;
    FakeClock m_clock;
    std::optional<JSONClipboardHistoryStore> m_store;
};

void JSONClipboardHistoryStoreTest::init()
{
    m_directory.emplace();
    m_store.emplace(path(), m_clock);
}

QByteArray JSONClipboardHistoryStoreTest::content() const
{
    QFile file(path());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

nlohmann::ordered_json JSONClipboardHistoryStoreTest::json() const
{
    return nlohmann::ordered_json::parse(content().toStdString());
}

void JSONClipboardHistoryStoreTest::write(const QByteArray &bytes) const
{
    QFile file(path());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

ClipboardItem JSONClipboardHistoryStoreTest::stored(const QString &text)
{
    const ClipboardItem item = textItem(text, m_clock.now());
    m_store->upsertItem(item);
    return item;
}

void JSONClipboardHistoryStoreTest::loadingAMissingFileCreatesNone()
{
    QVERIFY(m_store->loadItems().isEmpty());
    QVERIFY(!QFileInfo::exists(path()));
}

void JSONClipboardHistoryStoreTest::theFileIsOneArrayOnOneLine()
{
    const ClipboardItem one = stored(u"one\ntwo"_s);
    const ClipboardItem two = stored(u"three"_s);
    QVERIFY(content().startsWith("[{\"id\":\"" + one.id.toByteArray(QUuid::WithoutBraces).toUpper()
                                 + "\",\"timestamp\":\"2026-04-12T13:20:00Z\",\"contentType\":"));
    QVERIFY(!content().contains('\n'));
    QCOMPARE(content().toStdString(), json().dump()); // No blanks between the values.
    QCOMPARE(json().size(), size_t(2));
    QCOMPARE(json()[1]["stringValue"], "three");
}

void JSONClipboardHistoryStoreTest::anEarlierUpsertLeavesTheFileAsItIs()
{
    ClipboardItem item = stored(u"text"_s);
    const QByteArray before = content();
    item.updatedAt -= 1s;
    item.stringValue = Utf8Text(u"too late"_s);
    m_store->upsertItem(item);
    QCOMPARE(content(), before);
}

void JSONClipboardHistoryStoreTest::loadingARecordWithoutHashDoesNotRewriteTheFile()
{
    const ClipboardItem item = stored(u"text"_s);
    write(content().replace("\"contentHash\":\"" + item.contentHash + "\"",
                            "\"contentHash\":\"\""));
    const QByteArray before = content();
    QVERIFY(!before.contains(item.contentHash));
    QCOMPARE(m_store->loadItems().first()->contentHash, item.contentHash);
    QCOMPARE(content(), before);
}

void JSONClipboardHistoryStoreTest::theFileIsWrittenOverInPlace()
{
    const ClipboardItem item = stored(u"text"_s.repeated(1'000));
    struct stat before = {};
    QCOMPARE(stat(QFile::encodeName(path()).constData(), &before), 0);
    m_store->hardDeleteItems({item.id});
    struct stat after = {};
    QCOMPARE(stat(QFile::encodeName(path()).constData(), &after), 0);
    QCOMPARE(after.st_ino, before.st_ino);
    QCOMPARE(content(), "[]");
    QCOMPARE(QDir(m_directory->path()).entryList(QDir::Files | QDir::Hidden),
             QStringList{u"clipboard_history.json"_s});
}

void JSONClipboardHistoryStoreTest::aReplacedRecordKeepsItsPlace()
{
    ClipboardItem one = stored(u"one"_s);
    stored(u"two"_s);
    one.stringValue = Utf8Text(u"first"_s);
    m_store->upsertItem(one);
    QCOMPARE(json()[0]["stringValue"], "first");
    QCOMPARE(json()[1]["stringValue"], "two");
}

void JSONClipboardHistoryStoreTest::datesLoseWhatIsFinerThanASecond()
{
    m_clock.advance(999'999us);
    const ClipboardItem item = stored(u"text"_s);
    QCOMPARE(m_store->loadItems().first()->timestamp, item.timestamp - 999'999us);
}

void JSONClipboardHistoryStoreTest::aTombstoneOfAnUnknownIdIsAppended()
{
    stored(u"kept"_s);
    const QUuid id = QUuid::createUuid();
    m_store->markItemsDeleted({id});
    const auto tombstone = json()[1];
    const std::string lowerCase = id.toString(QUuid::WithoutBraces).toLower().toStdString();
    QCOMPARE(tombstone["contentHash"], "tombstone:" + lowerCase);
    QCOMPARE(tombstone["syncStatus"], "pending");
    QCOMPARE(tombstone["contentType"], "text");
    QCOMPARE(tombstone["deletedAt"], tombstone["timestamp"]);
    QCOMPARE(tombstone["updatedAt"], tombstone["timestamp"]);
    QVERIFY(!tombstone.contains("stringValue"));
    QCOMPARE(m_store->loadItems().size(), 1);
}

void JSONClipboardHistoryStoreTest::anIdGivenTwiceLeavesTwoTombstones()
{
    const QUuid id = QUuid::createUuid();
    m_store->markItemsDeleted({id, id});
    QCOMPARE(json().size(), size_t(2));
}

void JSONClipboardHistoryStoreTest::theLastOfEqualIdsIsMarkedDeleted()
{
    const ClipboardItem item = stored(u"text"_s);
    auto doubled = json();
    doubled.push_back(doubled[0]);
    write(QByteArray::fromStdString(doubled.dump()));
    m_store->markItemsDeleted({item.id});
    QVERIFY(!json()[0].contains("deletedAt"));
    QVERIFY(json()[1].contains("deletedAt"));
}

void JSONClipboardHistoryStoreTest::aTombstoneOfASyncedRecordIsPending()
{
    const ClipboardItem item = itemWithEveryField(m_clock.now());
    m_store->upsertItem(item);
    m_clock.advance(1h);
    m_store->markItemsDeleted({item.id});
    const auto tombstone = json()[0];
    QCOMPARE(tombstone["syncStatus"], "pending");
    QVERIFY(!tombstone.contains("lastSyncTime"));
    QCOMPARE(tombstone["deletedAt"], "2026-04-12T14:20:00Z");
    QCOMPARE(tombstone["updatedAt"], "2026-04-12T14:20:00Z");
    QCOMPARE(tombstone["timestamp"], "2026-04-12T13:20:00Z");
    QVERIFY(tombstone.contains("stringValue"));
}

void JSONClipboardHistoryStoreTest::aTombstoneOfALocalRecordStaysLocal()
{
    ClipboardItem item = textItem(u"text"_s, m_clock.now());
    item.lastSyncTime = m_clock.now();
    m_store->upsertItem(item);
    m_store->markItemsDeleted({item.id});
    QCOMPARE(json()[0]["syncStatus"], "local");
    QVERIFY(json()[0].contains("lastSyncTime"));
}

void JSONClipboardHistoryStoreTest::hardDeletionCreatesAnEmptyArray()
{
    m_store->hardDeleteItems({QUuid::createUuid()});
    QCOMPARE(content(), "[]");
}

void JSONClipboardHistoryStoreTest::purgingCreatesAnEmptyArray()
{
    m_store->purgeDeletedItems();
    QCOMPARE(content(), "[]");
}

void JSONClipboardHistoryStoreTest::purgingKeepsTheOrderOfTheLiveEntries()
{
    QList<QUuid> ids;
    for (const QString &text : {u"c"_s, u"x"_s, u"a"_s, u"y"_s, u"b"_s})
        ids.append(stored(text).id);
    m_store->markItemsDeleted({ids[1], ids[3]});
    m_store->purgeDeletedItems();
    QStringList texts;
    for (const ClipboardItemPointer &item : m_store->loadItems())
        texts.append(item->stringValue->toString());
    QCOMPARE(texts, (QStringList{u"c"_s, u"a"_s, u"b"_s}));
    QCOMPARE(json().size(), size_t(3));
}

void JSONClipboardHistoryStoreTest::aDamagedFileIsNeverWrittenOver_data()
{
    QTest::addColumn<QByteArray>("damage");
    QTest::newRow("cut off") << QByteArray("[{\"id\":");
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("no JSON") << QByteArray("\xFF\xFE");
    QTest::newRow("no array") << QByteArray("{}");
    QTest::newRow("one entry without a time")
        << QByteArray("[{\"id\":\"11111111-2222-3333-4444-555555555555\","
                      "\"contentType\":\"text\"}]");
}

void JSONClipboardHistoryStoreTest::aDamagedFileIsNeverWrittenOver()
{
    QFETCH(const QByteArray, damage);
    write(damage);
    const ClipboardItem item = textItem(u"text"_s, m_clock.now());
    QVERIFY_EXCEPTION_THROWN(m_store->loadItems(), StoreError);
    QVERIFY_EXCEPTION_THROWN(m_store->upsertItem(item), StoreError);
    QVERIFY_EXCEPTION_THROWN(m_store->markItemsDeleted({item.id}), StoreError);
    QVERIFY_EXCEPTION_THROWN(m_store->hardDeleteItems({item.id}), StoreError);
    QVERIFY_EXCEPTION_THROWN(m_store->purgeDeletedItems(), StoreError);
    // These have no reason to read it.
    m_store->markItemsDeleted({});
    m_store->hardDeleteItems({});
    m_store->compactStorage();
    QCOMPARE(content(), damage);
}

void JSONClipboardHistoryStoreTest::anUnreadableFileFails()
{
    QVERIFY(QDir().mkpath(path()));
    QVERIFY_EXCEPTION_THROWN(m_store->loadItems(), StoreError);
}

void JSONClipboardHistoryStoreTest::aFileThatCannotBeWrittenFails()
{
    JSONClipboardHistoryStore store(m_directory->filePath(u"nowhere/history.json"_s), m_clock);
    QVERIFY(store.loadItems().isEmpty());
    QVERIFY_EXCEPTION_THROWN(store.upsertItem(textItem(u"text"_s, m_clock.now())), StoreError);
}

void JSONClipboardHistoryStoreTest::theFileBelongsToTheUserAlone()
{
    const mode_t before = umask(0);
    stored(u"text"_s);
    umask(before);
    struct stat status = {};
    QCOMPARE(stat(QFile::encodeName(path()).constData(), &status), 0);
    QCOMPARE(status.st_mode & 07777, mode_t(0600));
}

QTEST_APPLESS_MAIN(JSONClipboardHistoryStoreTest)
#include "JSONClipboardHistoryStoreTest.moc"
