#include "foundation/TextSignature.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

class TextSignatureTest : public QObject
{
    Q_OBJECT

private slots:
    void oneOrTwoLettersAreDecided_data();
    void oneOrTwoLettersAreDecided();
    void aWordWhoseLettersNeverFollowEachOtherIsDenied();
    void whatIsThereIsNeverDenied();
    void piecesOfALargeTextHangTogether();
    void mostWordsThatAreNotThereAreDenied();
    void itIsSmall_data();
    void itIsSmall();
    void aStopGivesNothing();
};

namespace {

std::optional<bool> contains(const QString &text, const QString &lowered)
{
    const auto signature = TextSignature::of(text.toUtf8());
    return signature->contains(TextSignature::Pattern(lowered.toUtf8()));
}

/// The frequent letters come more often than the rare ones.
QString randomWord(QRandomGenerator &random)
{
    static const QString letters = u"eeeeettttaaaooiinnsshhrrdlucmfwypvbgkqjxz"_s;
    QString word;
    for (int count = random.bounded(2, 10); count > 0; --count)
        word += letters.at(random.bounded(letters.size()));
    return word;
}

/// A text of a few hundred different words, as texts are.
QString randomText(QRandomGenerator &random, int size)
{
    QStringList words;
    for (int i = 0; i < 400; ++i)
        words.append(randomWord(random));
    QString text;
    while (text.size() < size)
        text += words.at(random.bounded(words.size())) + u' ';
    return text.first(size);
}

} // namespace

void TextSignatureTest::oneOrTwoLettersAreDecided_data()
{
    QTest::addColumn<QString>("lowered");
    QTest::addColumn<bool>("isContained");
    QTest::newRow("letter") << u"q"_s << true;
    QTest::newRow("capital") << u"t"_s << true;
    QTest::newRow("last letter") << u"d"_s << true;
    QTest::newRow("digit") << u"7"_s << true;
    QTest::newRow("blank") << u" "_s << true;
    QTest::newRow("other letter") << u"x"_s << false;
    QTest::newRow("pair") << u"ui"_s << true;
    QTest::newRow("pair across a blank") << u"d 7"_s.last(2) << true;
    QTest::newRow("pair the other way round") << u"iu"_s << false;
    QTest::newRow("pair of letters that stand apart") << u"qd"_s << false;
    QTest::newRow("first of all") << u"th"_s << true;
    QTest::newRow("Kelvin sign") << u"k"_s << true;
    QTest::newRow("dotted capital I") << u"i"_s << true;
}

void TextSignatureTest::oneOrTwoLettersAreDecided()
{
    QFETCH(const QString, lowered);
    QFETCH(const bool, isContained);
    QCOMPARE(contains(u"The qui\u212A, \u0130, and 7 end"_s, lowered), std::optional(isContained));
}

void TextSignatureTest::aWordWhoseLettersNeverFollowEachOtherIsDenied()
{
    QCOMPARE(contains(u"abc bcd"_s, u"abd"_s), std::optional(false));
    QCOMPARE(contains(u"剪贴板"_s, u"手机"_s), std::optional(false));
    QVERIFY(contains(u"abc bcd"_s, u"abcd"_s) != std::optional(true)); // Each triple is there.
}

void TextSignatureTest::whatIsThereIsNeverDenied()
{
    QRandomGenerator random(11);
    static const QStringList parts{u"a"_s, u"Z"_s, u" "_s, u"ß"_s, u"\u1E9E"_s, u"\u0130"_s,
                                   u"Σ"_s, u"ς"_s, u"剪贴"_s, u"\U0001F469\u200D\U0001F4BB"_s,
                                   u"\U00010400"_s, u"e\u0301"_s, u"9"_s, u"\n"_s, u"\u212A"_s};
    for (int round = 0; round < 3000; ++round) {
        QString text;
        for (int count = random.bounded(1, 60); count > 0; --count)
            text += parts.at(random.bounded(parts.size()));
        const QString lowered = text.toLower();
        const auto signature = TextSignature::of(text.toUtf8());
        const QString query = lowered.mid(random.bounded(lowered.size()), random.bounded(1, 8));
        if (!query.isValidUtf16())
            continue;
        if (signature->contains(TextSignature::Pattern(query.toUtf8())) == std::optional(false))
            QFAIL(qPrintable(u"'%1' in '%2'"_s.arg(query, text)));
    }
}

void TextSignatureTest::piecesOfALargeTextHangTogether()
{
    for (int before = 65'520; before < 65'540; ++before) {
        const QString text = QString(before, u'-') + u"ÄGYPTEN"_s + QString(70'000, u'-');
        QVERIFY(contains(text, u"ägypten"_s) != std::optional(false));
        QCOMPARE(contains(text, u"gy"_s), std::optional(true));
        QCOMPARE(contains(text, u"yg"_s), std::optional(false));
    }
}

void TextSignatureTest::mostWordsThatAreNotThereAreDenied()
{
    QRandomGenerator random(5);
    const QString text = randomText(random, 40'000);
    const auto signature = TextSignature::of(text.toUtf8());
    int absentCount = 0;
    int deniedCount = 0;
    for (int round = 0; round < 2000; ++round) {
        const QString word = randomWord(random);
        if (word.size() < 4 || text.contains(word))
            continue;
        ++absentCount;
        if (signature->contains(TextSignature::Pattern(word.toUtf8())) == std::optional(false))
            ++deniedCount;
    }
    QVERIFY(absentCount > 1000);
    QVERIFY2(deniedCount * 10 > absentCount * 7, qPrintable(QString::number(deniedCount)));
}

void TextSignatureTest::itIsSmall_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("most");
    QTest::newRow("just long") << 2100 << 1000;
    QTest::newRow("a page") << 5000 << 1300;
    QTest::newRow("long") << 60'000 << 2500;
    QTest::newRow("huge") << 2'000'000 << 17'000;
}

void TextSignatureTest::itIsSmall()
{
    QFETCH(const int, size);
    QFETCH(const int, most);
    QRandomGenerator random(3);
    const auto signature = TextSignature::of(randomText(random, size).toUtf8());
    QVERIFY2(signature->byteCount() <= most, qPrintable(QString::number(signature->byteCount())));
}

void TextSignatureTest::aStopGivesNothing()
{
    std::stop_source stop;
    stop.request_stop();
    QVERIFY(!TextSignature::of("text"_ba, stop.get_token()));
}

QTEST_APPLESS_MAIN(TextSignatureTest)
#include "TextSignatureTest.moc"
