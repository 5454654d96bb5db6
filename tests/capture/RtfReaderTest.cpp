#include "capture/RtfReader.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QString textOf(const QByteArray &rtf)
{
    const QByteArray utf8 = plainTextFromRtf(rtf);
    return utf8.isValidUtf8() ? QString::fromUtf8(utf8) : u"(no UTF-8)"_s;
}

} // namespace

class RtfReaderTest : public QObject
{
    Q_OBJECT

private slots:
    void plainTextIsRead_data()
    {
        QTest::addColumn<QByteArray>("rtf");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *name, const QByteArray &rtf, const QString &text) {
            QTest::newRow(name) << rtf << text;
        };

        row("words and groups", R"({\rtf1\ansi Hello {\b bold} world})"_ba, u"Hello bold world"_s);
        row("paragraphs and lines", R"({\rtf1 a\par b\line c})"_ba, u"a\nb\nc"_s);
        row("an escaped line end is a paragraph", "{\\rtf1 a\\\nb\\\r\nc}"_ba, u"a\nb\nc"_s);
        row("line ends of the file are no text", "{\\rtf1 one\r\ntwo\nthree}"_ba, u"onetwothree"_s);
        row("tabs", "{\\rtf1 a\\tab b\\\tc\td}"_ba, u"a\tb\tc\td"_s);
        row("escaped braces", R"({\rtf1 \{a\\b\}})"_ba, u"{a\\b}"_s);
        row("one blank ends a word", R"({\rtf1 a\b  b\b0 c})"_ba, u"a bc"_s);
        row("a table", R"({\rtf1 a\cell b\cell\row c\cell\cell\row})"_ba, u"a\tb\nc\t\n"_s);
        row("typographic characters",
            R"({\rtf1 \ldblquote a\rdblquote\emdash\endash\bullet\lquote b\rquote})"_ba,
            u"“a”—–•‘b’"_s);
        row("blanks that do not break", R"({\rtf1 a\~b\'a0c\_d\-e})"_ba, u"a b c\u2011de"_s);

        row("western bytes", R"({\rtf1\ansi caf\'e9 \'80})"_ba, u"café €"_s);
        row("bytes of the document's code page", R"({\rtf1\ansi\ansicpg1251 \'cf\'f0})"_ba, u"Пр"_s);
        row("bytes as they are", "{\\rtf1\\ansicpg1251 \xcf\xf0}"_ba, u"Пр"_s);
        row("an old Macintosh", R"({\rtf1\mac caf\'8e})"_ba, u"café"_s);
        row("bytes of the font's character set",
            R"({\rtf1\ansi{\fonttbl{\f0\fcharset0 A;}{\f1\fcharset204 B;}}\f0 \'e9\f1 \'e9\plain\f0\'e9})"_ba,
            u"éйé"_s);
        row("the character set ends with its group",
            R"({\rtf1\ansi{\fonttbl{\f1\fcharset161 B;}}\'e1{\f1\'e1}\'e1})"_ba, u"áαá"_s);
        row("the default font has one too",
            R"({\rtf1\ansi\deff1{\fonttbl{\f0 A;}{\f1\fcharset238 B;}}\'b9})"_ba, u"ą"_s);
        row("two bytes for one character",
            R"({\rtf1\ansi{\fonttbl{\f0\fcharset128 A;}}\f0\'83\'65\'83X\'83\'5c})"_ba, u"テスソ"_s);
        row("half a character at the end",
            R"({\rtf1\ansi{\fonttbl{\f0\fcharset128 A;}}\f0 a\'83})"_ba, u"a"_s);
        row("the bullet of a symbol font",
            R"({\rtf1\ansi{\fonttbl{\f3\fcharset2 S;}}{\listtext\f3\'b7\tab}item})"_ba, u"•\titem"_s);
        row("an unknown code page is read as the western one", R"({\rtf1\ansicpg4711 \'e9})"_ba,
            u"é"_s);

        row("unicode with its substitute", R"({\rtf1 \u945?\u946 ?x})"_ba, u"αβx"_s);
        row("unicode with a negative number", R"({\rtf1 \u-4064?})"_ba, u"\uF020"_s);
        row("unicode as two surrogates", R"({\rtf1 \u-10179?\u-8704?})"_ba, u"😀"_s);
        row("unicode as one code point", R"({\rtf1 \u128512?})"_ba, u"😀"_s);
        row("no substitute", R"({\rtf1\uc0 \u945\u946 x})"_ba, u"αβx"_s);
        row("a substitute of two bytes", R"({\rtf1\uc2 \u28450\'8a\'bfx})"_ba, u"漢x"_s);
        row("a substitute that is a word", R"({\rtf1 \u8212\emdash x})"_ba, u"—x"_s);
        row("the length of the substitute belongs to the group",
            R"({\rtf1 {\uc0\u945}\u946?x})"_ba, u"αβx"_s);
        row("a group ends the substitute", R"({\rtf1\uc3 {\u945?}xyz})"_ba, u"αxyz"_s);
        row("line ends are no substitute", "{\\rtf1 \\u945\n?x}"_ba, u"αx"_s);
        row("unicode with no meaning", R"({\rtf1 a\u0?\u99999999999?b})"_ba, u"ab"_s);

