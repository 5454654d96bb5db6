#include "foundation/TextTools.h"

#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

class TextToolsTest : public QObject
{
    Q_OBJECT

private slots:
    void trimsWhiteSpaceOfAllScripts_data();
    void trimsWhiteSpaceOfAllScripts();
    void trimsNothingFromWhatIsNotWhiteSpace();
    void onlyPairedCarriageReturnsBecomeLineFeeds();
    void countsCharactersAsAReaderDoes_data();
    void countsCharactersAsAReaderDoes();
    void foldsATextIntoOneLine_data();
    void foldsATextIntoOneLine();
    void cutsALongLine();
    void agreesWithTheRuleWrittenOut();
    void theStartOfATextDecidesOnlyWhatTheRestCannotChange();
    void looksNoFurtherThanItNeeds();
    void heapsOfMarksAreCut();
    void noSurrogatePairIsSplit();
    void whatHasNoSoundIsNotSpoken();
    void whatJoinsSignsIsSpoken();
};

void TextToolsTest::trimsWhiteSpaceOfAllScripts_data()
{
    QTest::addColumn<QString>("space");
    QTest::newRow("blank") << u" "_s;
    QTest::newRow("tab") << u"\t"_s;
    QTest::newRow("line feed") << u"\n"_s;
    QTest::newRow("carriage return") << u"\r"_s;
    QTest::newRow("next line") << u"\u0085"_s;
    QTest::newRow("no-break space") << u"\u00A0"_s;
    QTest::newRow("em space") << u"\u2003"_s;
    QTest::newRow("line separator") << u"\u2028"_s;
    QTest::newRow("paragraph separator") << u"\u2029"_s;
    QTest::newRow("ideographic space") << u"\u3000"_s;
    QTest::newRow("several") << u" \u3000\r\n\t"_s;
}

void TextToolsTest::trimsWhiteSpaceOfAllScripts()
{
    QFETCH(const QString, space);
    for (const QString &core : {u"a b"_s, u"文"_s, u"\U0001F600"_s, u""_s}) {
        const QByteArray utf8 = (space + core + space).toUtf8();
        QCOMPARE(QString::fromUtf8(trimmedUtf8(utf8)), core);
    }
}

void TextToolsTest::trimsNothingFromWhatIsNotWhiteSpace()
{
    for (const QString &text : {u"\u200Bword\u200B"_s, u"\uFEFFword"_s, u"\u0301"_s, u"\0"_s}) {
        const QByteArray utf8 = text.toUtf8();
        QCOMPARE(trimmedUtf8(utf8).toByteArray(), utf8);
    }
}

void TextToolsTest::onlyPairedCarriageReturnsBecomeLineFeeds()
{
    QCOMPARE(withLineFeeds("a\r\nb\rc\nd\r\r\ne"), "a\nb\rc\nd\r\ne");
    QCOMPARE(withLineFeeds(""), "");
}

void TextToolsTest::countsCharactersAsAReaderDoes_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("firstTwo");
    QTest::newRow("letters") << u"abc"_s << u"ab"_s;
    QTest::newRow("fewer than asked for") << u"a"_s << u"a"_s;
    QTest::newRow("combining marks") << u"e\u0301\u0302o\u0308u"_s << u"e\u0301\u0302o\u0308"_s;
    QTest::newRow("surrogate pairs") << u"\U0001F600\U0001F601x"_s << u"\U0001F600\U0001F601"_s;
    QTest::newRow("joined emoji") << u"\U0001F469\u200D\U0001F4BBab"_s
                                  << u"\U0001F469\u200D\U0001F4BBa"_s;
}

void TextToolsTest::countsCharactersAsAReaderDoes()
{
    QFETCH(const QString, text);
    QFETCH(const QString, firstTwo);
    QCOMPARE(firstCharacters(text, 2), firstTwo);
}

void TextToolsTest::foldsATextIntoOneLine_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("line");
    QTest::newRow("line ends") << u"a\nb\r\nc\rd"_s << u"a / b / c / d"_s;
    QTest::newRow("empty lines") << u"a\n\nb"_s << u"a / / b"_s;
    QTest::newRow("carriage returns before a line feed") << u"a\r\r\nb"_s << u"a / / b"_s;
    QTest::newRow("tab") << u"a\tb"_s << u"a | b"_s;
    QTest::newRow("runs of blanks") << u"a  \u00A0\u3000b"_s << u"a b"_s;
    QTest::newRow("around a line end") << u"a  \n  b"_s << u"a / b"_s;
    QTest::newRow("blanks at the ends") << u"  a  "_s << u"a"_s;
    QTest::newRow("line ends at the ends") << u"\na\n"_s << u"/ a /"_s;
    QTest::newRow("blanks only") << u"  \u2003 "_s << QString();
    QTest::newRow("nothing") << QString() << QString();
}

void TextToolsTest::foldsATextIntoOneLine()
{
    QFETCH(const QString, text);
    QFETCH(const QString, line);
    QCOMPARE(singleLine(text.toUtf8(), 80), line);
}

