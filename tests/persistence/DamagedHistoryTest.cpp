#include "tests/persistence/HistoryOnDisk.h"
#include "tests/persistence/WholeFile.h"

#include <QDir>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The whole history on files that are damaged, locked or not ours: the program starts, says what is
/// wrong, and leaves alone what it cannot read.
class DamagedHistoryTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void whatIsNoHistoryIsLeftAloneAndTheJsonFileUsed_data();
    void whatIsNoHistoryIsLeftAloneAndTheJsonFileUsed();
    void aDirectoryInPlaceOfTheDatabaseIsLeftAlone();
    void anEmptyFileBecomesADatabase();
    void aCutOffDatabaseIsLeftAlone_data();
    void aCutOffDatabaseIsLeftAlone();
    void aDamagedPageLeavesTheDatabaseAlone();
    void damageIsNotForgottenWhenWritingBecomesPossible();
    void aDamagedLogCostsNoMoreThanTheLog_data();
    void aDamagedLogCostsNoMoreThanTheLog();
    void aLockedDatabaseLoadsAndMissesOnlyWhatIsCopiedMeanwhile();
    void aCommitNextDoorIsWaitedFor();
    void aDatabaseThatAnotherProgramKeepsIsLeftAlone();
    void oddValuesKeepNoRowFromLoading_data();
    void oddValuesKeepNoRowFromLoading();

private:
    void fill(int count);
    QByteArray damageTable() const;

    std::optional<HistoryOnDisk> m_history;
};

namespace {

constexpr qint64 kPageSize = 1024;
constexpr auto kYear = std::chrono::hours(24 * 365);

QString textOf(int number)
{
    return u"entry %1 "_s.arg(number).repeated(200);
}

} // namespace

void DamagedHistoryTest::init()
{
    m_history.emplace();
}

/// Leaves a history of \a count entries behind, all of them in the database file.
void DamagedHistoryTest::fill(int count)
{
    m_history->start();
    for (int i = 0; i < count; ++i)
        m_history->add(textOf(i));
    m_history->end();
}

void DamagedHistoryTest::whatIsNoHistoryIsLeftAloneAndTheJsonFileUsed_data()
{
    QTest::addColumn<QByteArray>("sql");
    QTest::newRow("no database") << QByteArray();
    QTest::newRow("a later version") << QByteArray("PRAGMA user_version = 2");
    QTest::newRow("a version below all") << QByteArray("PRAGMA user_version = -1");
    const QByteArray songs = "DROP TABLE ClipboardHistoryRecord; CREATE TABLE songs (title TEXT);"
                             "PRAGMA journal_mode = DELETE;";
    for (const QByteArray &version : {"-1"_ba, "0"_ba, "1"_ba, "2"_ba})
        QTest::addRow("another program's, of version %s", version.constData())
            << songs + "PRAGMA user_version = " + version;
}

