#include "foundation/Digest.h"

#include <QCryptographicHash>
#include <QTest>

class DigestTest : public QObject
{
    Q_OBJECT

private slots:
    void matchesThePublishedExamples_data();
    void matchesThePublishedExamples();
    void agreesWithAnotherImplementation();
    void piecesGiveTheDigestOfTheWhole();
};

void DigestTest::matchesThePublishedExamples_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("digest");
    QTest::newRow("nothing")
        << QByteArray()
        << QByteArray("e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    QTest::newRow("abc")
        << QByteArray("abc")
        << QByteArray("ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    QTest::newRow("a million letters")
        << QByteArray(1'000'000, 'a')
        << QByteArray("cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

void DigestTest::matchesThePublishedExamples()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QByteArray, digest);
    QCOMPARE(sha256Hex(bytes), digest);
}

void DigestTest::agreesWithAnotherImplementation()
{
    QByteArray bytes;
    for (int size = 0; size < 300; ++size) {
        const QByteArray other
            = QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
        QCOMPARE(sha256Hex(bytes), other);
        bytes.append(char(size * 7));
    }
}

void DigestTest::piecesGiveTheDigestOfTheWhole()
{
    Sha256 hash;
    hash.add("one");
    hash.add({});
    hash.add(QByteArrayView("\0|", 2));
    hash.add("two");
    QCOMPARE(hash.hexDigest(), sha256Hex(QByteArrayView("one\0|two", 8)));
}

QTEST_APPLESS_MAIN(DigestTest)
#include "DigestTest.moc"
