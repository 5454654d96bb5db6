#include "core/PasteboardWriting.h"

#include "tests/fakes/CountingSource.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

ClipboardItem textItem(ClipboardContentType type, std::optional<QString> text)
{
    ClipboardItem item = makeItem(type, Timestamp{});
    if (text)
        item.stringValue = Utf8Text(*text);
    return item;
}

} // namespace

class PasteboardWritingTest : public QObject
{
    Q_OBJECT

private slots:
    void plainTextIsOneEntry()
    {
        const auto contents
            = contentsOf(textItem(ClipboardContentType::Text, u"Grüße\n"_s));
        QCOMPARE(contents.entries,
                 QList({entry(PasteboardType::kString, "Gr\xc3\xbc\xc3\x9f""e\n"_ba)}));
    }

    void styledTextGoesOutInOrderByteForByte()
    {
        ClipboardItem item = textItem(ClipboardContentType::Text, u"a"_s);
        item.htmlRepresentation = "\xff\xfe<\0b\0>\0"_ba;
        item.rtfRepresentation = "{\\rtf1 a"_ba;
        QCOMPARE(contentsOf(item).entries,
                 QList({entry(PasteboardType::kString, "a"_ba),
                        entry(PasteboardType::kHtml, item.htmlRepresentation->bytes()),
                        entry(PasteboardType::kRtf, item.rtfRepresentation->bytes())}));
    }

    void richFormsGoOutWithoutAText()
    {
        ClipboardItem item = textItem(ClipboardContentType::Url, std::nullopt);
        item.htmlRepresentation = "<b>a</b>"_ba;
        QCOMPARE(contentsOf(item).entries,
                 QList({entry(PasteboardType::kHtml, item.htmlRepresentation->bytes())}));
    }

    void aLinkIsOfferedAsUrlToo()
    {
        const QByteArray address = "https://example.com/a?b=c%20d#e"_ba;
        const auto contents = contentsOf(
            textItem(ClipboardContentType::Url, QString::fromUtf8(address)));
        QCOMPARE(contents.entries, QList({entry(PasteboardType::kString, address),
                                          entry(PasteboardType::kUrl, address)}));
    }

    void aLinkThatIsNoUrlIsOnlyText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("two words") << u"https://example.com/two words"_s;
        QTest::newRow("two lines") << u"https://example.com\nand more"_s;
        QTest::newRow("a bad host") << u"https://[example"_s;
        QTest::newRow("a bad port") << u"https://example.com:port/"_s;
    }

    void aLinkThatIsNoUrlIsOnlyText()
    {
        QFETCH(QString, text);
        QCOMPARE(contentsOf(textItem(ClipboardContentType::Url, text)).entries,
                 QList({entry(PasteboardType::kString, text.toUtf8())}));
    }

    void aTextThatLooksLikeALinkIsNoUrl()
    {
        const auto contents = contentsOf(
            textItem(ClipboardContentType::Text, u"https://example.com"_s));
        QCOMPARE(contents.entries.size(), 1);
    }

    void nothingMakesNothing()
    {
        QVERIFY(contentsOf(textItem(ClipboardContentType::Text, std::nullopt)).isEmpty());
    }

    void whatCannotBeReadBackIsLeftOut()
    {
        ClipboardItem item = textItem(ClipboardContentType::Url, std::nullopt);
        item.stringValue
            = Utf8Text::elsewhere("https://example.com/" + QByteArray(Utf8Text::kLongText, 'a'),
                                  std::make_shared<CountingSource>(std::nullopt));
        item.htmlRepresentation = "<b>a</b>"_ba;
        PasteboardContents contents;
        QVERIFY(!writeTextFamilyToPasteboard(item, contents));
        QCOMPARE(contents.entries,
                 QList({entry(PasteboardType::kHtml, item.htmlRepresentation->bytes())}));
    }

private:
    static PasteboardContents contentsOf(const ClipboardItem &item)
    {
        PasteboardContents contents;
        if (!writeTextFamilyToPasteboard(item, contents))
            qFatal("The history cannot read the entry back.");
        return contents;
    }

    static PasteboardContents::Entry entry(QStringView type, const QByteArray &data)
    {
        return {type.toString(), data};
    }
};

QTEST_GUILESS_MAIN(PasteboardWritingTest)
#include "PasteboardWritingTest.moc"
