#include "foundation/RegularFile.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <optional>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

class RegularFileTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { m_directory.emplace(); }

    void deletedFileIsStillRead();
    void noMoreIsReadThanTheLimit();
    void aFileOfTheKernelIsNotReadForEver();
    void whatIsNoFileIsNotWaitedFor_data();
    void whatIsNoFileIsNotWaitedFor();

private:
    std::optional<QTemporaryDir> m_directory;
};

void RegularFileTest::deletedFileIsStillRead()
{
    const QString path = m_directory->filePath(u"ä"_s);
    QFile written(path);
    QVERIFY(written.open(QIODevice::WriteOnly));
    written.write("1234");
    written.close();

    const auto file = RegularFile::open(path);
    QVERIFY(file);
    QVERIFY(QFile::remove(path));
    QCOMPARE(file->size(), 4);
    QCOMPARE(file->read(), "1234"_ba);
    QCOMPARE(file->read(), "1234"_ba);
}

void RegularFileTest::noMoreIsReadThanTheLimit()
{
    const QString path = m_directory->filePath(u"a"_s);
    QFile written(path);
    QVERIFY(written.open(QIODevice::WriteOnly));
    written.write("1234");
    written.close();

    const auto file = RegularFile::open(path);
    QVERIFY(file);
    QCOMPARE(file->readUpTo(4), "1234"_ba);
    QCOMPARE(file->readUpTo(3), std::nullopt);
    QCOMPARE(file->readUpTo(4), "1234"_ba);
}

void RegularFileTest::aFileOfTheKernelIsNotReadForEver()
{
    const auto file = RegularFile::open(u"/proc/self/pagemap"_s); // Of 256 gigabytes, and size 0.
    QVERIFY(file);
    QCOMPARE(file->readUpTo(1000), std::nullopt);
    QCOMPARE(file->read(), QByteArray());
}

void RegularFileTest::whatIsNoFileIsNotWaitedFor_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("nothing") << u"nothing"_s;
    QTest::newRow("a directory") << u"."_s;
    QTest::newRow("a pipe nobody writes to") << u"pipe"_s;
    QTest::newRow("a device without an end") << u"/dev/full"_s;
}

void RegularFileTest::whatIsNoFileIsNotWaitedFor()
{
    QFETCH(QString, path);
    QCOMPARE(::mkfifo(QFile::encodeName(m_directory->filePath(u"pipe"_s)).constData(), 0600), 0);
    QVERIFY(!RegularFile::open(QDir(m_directory->path()).filePath(path)));
}

QTEST_GUILESS_MAIN(RegularFileTest)
#include "RegularFileTest.moc"
