#include "capture/HtmlReader.h"
#include "capture/HtmlSkeleton.h"

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
        QTEST(plainTextFromHtml(html), "text");
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
        QTEST(plainTextFromHtml(html), "text");
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
        QVERIFY2(plainTextFromHtml(html).startsWith(u"Grüße, мир"_s),
                 qPrintable(plainTextFromHtml(html)));
    }

    void bytesThatAreNoUtf8AreReadAsLatin1()
    {
        QCOMPARE(plainTextFromHtml("<meta charset=utf-8>caf\xe9"_ba), u"café"_s);
        QCOMPARE(plainTextFromHtml("<meta charset=iso-8859-1>caf\xe9"_ba), u"café"_s);
    }

    void nothingIsLoaded()
    {
        QTemporaryFile sheet;
        QVERIFY(sheet.open());
        sheet.write("p { display: none }");
        sheet.close();
        const QByteArray url = "file://" + sheet.fileName().toUtf8();
        QCOMPARE(plainTextFromHtml("<link rel=stylesheet href=\"" + url + "\"><style>@import url("
                                   + url + ");</style><p style=\"background-image:url(" + url
                                   + ")\">shown"),
                 u"shown"_s);
    }

    void deepNestingKeepsTheText()
    {
        constexpr qsizetype kDepth = 100'000;
        const QByteArray html = QByteArray("<div>").repeated(kDepth) + "a"
            + QByteArray("</div>").repeated(kDepth) + "<p>b";
        QCOMPARE(plainTextFromHtml(html), u"a\nb"_s);
    }

    void theSkeletonIsNoDeeperThanPromised()
    {
        const QString skeleton = htmlSkeleton(u"<b>"_s.repeated(1000) + u'x', 1'000'000);
        QCOMPARE(skeleton.count(u"<b>"_s), kMaxHtmlDepth);
        QVERIFY(skeleton.endsWith(u'x'));
    }

    void ofAVeryLongTextTheBeginningIsRead()
    {
        const QByteArray html = "<p>" + QByteArray("word ").repeated(10'000'000);
        const QString text = plainTextFromHtml(html);
        QVERIFY(text.startsWith(u"word word"_s));
        QVERIFY(text.size() > 100'000);
        QVERIFY(text.size() < 1'000'000);
    }

    void theCutFallsBetweenCharacters()
    {
        const QByteArray html
            = "<!--" + QByteArray(kMaxHtmlBytes - 10, 'x') + "-->a\xe2\x82\xac\xe2\x82\xac"_ba;
        QCOMPARE(plainTextFromHtml(html), u"a"_s);
    }

    void aLargePictureInsideTheDocumentCostsNoText()
    {
        const QByteArray html = "<img src=\"data:image/png;base64," + QByteArray(3'000'000, 'A')
            + "\">caption";
        QCOMPARE(plainTextFromHtml(html), u"caption"_s);
    }
};

QTEST_MAIN(HtmlReaderTest)
#include "HtmlReaderTest.moc"
