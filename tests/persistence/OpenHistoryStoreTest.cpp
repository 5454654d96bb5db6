#include "persistence/OpenHistoryStore.h"
#include "persistence/JSONClipboardHistoryStore.h"
#include "persistence/SwiftDataClipboardHistoryStore.h"
#include "tests/fakes/FakeClock.h"
#include "tests/fakes/PrintedLines.h"
#include "tests/fakes/SampleItems.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

class OpenHistoryStoreTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void createsTheDirectoriesForTheUserAlone();
    void takesTheDatabaseInSilence();
    void ignoresAJsonFileBesideTheDatabase();
    void fallsBackToTheJsonFileWhereTheDatabaseIsRefused();
    void usesTheDatabaseAgainOnceItOpens();
    void carriesOnWhereNoDirectoryCanBeCreated();

private:
    QString base() const { return m_directory->filePath(u"share/tessarine"_s); }
    QString databasePath() const { return base() + u"/clipboard_history.store"_s; }
    QString jsonPath() const { return base() + u"/clipboard_history.json"_s; }
    void write(const QString &path, const QByteArray &bytes) const;

    std::optional<QTemporaryDir> m_directory;
    FakeClock m_clock;
};

void OpenHistoryStoreTest::init()
{
    m_directory.emplace();
}

void OpenHistoryStoreTest::write(const QString &path, const QByteArray &bytes) const
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

void OpenHistoryStoreTest::createsTheDirectoriesForTheUserAlone()
{
    const mode_t before = umask(0);
    const auto store = openHistoryStore(base(), m_clock);
    umask(before);
    QCOMPARE(imagesDirectoryIn(base()), base() + u"/images"_s);
    for (const QString &path : {base(), imagesDirectoryIn(base())}) {
        struct stat status = {};
        QCOMPARE(stat(QFile::encodeName(path).constData(), &status), 0);
        QVERIFY(S_ISDIR(status.st_mode));
        QCOMPARE(status.st_mode & 07777, mode_t(0700));
    }
}

void OpenHistoryStoreTest::takesTheDatabaseInSilence()
{
    const PrintedLines printed;
    const auto store = openHistoryStore(base(), m_clock);
    QVERIFY(dynamic_cast<SwiftDataClipboardHistoryStore *>(store.get()));
    QVERIFY(QFileInfo::exists(databasePath()));
    QVERIFY(!QFileInfo::exists(jsonPath()));
    QCOMPARE(printed.lines(), QStringList());
}

void OpenHistoryStoreTest::ignoresAJsonFileBesideTheDatabase()
{
    openHistoryStore(base(), m_clock).reset();
    JSONClipboardHistoryStore(jsonPath(), m_clock).upsertItem(textItem(u"text"_s, m_clock.now()));
    const qint64 size = QFileInfo(jsonPath()).size();
    const auto store = openHistoryStore(base(), m_clock);
    QVERIFY(store->loadItems().isEmpty());
    QCOMPARE(QFileInfo(jsonPath()).size(), size);
}

void OpenHistoryStoreTest::fallsBackToTheJsonFileWhereTheDatabaseIsRefused()
{
    openHistoryStore(base(), m_clock).reset();
    JSONClipboardHistoryStore(jsonPath(), m_clock).upsertItem(textItem(u"text"_s, m_clock.now()));
    write(databasePath(), QByteArray("no database ").repeated(100));

    const PrintedLines printed;
    const auto store = openHistoryStore(base(), m_clock);
    QVERIFY(dynamic_cast<JSONClipboardHistoryStore *>(store.get()));
    QCOMPARE(printed.lines().size(), 1);
    QVERIFY(printed.lines().first().startsWith(
        u"Failed to initialize SwiftData store, fallback to JSON: "_s));
    QVERIFY(printed.lines().first().endsWith(u"file is not a database"_s));
    QCOMPARE(store->loadItems().size(), 1);
}

void OpenHistoryStoreTest::usesTheDatabaseAgainOnceItOpens()
{
    openHistoryStore(base(), m_clock)->upsertItem(textItem(u"text"_s, m_clock.now()));
    QVERIFY(QFile::rename(databasePath(), base() + u"/aside"_s));
    write(databasePath(), QByteArray("no database ").repeated(100));
    {
        const PrintedLines printed;
        openHistoryStore(base(), m_clock)->upsertItem(textItem(u"meanwhile"_s, m_clock.now()));
    }
    QVERIFY(QFile::remove(databasePath()));
    QVERIFY(QFile::rename(base() + u"/aside"_s, databasePath()));
    const auto store = openHistoryStore(base(), m_clock);
    QCOMPARE(store->loadItems().size(), 1);
    QCOMPARE(store->loadItems().first()->stringValue, Utf8Text(u"text"_s));
}

void OpenHistoryStoreTest::carriesOnWhereNoDirectoryCanBeCreated()
{
    write(m_directory->filePath(u"share"_s), "a file is in the way");
    const PrintedLines printed;
    const auto store = openHistoryStore(base(), m_clock);
    QCOMPARE(printed.lines().size(), 1);
    QVERIFY(store->loadItems().isEmpty());
    QVERIFY_EXCEPTION_THROWN(store->upsertItem(textItem(u"text"_s, m_clock.now())), StoreError);
}

QTEST_APPLESS_MAIN(OpenHistoryStoreTest)
#include "OpenHistoryStoreTest.moc"