        row("tables of the document are no text",
            R"({\rtf1{\colortbl;\red0;}{\stylesheet{\s0 Normal;}}{\info{\title T}}{\*\generator G;}x})"_ba,
            u"x"_s);
        row("pictures and objects are no text but their result is",
            R"({\rtf1 a{\pict\pngblip 89504e47}{\object{\*\objdata 0105}{\result b}}c})"_ba,
            u"abc"_s);
        row("a link shows its text",
            "{\\rtf1{\\field{\\*\\fldinst HYPERLINK \"http://x.org\"}{\\fldrslt here}}}"_ba, u"here"_s);
        row("hidden and deleted text", R"({\rtf1 a\v b\u945?\v0 c{\deleted d}e})"_ba, u"ace"_s);
        row("binary data with braces", "{\\rtf1 a{\\pict\\bin4 }}{}}b}"_ba, u"ab"_s);
        row("binary data in the text", "{\\rtf1 a\\bin3 \\}\0b}"_ba, u"ab"_s);
    }

    void plainTextIsRead()
    {
        QFETCH(QByteArray, rtf);
        QTEST(textOf(rtf), "text");
    }

    void malformedInputGivesWhatCouldBeRead_data()
    {
        QTest::addColumn<QByteArray>("rtf");
        QTest::addColumn<QString>("text");
        QTest::newRow("nothing") << ""_ba << u""_s;
        QTest::newRow("no rtf") << "plain"_ba << u""_s;
        QTest::newRow("only a brace") << "{"_ba << u""_s;
        QTest::newRow("no end") << R"({\rtf1 abc{\b def)"_ba << u"abcdef"_s;
        QTest::newRow("ends in a backslash") << "{\\rtf1 abc\\"_ba << u"abc"_s;
        QTest::newRow("ends in a word") << "{\\rtf1 abc\\pa"_ba << u"abc"_s;
        QTest::newRow("ends in a minus") << "{\\rtf1 abc\\u-"_ba << u"abc"_s;
        QTest::newRow("ends in a byte") << "{\\rtf1 abc\\'"_ba << u"abc"_s;
        QTest::newRow("a byte without digits") << R"({\rtf1 a\'zzb})"_ba << u"azzb"_s;
        QTest::newRow("too many ends") << R"({\rtf1 abc}}}} def)"_ba << u"abc"_s;
        QTest::newRow("binary data longer than the file") << R"({\rtf1 a\bin999 bcd})"_ba << u"a"_s;
        QTest::newRow("binary data of negative length") << R"({\rtf1 a\bin-5 bcd})"_ba << u"abcd"_s;
        QTest::newRow("a huge number") << R"({\rtf1 a\li99999999999999999999 b})"_ba << u"ab"_s;
        QTest::newRow("a mark before it") << "\xef\xbb\xbf \r\n{\\rtf1 a}"_ba << u"a"_s;
        QTest::newRow("padded with zeroes") << "{\\rtf1 a}\0\0\0"_ba << u"a"_s;
    }

    void malformedInputGivesWhatCouldBeRead()
    {
        QFETCH(QByteArray, rtf);
        QTEST(textOf(rtf), "text");
    }

    void groupsNestAsDeepAsTheyLike()
    {
        constexpr qsizetype kDepth = 1'000'000;
        const QByteArray rtf = "{\\rtf1 a" + QByteArray(kDepth, '{') + "b" + QByteArray(kDepth, '}')
            + "c}";
        QCOMPARE(textOf(rtf), u"abc"_s);
    }

    void hiddenTextEndsWithItsGroupHoweverDeepThatIs()
    {
        constexpr qsizetype kDepth = 100'000;
        const QByteArray rtf = "{\\rtf1 a" + QByteArray(kDepth, '{') + "{\\v b}c"
            + QByteArray(kDepth, '}') + "d}";
        QCOMPARE(textOf(rtf), u"acd"_s);
    }

    void aVeryLongTextIsReadWhole_data()
    {
        QTest::addColumn<QByteArray>("rtf");
        QTest::addColumn<QString>("text");
        QTest::newRow("words") << "word "_ba << u"word "_s;
        QTest::newRow("paragraphs") << "\\par\n\\~"_ba << u"\n "_s;
        QTest::newRow("rows") << "a\\cell\\row "_ba << u"a\n"_s;
        QTest::newRow("pairs") << "\\u-10179?\\u-8704?"_ba << u"😀"_s;
        QTest::newRow("two bytes for one character") << "\x83\x65"_ba << u"テ"_s;
        QTest::newRow("the second of them ASCII") << "x\x83\x65\x83X"_ba << u"xテス"_s;
    }

    void aVeryLongTextIsReadWhole()
    {
        QFETCH(QByteArray, rtf);
        QFETCH(QString, text);
        constexpr qsizetype kCount = 100'000;
        // Whatever is decoded at a time, one of them lies across the end of a piece.
        for (const QByteArray &start : {""_ba, "y"_ba, "yy"_ba}) {
            const QString read = textOf("{\\rtf1\\ansicpg932 " + start + rtf.repeated(kCount) + '}');
            QVERIFY(read == QString::fromLatin1(start) + text.repeated(kCount));
        }
    }
};

QTEST_GUILESS_MAIN(RtfReaderTest)
#include "RtfReaderTest.moc"
