#include "persistence/SQLiteMaintenance.h"
#include "tests/persistence/RawDatabase.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

using namespace Qt::StringLiterals;

class SQLiteMaintenanceTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void aMissingFileIsNamedAndNotCreated();
    void theTextNamesTheStatementAndTheReason();
    void theLogIsCutAndTheFileRebuilt();
    void aFailedCheckpointEndsTheWork();
    void aFailedRebuildIsNamed();

private:
    QString path() const { return m_directory->filePath(u"history.store"_s); }
    QString failureOfCompaction() const;

    std::optional<QTemporaryDir> m_directory;
};

void SQLiteMaintenanceTest::init()
{
    m_directory.emplace();
}

QString SQLiteMaintenanceTest::failureOfCompaction() const
{
    try {
        compactDatabase(path());
    } catch (const SQLiteMaintenanceError &error) {
        return QString::fromUtf8(error.what());
    }
    return {};
}

void SQLiteMaintenanceTest::aMissingFileIsNamedAndNotCreated()
{
    QCOMPARE(failureOfCompaction(), u"Failed to open SQLite database at "_s + path());
    QVERIFY(!QFileInfo::exists(path()));
}

void SQLiteMaintenanceTest::theTextNamesTheStatementAndTheReason()
{
    QCOMPARE(SQLiteMaintenanceError::executeFailed("VACUUM;", "out of luck").what(),
             "Failed to execute SQL 'VACUUM;': out of luck");
}

void SQLiteMaintenanceTest::theLogIsCutAndTheFileRebuilt()
{
    RawDatabase database(path());
    database.rows("PRAGMA journal_mode = WAL");
    database.rows("CREATE TABLE texts (text); INSERT INTO texts VALUES (zeroblob(1000000));"
                  "DELETE FROM texts");
    QVERIFY(database.value("PRAGMA freelist_count").toInt() > 100);
    QCOMPARE(failureOfCompaction(), QString());
    QCOMPARE(database.value("PRAGMA freelist_count"), u"0"_s);
}

void SQLiteMaintenanceTest::aFailedCheckpointEndsTheWork()
{
    QFile file(path());
    QVERIFY(file.open(QIODevice::WriteOnly));
    const QByteArray letter = QByteArray("Dear all, ").repeated(500);
    file.write(letter);
    file.close();
    QCOMPARE(failureOfCompaction(), u"Failed to execute SQL 'PRAGMA wal_checkpoint(TRUNCATE);': "
                                    "file is not a database"_s);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), letter);
}

void SQLiteMaintenanceTest::aFailedRebuildIsNamed()
{
    RawDatabase database(path());
    database.rows("PRAGMA journal_mode = WAL");
    database.rows("CREATE TABLE texts (text)");
    // A checkpoint needs no write lock on an empty log; the rebuilding does.
    database.rows("PRAGMA wal_checkpoint(TRUNCATE)");
    database.rows("BEGIN IMMEDIATE");
    QCOMPARE(failureOfCompaction(), u"Failed to execute SQL 'VACUUM;': database is locked"_s);
    database.rows("ROLLBACK");
    QCOMPARE(failureOfCompaction(), QString());
}

QTEST_APPLESS_MAIN(SQLiteMaintenanceTest)
#include "SQLiteMaintenanceTest.moc"
