#include "foundation/Utf8Text.h"
#include "tests/fakes/CountingSource.h"

#include <QTest>

using namespace Qt::StringLiterals;

class Utf8TextTest : public QObject
{
    Q_OBJECT

private slots:
    void comesBackAsItWas_data();
    void comesBackAsItWas();
    void malformedBytesBecomeReplacementCharacters_data();
    void malformedBytesBecomeReplacementCharacters();
    void validBytesAreTakenWithoutACopy();
    void holdsNoReserve();
    void isCountedInBytes();
    void ofALongTextTheStartStaysAtHand();
    void theStartEndsBetweenCharacters();
    void aLongTextElsewhereIsReadBack();
    void longTextsAreComparedToTheEnd();
};

void Utf8TextTest::comesBackAsItWas_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("nothing") << QString();
    QTest::newRow("ASCII") << u"plain"_s;
    QTest::newRow("several scripts") << u"naïve 剪贴板 \U0001F600 e\u0301"_s;
    QTest::newRow("zero character") << u"a"_s + QChar(0) + u"b"_s;
    QTest::newRow("byte order mark in front") << u"\uFEFFtext"_s;
}

void Utf8TextTest::comesBackAsItWas()
{
    QFETCH(const QString, text);
    QCOMPARE(Utf8Text(text).toString(), text);
    QCOMPARE(Utf8Text::fromUtf8(text.toUtf8()), Utf8Text(text));
}

void Utf8TextTest::malformedBytesBecomeReplacementCharacters_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("stray continuation") << QByteArray("a\x80z");
    QTest::newRow("cut off at the end") << QByteArray("a\xE5\x89");
    QTest::newRow("overlong form") << QByteArray("a\xC0\xAFz");
    QTest::newRow("half a surrogate pair") << QByteArray("a\xED\xA0\x80z");
    QTest::newRow("beyond Unicode") << QByteArray("a\xF5\x80\x80\x80z");
    QTest::newRow("after a byte order mark") << QByteArray("\xEF\xBB\xBF\xFF");
    QTest::newRow("another encoding") << QByteArray("gr\xFC\xDF");
}

void Utf8TextTest::malformedBytesBecomeReplacementCharacters()
{
    QFETCH(const QByteArray, bytes);
    const Utf8Text text = Utf8Text::fromUtf8(bytes);
    QVERIFY(text.utf8().isValidUtf8());
    QVERIFY(text.toString().contains(QChar::ReplacementCharacter));
    QCOMPARE(text.utf8().front(), bytes.front());
    // Stored and read again it is the same text.
    QCOMPARE(Utf8Text::fromUtf8(text.utf8()), text);
}

void Utf8TextTest::validBytesAreTakenWithoutACopy()
{
    QByteArray bytes("text that is long enough to have a buffer of its own");
    bytes.squeeze();
    const char *data = bytes.constData();
    QCOMPARE(static_cast<const void *>(Utf8Text::fromUtf8(std::move(bytes)).utf8().constData()),
             static_cast<const void *>(data));
}

void Utf8TextTest::holdsNoReserve()
{
    const QString text = u"latin text "_s.repeated(1'000);
    QVERIFY(Utf8Text(text).utf8().capacity() < text.size() * 3 / 2);
    QByteArray grown = text.toUtf8();
    grown.reserve(10 * grown.size());
    QVERIFY(Utf8Text::fromUtf8(std::move(grown)).utf8().capacity() < text.size() * 3 / 2);
}

void Utf8TextTest::isCountedInBytes()
{
    QCOMPARE(Utf8Text(u"ä文"_s).byteCount(), 5);
    QVERIFY(Utf8Text().isEmpty());
    QVERIFY(!Utf8Text(u" "_s).isEmpty());
}

void Utf8TextTest::ofALongTextTheStartStaysAtHand()
{
    const Utf8Text shortText(u"x"_s.repeated(Utf8Text::kLongText));
    QVERIFY(!shortText.isLong());
    QCOMPARE(shortText.start(), shortText.utf8());

    const QString string = u"x"_s.repeated(Utf8Text::kLongText) + u"y"_s;
    const Utf8Text text(string);
    QVERIFY(text.isLong());
    QCOMPARE(text.byteCount(), Utf8Text::kLongText + 1);
    QVERIFY(text.start().size() < text.byteCount());
    QVERIFY(text.utf8().startsWith(text.start()));
    QCOMPARE(text.toString(), string);
    QCOMPARE(text.trimmed(), text);
    QCOMPARE(Utf8Text(string + u" \n"_s).trimmed(), text);
}

void Utf8TextTest::theStartEndsBetweenCharacters()
{
    for (const QString &character : {u"ä"_s, u"剪"_s, u"\U0001F600"_s}) {
        for (int offset = 0; offset < 4; ++offset) {
            const Utf8Text text(u"x"_s.repeated(offset) + character.repeated(2000));
            QVERIFY(text.start().isValidUtf8());
            QVERIFY(text.start().size() > 1000);
        }
    }
}

void Utf8TextTest::aLongTextElsewhereIsReadBack()
{
    const QByteArray utf8 = QByteArray("剪贴板").repeated(1000);
    const auto source = std::make_shared<CountingSource>(utf8);
    const Utf8Text text = Utf8Text::elsewhere(utf8, source);
    QCOMPARE(text.byteCount(), utf8.size());
    QVERIFY(utf8.startsWith(text.start()));
    QCOMPARE(source->readCount.load(), 0);
    QCOMPARE(text.utf8(), utf8);
    QCOMPARE(source->readCount.load(), 1);
    QCOMPARE(text, Utf8Text::fromUtf8(utf8));
}

void Utf8TextTest::longTextsAreComparedToTheEnd()
{
    const QString begin = u"x"_s.repeated(5000);
    QCOMPARE(Utf8Text(begin + u"a"_s), Utf8Text(begin + u"a"_s));
    QVERIFY(Utf8Text(begin + u"a"_s) != Utf8Text(begin + u"b"_s));
    QVERIFY(Utf8Text(begin + u"a"_s) != Utf8Text(begin));
}

QTEST_APPLESS_MAIN(Utf8TextTest)
#include "Utf8TextTest.moc"
