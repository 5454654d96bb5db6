#include "foundation/LoweredQuery.h"

#include <QRandomGenerator>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

bool plainRule(const QString &query, const QString &text)
{
    return text.toLower().contains(query.toLower());
}

/// What lower-casing treats in its own way, next to what it leaves alone.
const QStringList &fragments()
{
    static const QStringList all{
        u"a"_s, u"Z"_s, u"i"_s, u"I"_s, u"k"_s, u"K"_s, u"s"_s, u" "_s, u"\n"_s, u"@"_s, u"["_s,
        u"`"_s, u"{"_s, u"7"_s, u"istanbul"_s, u"The Key"_s, u"I\u0307"_s, u"i\u0307"_s, u"\u0307"_s,
        u"\u0130"_s, u"\u0131"_s, u"\u212A"_s, u"\u212B"_s, u"\u2126"_s, u"ß"_s, u"\u1E9E"_s, u"ä"_s,
        u"Ä"_s, u"a\u0308"_s, u"A\u0308"_s, u"Straße"_s, u"STRASSE"_s, u"σ"_s, u"ς"_s, u"Σ"_s,
        u"ὈΔΥΣΣΕΎΣ"_s, u"ᾳ"_s, u"ᾼ"_s, u"中"_s, u"剪贴板"_s, u"。"_s, u"ǅ"_s, u"ﬁ"_s, u"ŉ"_s,
        u"\U0001F600"_s, u"\U0001F601"_s, u"\U0001F469\u200D\U0001F4BB"_s, u"\U00010400"_s,
        u"\U00010428"_s, u"Ꭰ"_s, u"ꭰ"_s, u"Ა"_s, u"ა"_s, u"\u00A0"_s, u"\u2028"_s, u"\uFFFD"_s,
        u"?"_s,
    };
    return all;
}

QString randomText(QRandomGenerator &random, int most)
{
    QString text;
    for (int count = random.bounded(most + 1); count > 0; --count)
        text += fragments().at(random.bounded(fragments().size()));
    return text;
}

QString randomCharacters(QRandomGenerator &random, int most)
{
    QString text;
    for (int count = random.bounded(most + 1); count > 0; --count) {
        const char32_t character = random.bounded(2) ? random.bounded(0x20u, 0x250u)
                                                     : random.bounded(0x20u, 0x1FFFFu);
        if (!QChar::isSurrogate(character))
            text += QChar::fromUcs4(character);
    }
    return text;
}

QString randomCase(QRandomGenerator &random, const QString &text)
{
    switch (random.bounded(3)) {
    case 0: return text.toUpper();
    case 1: return text.toLower();
    default: return text;
    }
}

} // namespace

class LoweredQueryTest : public QObject
{
    Q_OBJECT

private slots:
    void anEmptyQueryIsInEveryText();
    void caseDoesNotMatter_data();
    void caseDoesNotMatter();
    void everyCharacterIsFoundInWhatItIsTheLowerCaseOf();
    void agreesWithThePlainRuleOnMixedScripts();
    void agreesWithThePlainRuleOnRandomCharacters();
    void findsAtEveryPlaceOfATextOfAnyLength();
    void halfASurrogatePairIsFoundInItsCharacter();
};

void LoweredQueryTest::anEmptyQueryIsInEveryText()
{
    QVERIFY(LoweredQuery(QString()).isEmpty());
    QVERIFY(LoweredQuery(QString()).isContainedInUtf8({}));
    QVERIFY(LoweredQuery(QString()).isContainedInUtf8(u"text"_s.toUtf8()));
    QVERIFY(!LoweredQuery(u" "_s).isContainedInUtf8(u"text"_s.toUtf8()));
}