void TextToolsTest::cutsALongLine()
{
    const auto line = [](qsizetype size) { return QString(size, u'x'); };
    QCOMPARE(singleLine(line(80).toUtf8(), 80), line(80));
    QCOMPARE(singleLine(line(81).toUtf8(), 80), line(80) + u"..."_s);
    QCOMPARE(singleLine((line(80) + u"   "_s).toUtf8(), 80), line(80));
    QCOMPARE(singleLine((line(79) + u" x"_s).toUtf8(), 80), line(79) + u" ..."_s);
    const QString marked = u"e\u0301"_s.repeated(80);
    QCOMPARE(singleLine(marked.toUtf8(), 80), marked);
    QCOMPARE(singleLine((marked + u"e"_s).toUtf8(), 80), marked + u"..."_s);
}

void TextToolsTest::agreesWithTheRuleWrittenOut()
{
    static const QRegularExpression whiteSpace(u"\\s+"_s,
                                               QRegularExpression::UseUnicodePropertiesOption);
    const QStringList parts{u"\r\n"_s, u"\r"_s, u"\n"_s, u"\t"_s, u" "_s, u"\u00A0"_s, u"a"_s,
                            u"word"_s, u"文"_s, u"e\u0301"_s, u"\U0001F600"_s, u"/"_s};
    QRandomGenerator random(11);
    for (int round = 0; round < 20'000; ++round) {
        QString text;
        for (int count = random.bounded(20); count > 0; --count)
            text += parts.at(random.bounded(parts.size()));
        QString rule = text;
        rule.replace(u"\r\n"_s, u"\n"_s).replace(u'\r', u'\n');
        rule.replace(u"\t"_s, u" | "_s).replace(u"\n"_s, u" / "_s);
        rule = rule.replace(whiteSpace, u" "_s).trimmed();
        const QString first = firstCharacters(rule, 7);
        const QString expected = first == rule ? rule : first + u"..."_s;
        if (singleLine(text.toUtf8(), 7) != expected)
            QFAIL(text.toUtf8().toPercentEncoding().constData());
    }
}

void TextToolsTest::theStartOfATextDecidesOnlyWhatTheRestCannotChange()
{
    const QStringList parts{u"\r"_s, u"\n"_s, u"\t"_s,     u" "_s,          u"a"_s,
                            u"文"_s, u"e"_s,  u"\u0301"_s, u"\U0001F1E6"_s, u"\u200D\U0001F600"_s};
    QRandomGenerator random(12);
    int decided = 0;
    for (int round = 0; round < 20'000; ++round) {
        QString text;
        for (int count = random.bounded(30); count > 0; --count)
            text += parts.at(random.bounded(parts.size()));
        const QByteArray utf8 = text.toUtf8();
        qsizetype size = random.bounded(int(utf8.size()) + 1);
        while (size < utf8.size() && isUtf8Continuation(utf8[size]))
            --size;
        const auto line = singleLineOfStart(utf8.first(size), 5);
        decided += line.has_value();
        if (line && *line != singleLine(utf8, 5))
            QFAIL(utf8.toPercentEncoding().constData());
    }
    QVERIFY(decided > 1000);
}

void TextToolsTest::looksNoFurtherThanItNeeds()
{
    // Both would take minutes if each step looked at the whole text again.
    const QByteArray plain = QByteArray(50'000'000, 'x');
    QCOMPARE(singleLine(plain, 80).size(), 83);
    const QString marks = u"e"_s + QString(2'000'000, QChar(0x301));
    QCOMPARE(singleLine(marks.toUtf8(), 80).size(), 483);
}

void TextToolsTest::heapsOfMarksAreCut()
{
    const QString marks = u"e"_s + QString(2000, QChar(0x301));
    QCOMPARE(singleLine(marks.toUtf8(), 80), marks.first(480) + u"..."_s);
    QCOMPARE(singleLine(marks.first(480).toUtf8(), 80), marks.first(480));
    QCOMPARE(singleLineOfStart(marks.first(481).toUtf8(), 80), marks.first(480) + u"..."_s);
    QVERIFY(!singleLineOfStart(marks.first(480).toUtf8(), 80));
    QCOMPARE(firstCharacters(marks, 20), marks.first(320));
    QCOMPARE(shortened(marks, 7), marks.first(7) + u"..."_s);
    QCOMPARE(shortened(marks.first(7), 7), marks.first(7));
}

void TextToolsTest::noSurrogatePairIsSplit()
{
    const QString marks = u"e"_s + u"\U0001D165"_s.repeated(1000); // A mark outside the BMP.
    QCOMPARE(singleLine(marks.toUtf8(), 80), marks.first(479) + u"..."_s);
    QCOMPARE(firstCharacters(marks, 20), marks.first(319));
    QCOMPARE(shortened(marks, 8), marks.first(7) + u"..."_s);
}

void TextToolsTest::whatHasNoSoundIsNotSpoken()
{
    QCOMPARE(speakable(u"a\u202Eb\u200Bc\u0007d\uFEFFe\u00ADf"_s), u"abcdef"_s);
}

void TextToolsTest::whatJoinsSignsIsSpoken()
{
    const QString joined = u"👩\u200D🚀 می\u200Cخواهم e\u0301"_s;
    QCOMPARE(speakable(joined), joined);
}

QTEST_APPLESS_MAIN(TextToolsTest)
#include "TextToolsTest.moc"
