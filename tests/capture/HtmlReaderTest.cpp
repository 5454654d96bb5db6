#include "capture/HtmlReader.h"

#include <QStringEncoder>
#include <QTemporaryFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QByteArray encoded(const QString &text, QStringConverter::Encoding encoding,
                   QStringConverter::Flags flags = {})
{
    return QStringEncoder(encoding, flags)(text);
}

QString textOf(const QByteArray &html)
{
    const QByteArray utf8 = plainTextFromHtml(html);
    return utf8.isValidUtf8() ? QString::fromUtf8(utf8) : u"(no UTF-8)"_s;
}

} // namespace

class HtmlReaderTest : public QObject
{
    Q_OBJECT

private slots:
    void textIsRendered_data()
    {
        QTest::addColumn<QByteArray>("html");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *name, const QByteArray &html, const QString &text) {
            QTest::newRow(name) << html << text;
        };

        row("words", "Hello <b>bold</b>\n  <i>world</i>"_ba, u"Hello bold world"_s);
        row("paragraphs and lines", "<p>a</p>\n<p>b<br>c</p>"_ba, u"a\nb\nc"_s);
        row("paragraphs without end", "<p>a<p>b"_ba, u"a\nb"_s);
        row("a heading", "<h1>a</h1>b"_ba, u"a\nb"_s);
        row("a list", "a<ul><li>b</li><li>c</ul>d"_ba, u"a\nb\nc\nd"_s);
        row("a table", "a<table><tr><td>b</td><td>c</td></tr></table>d"_ba, u"a\nb\nc\nd"_s);
        row("entities", "&lt;a&gt; &amp; &eacute;&#233;&#x1F600;"_ba, u"<a> & éé😀"_s);
        row("blanks that do not break", "a&nbsp;b\xc2\xa0""c"_ba, u"a b c"_s);
        row("kept white space", "<pre>a\n  b</pre>"_ba, u"a\n  b"_s);
        row("white space kept by style", R"(<div style="color: red; White-Space : pre">a  b</div>)"_ba,
            u"a  b"_s);
        row("comments", "<!--StartFragment-->a<!-- <p>b -->c<!--EndFragment-->"_ba, u"ac"_s);
        row("a whole document",
            "<!DOCTYPE html><html><head><meta charset=\"utf-8\"><title>T</title>"
            "<style>p { color: red }</style><script>if (a < b) c();</script></head>"
            "<body>a</body></html>"_ba,
            u"a"_s);
        row("an empty line", "<div>a</div><div><br></div><div>b</div>"_ba, u"a\n\nb"_s);
        row("paragraphs that hold nothing", "<p>a</p><p> </p>\n<p></p><p>b</p>"_ba, u"a\nb"_s);
        row("white space around tags", " a <b> b </b> <br> c <p> d"_ba, u"a b\nc\nd"_s);
        row("white space by number", "a&#32;&#10; b&#9;c"_ba, u"a b c"_s);
        row("white space by name", "<pre>\r\n a\r\n&nbsp;b\t</pre>c"_ba, u" a\n b\t\nc"_s);
        row("lines kept by style", "<p style='white-space:pre-line'>a  b\n c"_ba, u"a b\nc"_s);
        row("style that ends with its element",
            "<pre>a  <i style='white-space:normal'>b  c</i>  d</pre>"_ba, u"a  b c  d"_s);
        row("what is hidden",
            "a<p hidden>b<p>c<span style='display:NONE !important'>d<br></span>e"
            "<div style='display:none'>f<p>g</div>h"_ba,
            u"a\nce\nh"_s);
        row("what a browser does not show",
            "a<template>b</template><iframe>c</iframe><video>d</video><rp>e</rp>f"_ba, u"af"_s);
        row("cells and rows without end",
            "<table><caption>t<tr><td><p>a<td>b<tr><td hidden>c<tbody><tr><td>d</table>e"_ba,
            u"t\na\nb\nd\ne"_s);
        row("names of characters without their end", "&ltb&gt &eacute; &notin; &notit; &copy2"_ba,
            u"<b> é ∉ ¬it; ©2"_s);
        row("what looks like the name of a character", "a & b &; &nosuch; &toolongname; &#; &#x;"_ba,
            u"a & b &; &nosuch; &toolongname; &#; &#x;"_s);
        row("numbers of western bytes", "&#128;&#x93;a&#148;"_ba, u"€“a”"_s);
        row("numbers that mean nothing", "&#0;&#xD800;&#x110000;&#99999999999999999999;"_ba,
            u"\uFFFD\uFFFD\uFFFD\uFFFD"_s);
        row("zeroes", "a\0b<p\0>c\0</p>"_ba, u"abc"_s);
        row("an address without quotes", "<a href=http://x.org/>a</a>b"_ba, u"ab"_s);
        row("an empty comment", "a<!-->b<!--->c"_ba, u"abc"_s);
        row("a script with tags inside", "a<SCRIPT>'</p>' <b></SCRIPT >b"_ba, u"ab"_s);
        row("entities that expand into others",
            "<!DOCTYPE x [<!ENTITY a \"aaaa\"><!ENTITY b \"&a;&a;\">]><p>&b;"_ba, u"]>\n&b;"_s);
        row("a sign that is no tag", "a < b > c <3"_ba, u"a < b > c <3"_s);
        row("elements of other kinds", "<o:p></o:p><my-element x>a</my-element><x/>b"_ba, u"ab"_s);
        row("only a picture", "<meta charset='utf-8'><img src=\"https://example.com/a.png\"/>"_ba,
            QString());
        row("a picture and text", "a<img src=x>b"_ba, u"ab"_s);
        row("an object replacement character", "a&#xFFFC;b"_ba, u"ab"_s);
        row("nothing", ""_ba, QString());
    }

    void textIsRendered()
    {
        QFETCH(QByteArray, html);
        QTEST(textOf(html), "text");
    }

    void malformedInputGivesWhatCouldBeRead_data()
    {
        QTest::addColumn<QByteArray>("html");
        QTest::addColumn<QString>("text");
        for (const char *end : {"</", "<!", "<!-", "<!--", "<p", "<p ", "<p style", "<p style=",
                                "<p style=\"", "<p style='display:none", "<script>", "</>", "<?"})
            QTest::newRow(end) << QByteArray("abc") + end << u"abc"_s;
        QTest::newRow("<") << "abc<"_ba << u"abc<"_s;
        QTest::newRow("ends that never began") << "a</b></div>b"_ba << u"ab"_s;
        QTest::newRow("crossed ends") << "<b>a<i>b</b>c</i>d"_ba << u"abcd"_s;
    }

    void malformedInputGivesWhatCouldBeRead()
    {
        QFETCH(QByteArray, html);
        QTEST(textOf(html), "text");
    }

    void theEncodingIsFound_data()
    {
        QTest::addColumn<QByteArray>("html");
        const QString html = u"<p>Grüße, мир</p>"_s;
        using Converter = QStringConverter;
        QTest::newRow("utf-8") << html.toUtf8();
        QTest::newRow("utf-8 with a mark")
            << encoded(html, Converter::Utf8, Converter::Flag::WriteBom);
        QTest::newRow("utf-16 little") << encoded(html, Converter::Utf16LE);
        QTest::newRow("utf-16 big") << encoded(html, Converter::Utf16BE);
        QTest::newRow("utf-16 little with a mark")
            << encoded(html, Converter::Utf16LE, Converter::Flag::WriteBom);
        QTest::newRow("utf-16 big with a mark")
            << encoded(html, Converter::Utf16BE, Converter::Flag::WriteBom);
        QTest::newRow("utf-16 that ends in half a unit")
            << encoded(html, Converter::Utf16LE, Converter::Flag::WriteBom) + "x";
    }

    void theEncodingIsFound()
    {
        QFETCH(QByteArray, html);
        QVERIFY2(textOf(html).startsWith(u"Grüße, мир"_s),
                 qPrintable(textOf(html)));
    }

    void zeroesAtTheEndAreNoEncoding()
    {
        const QString html = u"<p>Grüße, мир</p>"_s;
        for (const qsizetype count : {1, 2, 3, 100}) {
            QCOMPARE(textOf(html.toUtf8() + QByteArray(count, '\0')), u"Grüße, мир"_s);
            QCOMPARE(textOf("<b>ab"_ba + QByteArray(count, '\0')), u"ab"_s);
        }
        for (const auto encoding : {QStringConverter::Utf16LE, QStringConverter::Utf16BE}) {
            QCOMPARE(textOf(encoded(html, encoding) + "\0\0"_ba), u"Grüße, мир"_s);
            QCOMPARE(textOf(encoded(u"ab c"_s, encoding) + "\0\0"_ba), u"ab c"_s);
        }
    }

    void utf16WithLittleMarkupIsFound()
    {
        const QString text = u"漢字かな"_s.repeated(10'000);
        for (const auto encoding : {QStringConverter::Utf16LE, QStringConverter::Utf16BE}) {
            QCOMPARE(textOf(encoded(text + u"<br>"_s + text, encoding)), text + u'\n' + text);
            QCOMPARE(textOf(encoded(u"Привет, мир<p>и ты"_s, encoding)), u"Привет, мир\nи ты"_s);
        }
    }

    void aMarkAloneIsNoText_data()
    {
        QTest::addColumn<QByteArray>("html");
        QTest::newRow("utf-8") << "\xef\xbb\xbf"_ba;
        QTest::newRow("utf-16 little") << "\xff\xfe"_ba;
        QTest::newRow("utf-16 big") << "\xfe\xff"_ba;
        QTest::newRow("utf-16 and a zero") << "\xff\xfe\0\0"_ba;
        QTest::newRow("utf-16 and half a unit") << "\xff\xfe\0"_ba;
        QTest::newRow("utf-32") << "\0\0\xfe\xff"_ba;
    }

    void aMarkAloneIsNoText()
    {
        QFETCH(QByteArray, html);
        QCOMPARE(textOf(html).remove(QChar(QChar::ReplacementCharacter)), QString());
    }

    void halfAPairIsReplaced()
    {
        const QString html = u"<p>a"_s + QChar(0xD83D) + u"b"_s + QChar(0xDE00) + u"c"_s;
        QCOMPARE(textOf(encoded(html, QStringConverter::Utf16LE)), u"a\uFFFDb\uFFFDc"_s);
    }

    void pairsAreKeptTogetherWhereverTheyLie()
    {
        // Whatever is decoded at a time, one of them lies across the end of a piece.
        const QString text = u"x"_s + u"😀"_s.repeated(100'000);
        QCOMPARE(textOf(encoded(u"<p>"_s + text, QStringConverter::Utf16LE)), text);
        QCOMPARE(textOf(encoded(u"<pp>"_s + text, QStringConverter::Utf16BE)), text);
    }

    void aDeclaredCharacterSetIsUsed_data()
    {
        QTest::addColumn<QByteArray>("html");
        QTest::addColumn<QString>("text");
        const auto row = [](const char *charset, const QByteArray &bytes, const QString &text) {
            QTest::newRow(charset) << "<meta charset=\"" + QByteArray(charset) + "\">" + bytes
                                   << text;
        };
        row("windows-1251", "\xcf\xf0\xe8\xe2\xe5\xf2"_ba, u"Привет"_s);
        row("KOI8-R", "\xf0\xd2\xc9\xd7\xc5\xd4"_ba, u"Привет"_s);
        row("ISO-8859-2", "\xb3\xf3" "d\xbc"_ba, u"łódź"_s);
        row("iso-8859-1", "\x93""caf\xe9\x94 \x80"_ba, u"“café” €"_s);
        row("iso-8859-15", "\xa4"_ba, u"€"_s);
        row("Shift_JIS", "\x83\x65\x83\x58\x83\x67\x87\x40"_ba, u"テスト①"_s);
        row("EUC-JP", "\xa5\xc6\xa5\xb9\xa5\xc8"_ba, u"テスト"_s);
        row("iso-2022-jp", "\x1b$B%F%9%H\x1b(B!"_ba, u"テスト!"_s);
        row("gb2312", "\xb2\xe2\xca\xd4\x81\x30\x81\x30"_ba, u"测试\u0080"_s);
        row("big5", "\xb4\xfa\xb8\xd5"_ba, u"測試"_s);
        row("euc-kr", "\xc5\xd7\xbd\xba\xc6\xae"_ba, u"테스트"_s);
    }

    void aDeclaredCharacterSetIsUsed()
    {
        QFETCH(QByteArray, html);
        QTEST(textOf(html), "text");
    }

    void theDeclarationMayHaveManyForms_data()
    {
        QTest::addColumn<QByteArray>("head");
        QTest::newRow("of its own") << "<META CHARSET=Windows-1251>"_ba;
        QTest::newRow("with the type")
            << "<meta http-equiv=Content-Type content='text/html; charset=windows-1251'>"_ba;
        QTest::newRow("with blanks")
            << "<meta content=\"text/html; Charset = windows-1251 ; x\"/>"_ba;
        QTest::newRow("in quotes") << "<meta content='text/html;charset=\"windows-1251\"'>"_ba;
        QTest::newRow("behind others")
            << "<!--<meta charset=koi8-r>--><meta name=a content=b><meta charset=windows-1251>"_ba;
        QTest::newRow("behind one nobody knows")
            << "<meta charset=x-unknown><meta charset=cp1251>"_ba;
    }

    void theDeclarationMayHaveManyForms()
    {
        QFETCH(QByteArray, head);
        QCOMPARE(textOf(head + "\xcf\xf0"), u"Пр"_s);
    }

    void utf8IsReadAsSuchWhateverIsDeclared()
    {
        QCOMPARE(textOf("<meta charset=windows-1251>Пр"_ba), u"Пр"_s);
        QCOMPARE(textOf("<meta charset=utf-16>Пр"_ba), u"Пр"_s);
    }

    void bytesThatAreNothingElseAreWestern()
    {
        QCOMPARE(textOf("caf\xe9 \x80"_ba), u"café €"_s);
        QCOMPARE(textOf("<meta charset=utf-8>caf\xe9"_ba), u"café"_s);
        QCOMPARE(textOf("<meta charset=utf-7>caf\xe9"_ba), u"café"_s);
        QCOMPARE(textOf("<meta charset=no-such-set>caf\xe9"_ba), u"café"_s);
    }

    void halfACharacterIsReplaced()
    {
        const QString text = textOf("<meta charset=shift_jis>a\x83"_ba);
        QVERIFY2(text == u"a"_s || text == u"a\uFFFD"_s, qPrintable(text));
    }

    void charactersOfTwoBytesAreKeptTogetherWhereverTheyLie()
    {
        const QByteArray head = "<meta charset=shift_jis>";
        for (const QByteArray &start : {""_ba, "x"_ba}) {
            QCOMPARE(textOf(head + start + "\x83\x65"_ba.repeated(100'000)),
                     QString::fromUtf8(start) + u"テ"_s.repeated(100'000));
        }
    }

    void nothingIsLoaded()
    {
        QTemporaryFile sheet;
        QVERIFY(sheet.open());
        sheet.write("p { display: none }");
        sheet.close();
        const QByteArray url = "file://" + sheet.fileName().toUtf8();
        QCOMPARE(textOf("<link rel=stylesheet href=\"" + url + "\"><style>@import url("
                                   + url + ");</style><p style=\"background-image:url(" + url
                                   + ")\">shown"),
                 u"shown"_s);
    }

    void deepNestingKeepsTheText_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("blocks") << "div"_ba;
        QTest::newRow("spans") << "b"_ba;
        QTest::newRow("tables") << "table"_ba;
        QTest::newRow("unknown elements") << "x-y"_ba;
    }

    void deepNestingKeepsTheText()
    {
        QFETCH(QByteArray, name);
        constexpr qsizetype kDepth = 200'000;
        const QByteArray html = ("<" + name + ">").repeated(kDepth) + "a"
            + ("</" + name + ">").repeated(kDepth) + "<p>b";
        QCOMPARE(textOf(html), u"a\nb"_s);
    }

    void aVeryLongTextIsReadWhole()
    {
        const QByteArray words = QByteArray("word ").repeated(2'000'000);
        QCOMPARE(plainTextFromHtml("<p>" + words), words.trimmed());
    }

    void aLargePictureInsideTheDocumentCostsNoText()
    {
        const QByteArray html = "<img src=\"data:image/png;base64," + QByteArray(3'000'000, 'A')
            + "\">caption";
        QCOMPARE(textOf(html), u"caption"_s);
    }
};

QTEST_MAIN(HtmlReaderTest)
#include "HtmlReaderTest.moc"
