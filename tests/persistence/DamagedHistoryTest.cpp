#include "core/ClipboardItemManager.h"
#include "foundation/UserDefaults.h"
#include "persistence/OpenHistoryStore.h"
#include "tests/fakes/FakeClock.h"
#include "tests/fakes/PrintedLines.h"
#include "tests/fakes/SampleItems.h"
#include "tests/persistence/RawDatabase.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
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
    void cleanup();

    void whatIsNoHistoryIsLeftAloneAndTheJsonFileUsed_data();
    void whatIsNoHistoryIsLeftAloneAndTheJsonFileUsed();
    void aDirectoryInPlaceOfTheDatabaseIsLeftAlone();
    void anEmptyFileBecomesADatabase();
    void aCutOffDatabaseIsLeftAlone_data();
    void aCutOffDatabaseIsLeftAlone();
    void aDamagedPageLeavesTheDatabaseAlone();
    void aDamagedLogCostsNoMoreThanTheLog_data();
    void aDamagedLogCostsNoMoreThanTheLog();
    void aLockedDatabaseLoadsAndMissesOnlyWhatIsCopiedMeanwhile();
    void aCommitNextDoorIsWaitedFor();
    void aDatabaseThatAnotherProgramKeepsIsLeftAlone();
    void oddValuesKeepNoRowFromLoading_data();
    void oddValuesKeepNoRowFromLoading();

private:
    QString base() const { return m_directory->path(); }
    QString databasePath() const { return base() + u"/clipboard_history.store"_s; }
    QString logPath() const { return databasePath() + u"-wal"_s; }
    QString jsonPath() const { return base() + u"/clipboard_history.json"_s; }
    void start();
    void end() { m_manager.reset(); }
    void add(const QString &text);
    void fill(int count);
    QStringList texts() const;
    bool isFallback() const;

    std::optional<QTemporaryDir> m_directory;
    FakeClock m_clock;
    std::optional<PrintedLines> m_printed;
    std::unique_ptr<UserDefaults> m_defaults;
    std::unique_ptr<ClipboardItemManager> m_manager;
};

namespace {

constexpr qint64 kPageSize = 1024;
constexpr auto kYear = std::chrono::hours(24 * 365);

QString textOf(int number)
{
    return u"entry %1 "_s.arg(number).repeated(200);
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), bytes.size());
}

} // namespace

void DamagedHistoryTest::init()
{
    m_directory.emplace();
    m_defaults = std::make_unique<UserDefaults>(m_directory->filePath(u"tessarine.conf"_s));
}

void DamagedHistoryTest::cleanup()
{
    end();
    m_printed.reset();
}

void DamagedHistoryTest::start()
{
    m_printed.emplace();
    m_manager = std::make_unique<ClipboardItemManager>(openHistoryStore(base(), m_clock),
                                                       ImageStorage(imagesDirectoryIn(base())),
                                                       *m_defaults, m_clock);
}

void DamagedHistoryTest::add(const QString &text)
{
    m_clock.advance(1s);
    m_manager->addItem(textItem(text, m_clock.now()));
    m_manager->drain();
}

/// Leaves a history of \a count entries behind, all of them in the database file.
void DamagedHistoryTest::fill(int count)
{
    start();
    for (int i = 0; i < count; ++i)
        add(textOf(i));
    end();
}

QStringList DamagedHistoryTest::texts() const
{
    QStringList texts;
    for (const ClipboardItemPointer &item : m_manager->items())
        texts.append(item->stringValue ? item->stringValue->toString() : u"-"_s);
    return texts;
}