void LoweredQueryTest::caseDoesNotMatter_data()
{
    QTest::addColumn<QString>("query");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isContained");
    QTest::newRow("ASCII") << u"hElLo"_s << u"say HELLO there"_s << true;
    QTest::newRow("not ASCII letters") << u"@[`{"_s << u"@[`{"_s << true;
    QTest::newRow("neighbours of ASCII letters are no letters") << u"`{"_s << u"@["_s << false;
    QTest::newRow("umlaut") << u"ÜBER"_s << u"darüber"_s << true;
    QTest::newRow("an accent is not folded") << u"uber"_s << u"über"_s << false;
    QTest::newRow("composed is not decomposed") << u"ü"_s << u"u\u0308"_s << false;
    QTest::newRow("dotted capital I holds i") << u"i"_s << u"\u0130"_s << true;
    QTest::newRow("dotted capital I holds a dot above") << u"\u0307"_s << u"\u0130"_s << true;
    QTest::newRow("dotless i is another letter") << u"i"_s << u"\u0131"_s << false;
    QTest::newRow("Kelvin sign is a k") << u"k"_s << u"300 \u212A"_s << true;
    QTest::newRow("sharp s is not two") << u"ss"_s << u"Straße"_s << false;
    QTest::newRow("capital sharp s") << u"straße"_s << u"STRA\u1E9EE"_s << true;
    QTest::newRow("Greek capital sigma") << u"ΟΔΟΣ"_s << u"οδοσ"_s << true;
    QTest::newRow("final sigma is another letter") << u"ΟΔΟΣ"_s << u"οδος"_s << false;
    QTest::newRow("Chinese") << u"贴板"_s << u"剪贴板"_s << true;
    QTest::newRow("emoji") << u"\U0001F600"_s << u"ok \U0001F600"_s << true;
    QTest::newRow("another emoji") << u"\U0001F600"_s << u"ok \U0001F601"_s << false;
}

void LoweredQueryTest::caseDoesNotMatter()
{
    QFETCH(const QString, query);
    QFETCH(const QString, text);
    QFETCH(const bool, isContained);
    QCOMPARE(LoweredQuery(query).isContainedInUtf8(text.toUtf8()), isContained);
    QCOMPARE(LoweredQuery(query).isContainedIn(text), isContained);
    QCOMPARE(plainRule(query, text), isContained);
}

void LoweredQueryTest::everyCharacterIsFoundInWhatItIsTheLowerCaseOf()
{
    for (char32_t character = 1; character <= 0x10FFFF; ++character) {
        if (QChar::isSurrogate(character))
            continue;
        const QString text = QString::fromUcs4(&character, 1);
        const QString lowered = text.toLower();
        if (lowered == text)
            continue;
        for (const char32_t part : lowered.toUcs4()) {
            const LoweredQuery query(QString::fromUcs4(&part, 1));
            QVERIFY2(query.isContainedInUtf8(text.toUtf8()),
                     qPrintable(QString::number(character, 16)));
        }
    }
}

void LoweredQueryTest::agreesWithThePlainRuleOnMixedScripts()
{
    QRandomGenerator random(20260411);
    int containedCount = 0;
    for (int round = 0; round < 60'000; ++round) {
        const QString text = randomText(random, 30);
        const QString query = randomText(random, 3);
        const bool expected = plainRule(query, text);
        containedCount += expected;
        if (LoweredQuery(query).isContainedInUtf8(text.toUtf8()) != expected)
            QFAIL(qPrintable(u"'%1' in '%2'"_s.arg(query, text)));
    }
    // Neither answer may be the exception.
    QVERIFY(containedCount > 10'000 && containedCount < 50'000);
}

void LoweredQueryTest::agreesWithThePlainRuleOnRandomCharacters()
{
    QRandomGenerator random(7);
    for (int round = 0; round < 20'000; ++round) {
        const QString text = randomCharacters(random, 60);
        const qsizetype begin = text.isEmpty() ? 0 : random.bounded(text.size());
        // By code units, so that a cut may go through a surrogate pair.
        const QString query = random.bounded(4) == 0
            ? randomCharacters(random, 2)
            : randomCase(random, text.mid(begin, random.bounded(1, 6)));
        const bool expected = plainRule(query, text);
        if (LoweredQuery(query).isContainedInUtf8(text.toUtf8()) != expected)
            QFAIL(qPrintable(u"'%1' in '%2'"_s.arg(query, text)));
    }
}

void LoweredQueryTest::findsAtEveryPlaceOfATextOfAnyLength()
{
    const LoweredQuery query(u"Needle"_s);
    for (int before = 0; before < 40; ++before) {
        for (int after = 0; after < 40; ++after) {
            const QString text = QString(before, u'n') + u"NEEDLE"_s + QString(after, u'e');
            QVERIFY(query.isContainedInUtf8(text.toUtf8()));
            QVERIFY(!query.isContainedInUtf8(QString(text).replace(u"EDL"_s, u"EDD"_s).toUtf8()));
        }
    }
}

void LoweredQueryTest::halfASurrogatePairIsFoundInItsCharacter()
{
    const LoweredQuery query(QString(QChar(0xD83D)));
    QVERIFY(query.isContainedInUtf8(u"ok \U0001F600"_s.toUtf8()));
    QVERIFY(!query.isContainedInUtf8(u"ok \uFFFD?"_s.toUtf8()));
}

QTEST_APPLESS_MAIN(LoweredQueryTest)
#include "LoweredQueryTest.moc"
