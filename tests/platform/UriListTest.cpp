#include "platform/linux/UriList.h"

#include <QTest>

using namespace Qt::StringLiterals;

class UriListTest : public QObject
{
    Q_OBJECT

private slots:
    void listsAreRead_data();
    void listsAreRead();
    void whatIsNoListIsAbsent_data();
    void whatIsNoListIsAbsent();
    void writtenListsReadBack();
    void addressIsItsOwnTitle();
};

void UriListTest::listsAreRead_data()
{
    QTest::addColumn<QByteArray>("list");
    QTest::addColumn<QList<QUrl>>("urls");
    const QUrl one = QUrl::fromLocalFile(QStringLiteral("/tmp/one"));
    const QUrl spaced = QUrl::fromLocalFile(QStringLiteral("/tmp/tw o ä"));
    QTest::newRow("one line") << QByteArray("file:///tmp/one\r\n") << QList<QUrl>{one};
    QTest::newRow("no line end") << QByteArray("file:///tmp/one") << QList<QUrl>{one};
    QTest::newRow("line feeds alone, percent signs")
        << QByteArray("file:///tmp/one\nfile:///tmp/tw%20o%20%C3%A4\n") << QList<QUrl>{one, spaced};
    QTest::newRow("comments and blank lines")
        << QByteArray("# files\r\n\r\nfile:///tmp/one\r\n") << QList<QUrl>{one};
    QTest::newRow("copied in GNOME") << QByteArray("copy\nfile:///tmp/one") << QList<QUrl>{one};
    QTest::newRow("cut in GNOME") << QByteArray("cut\nfile:///tmp/one\n") << QList<QUrl>{one};
    QTest::newRow("not a file") << QByteArray("https://example.org/a\r\n")
                                << QList<QUrl>{QUrl(QStringLiteral("https://example.org/a"))};
    QTest::newRow("bytes that are no UTF-8") << "file:///tmp/caf\xE9\r\nfile:///tmp/%FF\r\n"_ba
                                             << QList<QUrl>{QUrl::fromEncoded("file:///tmp/caf%E9"),
                                                            QUrl::fromEncoded("file:///tmp/%FF")};
    QTest::newRow("UTF-8 that is not encoded")
        << "file:///tmp/tw o \xC3\xA4\r\n"_ba << QList<QUrl>{spaced};
    QTest::newRow("a zero byte at the end")
        << QByteArray("file:///tmp/one\r\n\0", 18) << QList<QUrl>{one};
}

void UriListTest::listsAreRead()
{
    QFETCH(QByteArray, list);
    QFETCH(QList<QUrl>, urls);
    QCOMPARE(UriList::parse(list).value_or(QList<QUrl>()), urls);
}

void UriListTest::whatIsNoListIsAbsent_data()
{
    QTest::addColumn<QByteArray>("list");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("only a comment") << QByteArray("# nothing\r\n");
    QTest::newRow("only a verb") << QByteArray("copy\n");
    QTest::newRow("a path") << QByteArray("/tmp/one\r\n");
    QTest::newRow("one line that is none") << QByteArray("file:///tmp/one\r\nnonsense\r\n");
    QTest::newRow("bytes") << QByteArray("\xFF\xFE\x00\x01", 4);
}

void UriListTest::whatIsNoListIsAbsent()
{
    QFETCH(QByteArray, list);
    QVERIFY(!UriList::parse(list).has_value());
}

void UriListTest::writtenListsReadBack()
{
    const QList<QByteArray> encoded = {"file:///tmp/one", "file:///tmp/tw%20o"};
    const QList<QUrl> urls = {QUrl::fromEncoded(encoded.at(0)), QUrl::fromEncoded(encoded.at(1))};
    QCOMPARE(UriList::parse(UriList::fromUrls(encoded)).value(), urls);
    QCOMPARE(UriList::parse(UriList::gnomeCopiedFiles(encoded)).value(), urls);
}

void UriListTest::addressIsItsOwnTitle()
{
    QCOMPARE(UriList::mozillaUrl("a:b"), QByteArray::fromHex("61003a0062000a0061003a006200"));
}

QTEST_GUILESS_MAIN(UriListTest)
#include "UriListTest.moc"