bool DamagedHistoryTest::isFallback() const
{
    return m_printed->lines().value(0).startsWith(
        u"Failed to initialize SwiftData store, fallback to JSON: "_s);
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
        write(databasePath(), QByteArray("Dear all, ").repeated(1'000));
    else
        RawDatabase(databasePath()).rows(sql);
    const QByteArray before = contentOf(databasePath());

    start();
    QVERIFY2(isFallback(), qPrintable(m_printed->lines().join(u'\n')));
    QVERIFY(m_manager->items().isEmpty());
    add(u"meanwhile"_s);
    end();
    start();
    QVERIFY(isFallback());
    QCOMPARE(texts(), QStringList{u"meanwhile"_s});
    end();
    QCOMPARE(contentOf(databasePath()), before);
}

void DamagedHistoryTest::aDirectoryInPlaceOfTheDatabaseIsLeftAlone()
{
    QVERIFY(QDir().mkpath(databasePath()));
    start();
    QVERIFY(isFallback());
    add(u"meanwhile"_s);
    end();
    QVERIFY(QDir(databasePath()).isEmpty());
    QVERIFY(contentOf(jsonPath()).contains("meanwhile"));
}

void DamagedHistoryTest::anEmptyFileBecomesADatabase()
{
    write(databasePath(), {});
    start();
    QCOMPARE(m_printed->lines(), QStringList{u"Loaded 0 items from disk"_s});
    add(u"text"_s);
    end();
    start();
    QCOMPARE(texts(), QStringList{u"text"_s});
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
    QFile file(databasePath());
    QVERIFY(file.size() > 50 * kPageSize);
    QVERIFY(file.resize(file.size() * percent / 100));
    const QByteArray before = contentOf(databasePath());

    start();
    QVERIFY(isFallback());
    add(u"meanwhile"_s);
    end();
    QCOMPARE(contentOf(databasePath()), before);
    QVERIFY(contentOf(jsonPath()).contains("meanwhile"));
}

void DamagedHistoryTest::aDamagedPageLeavesTheDatabaseAlone()
{
    fill(40);
    const qsizetype page
        = RawDatabase(databasePath())
              .value("SELECT rootpage FROM sqlite_schema WHERE name = 'ClipboardHistoryRecord'")
              .toInt();
    QByteArray bytes = contentOf(databasePath());
    bytes.replace((page - 1) * kPageSize, kPageSize, QByteArray(kPageSize, '\xA5'));
    write(databasePath(), bytes);

    start();
    QCOMPARE(m_printed->lines(),
             QStringList{u"Failed to load clipboard history: database disk image is malformed"_s});
    QVERIFY(m_manager->items().isEmpty());
    add(u"meanwhile"_s);
    QCOMPARE(texts(), QStringList{u"meanwhile"_s});
    m_manager->removeItem(m_manager->items().first()->id, {});
    m_manager->clearHistory(ClipboardItemManager::Favorites::Clear, {});
    end();
    const QString reason = u": the database is damaged, and is left as it is"_s;
    QCOMPARE(m_printed->lines().mid(1), (QStringList{u"Failed to persist clipboard item"_s + reason,
                                                     u"Failed to delete clipboard item"_s + reason,
                                                     u"Failed to delete clipboard items"_s + reason}));
    QCOMPARE(contentOf(databasePath()), bytes);
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
    start();
    add(u"in the log"_s);
    QByteArray log = contentOf(logPath());
    QVERIFY(log.size() > begin);
    // What a kill leaves behind: the log, and no end of the connection.
    const QByteArray database = contentOf(databasePath());
    end();
    write(databasePath(), database);
    log.truncate(isCut ? begin : log.size());
    log.replace(begin, log.size() - begin, QByteArray(log.size() - begin, '\xA5'));
    write(logPath(), log);

    start();
    QCOMPARE(m_printed->lines(), QStringList{u"Loaded 3 items from disk"_s});
    add(u"goes on"_s);
    end();
    start();
    QCOMPARE(m_manager->items().size(), 4);
    QCOMPARE(RawDatabase(databasePath()).value("PRAGMA integrity_check"), u"ok"_s);
}

void DamagedHistoryTest::aLockedDatabaseLoadsAndMissesOnlyWhatIsCopiedMeanwhile()
{
    fill(3);
    RawDatabase other(databasePath());
    other.rows("BEGIN EXCLUSIVE");
    start();
    QCOMPARE(m_printed->lines(), QStringList{u"Loaded 3 items from disk"_s});
    add(u"meanwhile"_s);
    QCOMPARE(m_printed->lines().mid(1),
             QStringList{u"Failed to persist clipboard item: database is locked"_s});
    QCOMPARE(texts().first(), u"meanwhile"_s);
    other.rows("COMMIT");
    add(u"afterwards"_s);
    end();
    start();
    QCOMPARE(texts().first(), u"afterwards"_s);
    QCOMPARE(texts().size(), 4);
}

void DamagedHistoryTest::aCommitNextDoorIsWaitedFor()
{
    fill(1);
    start();
    RawDatabase other(databasePath());
    other.rows("BEGIN EXCLUSIVE");
    m_manager->addItem(textItem(u"meanwhile"_s, m_clock.now() + 1s));
    m_manager->items();
    other.rows("COMMIT");
    end();
    start();
    QCOMPARE(texts().first(), u"meanwhile"_s);
}

void DamagedHistoryTest::aDatabaseThatAnotherProgramKeepsIsLeftAlone()
{
    fill(3);
    {
        RawDatabase other(databasePath());
        other.rows("PRAGMA locking_mode = EXCLUSIVE");
        other.rows("UPDATE ClipboardHistoryRecord SET isFavorite = 1");
        start();
        QVERIFY(isFallback());
        QVERIFY(m_printed->lines().first().endsWith(u"database is locked"_s));
        add(u"meanwhile"_s);
        end();
    }
    start();
    QCOMPARE(m_manager->items().size(), 3);
    QVERIFY(!texts().contains(u"meanwhile"_s));
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
        RawDatabase database(databasePath());
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

    start();
    const ClipboardItemList loaded = m_manager->items();
    QCOMPARE(loaded.size(), areLoaded ? 1 + values.size() : 1);
    QVERIFY(texts().contains(textOf(0)));
    // Whatever it holds, it can be shown and changed like any other.
    for (const ClipboardItemPointer &item : loaded) {
        item->singleLinePreview(80);
        QVERIFY(std::chrono::abs(item->timestamp - m_clock.now()) < 10'000 * kYear);
        m_clock.advance(1s);
        m_manager->toggleFavorite(item->id);
        m_manager->updateTags(item->id, {u"work"_s});
    }
    QVERIFY(m_manager->diskUsageBytes() > 0);
    end();
    QCOMPARE(m_printed->lines().size(), 1);
    start();
    QCOMPARE(m_manager->items().size(), loaded.size());
    for (const ClipboardItemPointer &item : m_manager->items())
        QCOMPARE(item->tags, QStringList{u"work"_s});
}

QTEST_APPLESS_MAIN(DamagedHistoryTest)
#include "DamagedHistoryTest.moc"
