#include "foundation/FilePath.h"

#include <QRandomGenerator>
#include <QSet>
#include <QTest>

using namespace Qt::StringLiterals;

class FilePathTest : public QObject
{
    Q_OBJECT

private slots:
    void anOrdinaryPathIsItsText();
    void everyPathKeepsItsBytes_data();
    void everyPathKeepsItsBytes();
    void randomBytesAreKept();
    void differentBytesAreDifferentTexts();
    void whatCannotBeReadIsMarkedForPeople();
    void aUrlOfThisMachineIsLocal_data();
    void aUrlOfThisMachineIsLocal();
};

void FilePathTest::anOrdinaryPathIsItsText()
{
    QCOMPARE(FilePath::fromBytes("/tmp/Über 文字 \xF0\x9F\x98\x80.txt"),
             u"/tmp/Über 文字 \U0001F600.txt"_s);
    QCOMPARE(FilePath::toBytes(u"/tmp/Über.txt"_s), "/tmp/\xC3\x9C"
                                                    "ber.txt"_ba);
    QCOMPARE(FilePath::readable(u"/tmp/Über.txt"_s), u"/tmp/Über.txt"_s);
}

void FilePathTest::everyPathKeepsItsBytes_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("ASCII") << "/tmp/a b.txt"_ba;
    QTest::newRow("a byte that never is in UTF-8") << "/tmp/a\xFF.txt"_ba;
    QTest::newRow("Latin-1") << "/tmp/caf\xE9.txt"_ba;
    QTest::newRow("Latin-1 beside UTF-8") << "/tmp/\xC3\xA4\xE4/\xE6\x96\x87.txt"_ba;
    QTest::newRow("a sequence cut at the end") << "/tmp/\xE6\x96"_ba;
    QTest::newRow("a sequence cut by a slash") << "/tmp/\xE6/\x96"_ba;
    QTest::newRow("a continuation alone") << "/tmp/\x96"_ba;
    QTest::newRow("too long a form of a slash") << "/tmp/\xC0\xAF"_ba;
    QTest::newRow("half of a surrogate pair") << "/tmp/\xED\xA0\x80"_ba;
    QTest::newRow("beyond Unicode") << "/tmp/\xF4\x90\x80\x80\xF8"_ba;
    QTest::newRow("the private characters themselves") << "/tmp/\xEE\xBE\x80\xEE\xBF\xBF"_ba;
    QTest::newRow("private characters beside them") << "/tmp/\xEE\xBD\xBF\xEF\x80\x80"_ba;
    QTest::newRow("a byte order mark") << "/\xEF\xBB\xBF/\xEF\xBB\xBF\xFF"_ba;
    QTest::newRow("a replacement character") << "/tmp/\xEF\xBF\xBD"_ba;
    QTest::newRow("what looks encoded") << "/tmp/%FF 100% #1 ?\n\t.txt"_ba;
}

void FilePathTest::everyPathKeepsItsBytes()
{
    QFETCH(QByteArray, path);
    const QString text = FilePath::fromBytes(path);
    QCOMPARE(FilePath::toBytes(text), path);
    // On its way through a store.
    QCOMPARE(FilePath::toBytes(QString::fromUtf8(text.toUtf8())), path);

    const QUrl url = FilePath::toUrl(text);
    QVERIFY(url.isValid());
    QCOMPARE(FilePath::bytesOf(url), path);
    QCOMPARE(FilePath::of(QUrl::fromEncoded(url.toEncoded())), text);
}

void FilePathTest::randomBytesAreKept()
{
    QRandomGenerator random(7);
    for (int round = 0; round < 20'000; ++round) {
        QByteArray path(random.bounded(1, 12), '/');
        for (char &byte : path)
            byte = char(random.bounded(1, 256));
        QCOMPARE(FilePath::toBytes(FilePath::fromBytes(path)), path);
    }
}

void FilePathTest::differentBytesAreDifferentTexts()
{
    QSet<QString> texts;
    for (int byte = 1; byte < 256; ++byte)
        texts.insert(FilePath::fromBytes("/tmp/" + QByteArray(1, char(byte))));
    texts.insert(FilePath::fromBytes("/tmp/\xEE\xBE\x80"));
    texts.insert(FilePath::fromBytes("/tmp/\xEF\xBF\xBD"));
    QCOMPARE(texts.size(), 257);
}

void FilePathTest::whatCannotBeReadIsMarkedForPeople()
{
    QCOMPARE(FilePath::readable(FilePath::fromBytes("/tmp/caf\xE9.txt")), u"/tmp/caf\uFFFD.txt"_s);
}

void FilePathTest::aUrlOfThisMachineIsLocal_data()
{
    QTest::addColumn<QUrl>("url");
    QTest::addColumn<bool>("isLocal");
    QTest::newRow("a path") << QUrl(u"file:///tmp/a"_s) << true;
    QTest::newRow("of localhost") << QUrl(u"file://localhost/tmp/a"_s) << true;
    QTest::newRow("of another machine") << QUrl(u"file://server/tmp/a"_s) << false;
    QTest::newRow("of the web") << QUrl(u"https://example.org/tmp/a"_s) << false;
    QTest::newRow("none") << QUrl() << false;
}

void FilePathTest::aUrlOfThisMachineIsLocal()
{
    QFETCH(QUrl, url);
    QFETCH(bool, isLocal);
    QCOMPARE(FilePath::isLocal(url), isLocal);
    if (isLocal)
        QCOMPARE(FilePath::of(url), u"/tmp/a"_s);
}

QTEST_GUILESS_MAIN(FilePathTest)
#include "FilePathTest.moc"
