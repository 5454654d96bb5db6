#include "tests/persistence/HistoryOnDisk.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The list and the database together.
class HistoryOnDiskTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void theSameTextTwiceIsOneLiveRowAndOneTombstone();
    void removingLeavesATombstoneAndTheFileAsLargeAsItWas();
    void clearingKeepsFavouritesWithTheirFiles();
    void clearingEverythingLeavesNoRowsAndASmallFile();
    void whatCouldNotBeStoredIsGoneAfterARestart();
    void unfavouringTheOldestOfAFullListStoresNothingButATombstone();

private:
    QString rows(const QByteArray &condition)
    {
        return RawDatabase(m_history->databasePath())
            .value("SELECT count(*) FROM ClipboardHistoryRecord WHERE " + condition);
    }
    void writeImage(const QString &name) const;
    QStringList imageFiles() const;

    std::optional<HistoryOnDisk> m_history;
};

void HistoryOnDiskTest::init()
{
    m_history.emplace();
    m_history->start();
}

void HistoryOnDiskTest::writeImage(const QString &name) const
{
    QFile file(imagesDirectoryIn(m_history->base()) + u'/' + name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("picture");
}

QStringList HistoryOnDiskTest::imageFiles() const
{
    return QDir(imagesDirectoryIn(m_history->base())).entryList(QDir::Files | QDir::Hidden);
}

void HistoryOnDiskTest::theSameTextTwiceIsOneLiveRowAndOneTombstone()
{
    m_history->add(u"text"_s);
    const ClipboardItem again = m_history->add(u"text"_s);
    QCOMPARE(rows("deletedAt IS NULL"), u"1"_s);
    QCOMPARE(rows("deletedAt IS NOT NULL"), u"1"_s);
    m_history->start();
    QCOMPARE(m_history->manager().items().size(), 1);
    QCOMPARE(m_history->manager().items().first()->id, again.id);
    QCOMPARE(m_history->manager().items().first()->timestamp, again.timestamp);
}

void HistoryOnDiskTest::removingLeavesATombstoneAndTheFileAsLargeAsItWas()
{
    // Who holds an entry keeps the database open, and its log in use.
    const QUuid id = m_history->add(u"text "_s.repeated(100'000)).id;
    m_history->end();
    const qint64 size = QFileInfo(m_history->databasePath()).size();
    QVERIFY(size > 500'000);
    m_history->start();
    m_history->manager().removeItem(id, {});
    m_history->end();
    QCOMPARE(rows("deletedAt IS NOT NULL"), u"1"_s);
    QCOMPARE(QFileInfo(m_history->databasePath()).size(), size);
}

void HistoryOnDiskTest::clearingKeepsFavouritesWithTheirFiles()
{
    ClipboardItem favourite = makeItem(ClipboardContentType::Image, m_history->clock().now());
    favourite.imageFileName = u"kept.png"_s;
    favourite.isFavorite = true;
    ClipboardItem plain = makeItem(ClipboardContentType::Image, m_history->clock().now());
    plain.imageFileName = u"gone.png"_s;
    for (const ClipboardItem &item : {favourite, plain}) {
        m_history->manager().addItem(item);
        writeImage(*item.imageFileName);
    }
    m_history->manager().clearHistory(ClipboardItemManager::Favorites::Keep, {});
    m_history->start();
    QCOMPARE(m_history->manager().items().size(), 1);
    QCOMPARE(m_history->manager().items().first()->id, favourite.id);
    QCOMPARE(rows("true"), u"1"_s);
    QCOMPARE(imageFiles(), QStringList{u"kept.png"_s});
}

void HistoryOnDiskTest::clearingEverythingLeavesNoRowsAndASmallFile()
{
    const QUuid favourite = m_history->add(u"favourite "_s.repeated(50'000)).id;
    m_history->manager().toggleFavorite(favourite);
    m_history->manager().removeItem(m_history->add(u"removed "_s.repeated(50'000)).id, {});
    writeImage(u"stray.png"_s);
    writeImage(u".hidden"_s);
    m_history->manager().clearHistory(ClipboardItemManager::Favorites::Clear, {});
    m_history->end();
    QCOMPARE(m_history->printed(), QStringList{u"Loaded 0 items from disk"_s});
    QCOMPARE(rows("true"), u"0"_s);
    QVERIFY(QFileInfo(m_history->databasePath()).size() < 20'000);
    QCOMPARE(imageFiles(), QStringList{u".hidden"_s});
}

void HistoryOnDiskTest::whatCouldNotBeStoredIsGoneAfterARestart()
{
    m_history->add(u"stored"_s);
    {
        RawDatabase database(m_history->databasePath());
        database.rows("CREATE TRIGGER fault BEFORE INSERT ON ClipboardHistoryRecord"
                      " BEGIN SELECT raise(ABORT, 'no such luck'); END");
    }
    m_history->add(u"not stored"_s);
    QCOMPARE(m_history->printed().last(),
             u"Failed to persist clipboard item: no such luck"_s);
    QCOMPARE(m_history->texts(), (QStringList{u"not stored"_s, u"stored"_s}));
    m_history->start();
    QCOMPARE(m_history->texts(), QStringList{u"stored"_s});
}

void HistoryOnDiskTest::unfavouringTheOldestOfAFullListStoresNothingButATombstone()
{
    const ClipboardItem oldest = m_history->add(u"oldest"_s);
    m_history->manager().toggleFavorite(oldest.id);
    m_history->end();
    {
        // A thousand more in one go.
        RawDatabase database(m_history->databasePath());
        database.rows("INSERT INTO ClipboardHistoryRecord (id, position, timestamp,"
                      " contentTypeRaw, stringValue, fileTypesJSON, isFavorite)"
                      " WITH RECURSIVE number(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM number"
                      " LIMIT 1000) SELECT printf('0F8FAD5B-D9CB-469F-A165-%012d', n), 0,"
                      " 1777000000000000 + n, 'text', n, x'', 0 FROM number");
    }
    m_history->start();
    QCOMPARE(m_history->manager().items().size(), 1'001);
    QCOMPARE(m_history->manager().items().last()->id, oldest.id);
    m_history->clock().advance(1h);
    m_history->manager().toggleFavorite(oldest.id);
    m_history->end();
    QCOMPARE(rows("deletedAt IS NOT NULL"), u"1"_s);
    QCOMPARE(rows("deletedAt IS NOT NULL AND stringValue = 'oldest' AND isFavorite"), u"1"_s);
}

QTEST_APPLESS_MAIN(HistoryOnDiskTest)
#include "HistoryOnDiskTest.moc"