void DamagedHistoryTest::whatIsNoHistoryIsLeftAloneAndTheJsonFileUsed()
{
    QFETCH(const QByteArray, sql);
    fill(10);
    if (sql.isEmpty())
        write(m_history->databasePath(), QByteArray("Dear all, ").repeated(1'000));
    else
        RawDatabase(m_history->databasePath()).rows(sql);
    const QByteArray before = contentOf(m_history->databasePath());

    m_history->start();
    QVERIFY2(m_history->isFallback(), qPrintable(m_history->printed().join(u'\n')));
    QVERIFY(m_history->manager().items().isEmpty());
    m_history->add(u"meanwhile"_s);
    m_history->end();
    m_history->start();
    QVERIFY(m_history->isFallback());
    QCOMPARE(m_history->texts(), QStringList{u"meanwhile"_s});
    m_history->end();
    QCOMPARE(contentOf(m_history->databasePath()), before);
}

void DamagedHistoryTest::aDirectoryInPlaceOfTheDatabaseIsLeftAlone()
{
    QVERIFY(QDir().mkpath(m_history->databasePath()));
    m_history->start();
    QVERIFY(m_history->isFallback());
    m_history->add(u"meanwhile"_s);
    m_history->end();
    QVERIFY(QDir(m_history->databasePath()).isEmpty());
    QVERIFY(contentOf(m_history->jsonPath()).contains("meanwhile"));
}

void DamagedHistoryTest::anEmptyFileBecomesADatabase()
{
    write(m_history->databasePath(), {});
    m_history->start();
    QCOMPARE(m_history->printed(), QStringList{u"Loaded 0 items from disk"_s});
    m_history->add(u"text"_s);
    m_history->end();
    m_history->start();
    QCOMPARE(m_history->texts(), QStringList{u"text"_s});
}

void DamagedHistoryTest::aCutOffDatabaseIsLeftAlone_data()
{
    QTest::addColumn<int>("percent");
    for (const int percent : {1, 3, 30, 98})
        QTest::addRow("%d percent left", percent) << percent;
}

void DamagedHistoryTest::aCutOffDatabaseIsLeftAlone()
{
    QFETCH(const int, percent);
    fill(40);
    QFile file(m_history->databasePath());
    QVERIFY(file.size() > 50 * kPageSize);
    QVERIFY(file.resize(file.size() * percent / 100));
    const QByteArray before = contentOf(m_history->databasePath());

    m_history->start();
    QVERIFY(m_history->isFallback());
    m_history->add(u"meanwhile"_s);
    m_history->end();
    QCOMPARE(contentOf(m_history->databasePath()), before);
    QVERIFY(contentOf(m_history->jsonPath()).contains("meanwhile"));
}

/// Damages the page that all others of the table hang on. Returns what the file holds then.
QByteArray DamagedHistoryTest::damageTable() const
{
    const qsizetype page
        = RawDatabase(m_history->databasePath())
              .value("SELECT rootpage FROM sqlite_schema WHERE name = 'ClipboardHistoryRecord'")
              .toInt();
    QByteArray bytes = contentOf(m_history->databasePath());
    bytes.replace((page - 1) * kPageSize, kPageSize, QByteArray(kPageSize, '\xA5'));
    write(m_history->databasePath(), bytes);
    return bytes;
}

void DamagedHistoryTest::aDamagedPageLeavesTheDatabaseAlone()
{
    fill(40);
    const QByteArray bytes = damageTable();
    m_history->start();
    QCOMPARE(m_history->printed(),
             QStringList{u"Failed to load clipboard history: database disk image is malformed"_s});
    QVERIFY(m_history->manager().items().isEmpty());
    m_history->add(u"meanwhile"_s);
    QCOMPARE(m_history->texts(), QStringList{u"meanwhile"_s});
    m_history->manager().removeItem(m_history->manager().items().first()->id, {});
    m_history->manager().clearHistory(ClipboardItemManager::Favorites::Clear, {});
    m_history->end();
    const QString reason = u": the database is damaged, and is left as it is"_s;
    QCOMPARE(m_history->printed().mid(1),
             (QStringList{u"Failed to persist clipboard item"_s + reason,
                          u"Failed to delete clipboard item"_s + reason,
                          u"Failed to delete clipboard items"_s + reason}));
    QCOMPARE(contentOf(m_history->databasePath()), bytes);
}

void DamagedHistoryTest::damageIsNotForgottenWhenWritingBecomesPossible()
{
    fill(40);
    const QByteArray bytes = damageTable();
    // Keeps the log from being made, and so stands for a disk that cannot be written.
    const QString indexPath = m_history->databasePath() + u"-shm"_s;
    QVERIFY(QFile::link(m_history->base() + u"/nothing"_s, indexPath));
    m_history->start();
    QCOMPARE(m_history->printed(),
             QStringList{u"Failed to load clipboard history: database disk image is malformed"_s});
    QVERIFY(QFile::remove(indexPath));
    m_history->add(u"meanwhile"_s);
    QCOMPARE(m_history->printed().last(), u"Failed to persist clipboard item: the database is "
                                          "damaged, and is left as it is"_s);
    m_history->end();
    QCOMPARE(contentOf(m_history->databasePath()), bytes);
}

void DamagedHistoryTest::aDamagedLogCostsNoMoreThanTheLog_data()
{
    QTest::addColumn<qsizetype>("begin");
    QTest::addColumn<bool>("isCut");
    QTest::newRow("from its start") << qsizetype(0) << false;
    QTest::newRow("in its first frame") << qsizetype(100) << false;
    QTest::newRow("cut in its header") << qsizetype(10) << true;
    QTest::newRow("cut in a frame") << qsizetype(2'000) << true;
}

void DamagedHistoryTest::aDamagedLogCostsNoMoreThanTheLog()
{
    QFETCH(const qsizetype, begin);
    QFETCH(const bool, isCut);
    fill(3);
    m_history->start();
    m_history->add(u"in the log"_s);
    QByteArray log = contentOf(m_history->logPath());
    QVERIFY(log.size() > begin);
    // What a kill leaves behind: the log, and no end of the connection.
    const QByteArray database = contentOf(m_history->databasePath());
    m_history->end();
    write(m_history->databasePath(), database);
    log.truncate(isCut ? begin : log.size());
    log.replace(begin, log.size() - begin, QByteArray(log.size() - begin, '\xA5'));
    write(m_history->logPath(), log);

    m_history->start();
    QCOMPARE(m_history->printed(), QStringList{u"Loaded 3 items from disk"_s});
    m_history->add(u"goes on"_s);
    m_history->end();
    m_history->start();
    QCOMPARE(m_history->manager().items().size(), 4);
    QCOMPARE(RawDatabase(m_history->databasePath()).value("PRAGMA integrity_check"), u"ok"_s);
}

void DamagedHistoryTest::aLockedDatabaseLoadsAndMissesOnlyWhatIsCopiedMeanwhile()
{
    fill(3);
    RawDatabase other(m_history->databasePath());
    other.rows("BEGIN EXCLUSIVE");
    m_history->start();
    QCOMPARE(m_history->printed(), QStringList{u"Loaded 3 items from disk"_s});
    m_history->add(u"meanwhile"_s);
    QCOMPARE(m_history->printed().mid(1),
             QStringList{u"Failed to persist clipboard item: database is locked"_s});
    QCOMPARE(m_history->texts().first(), u"meanwhile"_s);
    other.rows("COMMIT");
    m_history->add(u"afterwards"_s);
    m_history->end();
    m_history->start();
    QCOMPARE(m_history->texts().first(), u"afterwards"_s);
    QCOMPARE(m_history->texts().size(), 4);
}

void DamagedHistoryTest::aCommitNextDoorIsWaitedFor()
{
    fill(1);
    m_history->start();
    RawDatabase other(m_history->databasePath());
    other.rows("BEGIN EXCLUSIVE");
    m_history->manager().addItem(textItem(u"meanwhile"_s, m_history->clock().now() + 1s));
    m_history->manager().items();
    other.rows("COMMIT");
    m_history->end();
    m_history->start();
    QCOMPARE(m_history->texts().first(), u"meanwhile"_s);
}

void DamagedHistoryTest::aDatabaseThatAnotherProgramKeepsIsLeftAlone()
{
    fill(3);
    {
        RawDatabase other(m_history->databasePath());
        other.rows("PRAGMA locking_mode = EXCLUSIVE");
        other.rows("UPDATE ClipboardHistoryRecord SET isFavorite = 1");
        m_history->start();
        QVERIFY(m_history->isFallback());
        QVERIFY(m_history->printed().first().endsWith(u"database is locked"_s));
        m_history->add(u"meanwhile"_s);
        m_history->end();
    }
    m_history->start();
    QCOMPARE(m_history->manager().items().size(), 3);
    QVERIFY(!m_history->texts().contains(u"meanwhile"_s));
}

void DamagedHistoryTest::oddValuesKeepNoRowFromLoading_data()
{
    QTest::addColumn<QByteArrayList>("values");
    QTest::addColumn<bool>("areLoaded");
    for (const char *column : {"id", "contentTypeRaw"})
        QTest::newRow(column) << QByteArrayList{"NULL", "''", "7", "'x'", "x'FF00'"} << false;
    for (const char *column : {"position", "timestamp", "isFavorite", "lastSyncTime",
                               "isRemoteClipboard", "updatedAt"})
        QTest::newRow(column) << QByteArrayList{"NULL",  "'long ago'", "x'FF00'",
                                                "1.5",   "-1e300",     "-9223372036854775808"}
                              << true;
    // A later update time would have every change turned away, as it should.
    QTest::newRow("timestamp") << QByteArrayList{"1e300", "9223372036854775807"} << true;
    for (const char *column :
         {"imageFileName", "imageThumbnailFileName", "imageDigest", "filePath", "fileBookmarkData",
          "fileTypesJSON", "tagsJSON", "cloudRecordID", "syncStatusRaw", "sourceAppBundleID",
          "contentHash", "stringValue", "htmlRepresentation", "rtfRepresentation"})
        QTest::newRow(column) << QByteArrayList{"NULL",
                                                "7",
                                                "1.5",
                                                "x'FF80'",
                                                "CAST(x'41FFC3' AS TEXT)",
                                                "randomblob(5000)",
                                                "CAST(randomblob(5000) AS TEXT)"}
                              << true;
}

void DamagedHistoryTest::oddValuesKeepNoRowFromLoading()
{
    const QByteArray column = QTest::currentDataTag();
    QFETCH(const QByteArrayList, values);
    QFETCH(const bool, areLoaded);
    fill(1 + int(values.size()));
    {
        RawDatabase database(m_history->databasePath());
        database.rows("PRAGMA writable_schema = ON; UPDATE sqlite_schema"
                      " SET sql = replace(sql, 'NOT NULL', '')");
        database.rows("PRAGMA writable_schema = RESET");
        for (qsizetype i = 0; i < values.size(); ++i) {
            const QByteArray row = QByteArray::number(i + 2);
            const QByteArray change = "UPDATE ClipboardHistoryRecord SET " + column + " = "
                + values.at(i) + " WHERE rowid = " + row + " RETURNING 'done'";
            QCOMPARE(database.value(change), u"done"_s);
        }
    }

    m_history->start();
    const ClipboardItemList loaded = m_history->manager().items();
    QCOMPARE(loaded.size(), areLoaded ? 1 + values.size() : 1);
    QVERIFY(m_history->texts().contains(textOf(0)));
    // Whatever it holds, it can be shown and changed like any other.
    for (const ClipboardItemPointer &item : loaded) {
        item->singleLinePreview(80);
        QVERIFY(std::chrono::abs(item->timestamp - m_history->clock().now()) < 10'000 * kYear);
        m_history->clock().advance(1s);
        m_history->manager().toggleFavorite(item->id);
        m_history->manager().updateTags(item->id, {u"work"_s});
    }
    QVERIFY(m_history->manager().diskUsageBytes() > 0);
    m_history->end();
    QCOMPARE(m_history->printed().size(), 1);
    m_history->start();
    QCOMPARE(m_history->manager().items().size(), loaded.size());
    for (const ClipboardItemPointer &item : m_history->manager().items())
        QCOMPARE(item->tags, QStringList{u"work"_s});
}

QTEST_APPLESS_MAIN(DamagedHistoryTest)
#include "DamagedHistoryTest.moc"
