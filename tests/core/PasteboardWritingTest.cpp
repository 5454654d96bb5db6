#include "core/PasteboardWriting.h"

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
            = textFamilyContents(textItem(ClipboardContentType::Text, u"Grüße\n"_s));
        QCOMPARE(contents.entries,
                 QList({entry(PasteboardType::kString, "Gr\xc3\xbc\xc3\x9f""e\n"_ba)}));
    }

    void styledTextGoesOutInOrderByteForByte()
    {
        ClipboardItem item = textItem(ClipboardContentType::Text, u"a"_s);
        item.htmlRepresentation = "\xff\xfe<\0b\0>\0"_ba;
        item.rtfRepresentation = "{\\rtf1 a"_ba;
        QCOMPARE(textFamilyContents(item).entries,
                 QList({entry(PasteboardType::kString, "a"_ba),
                        entry(PasteboardType::kHtml, item.htmlRepresentation->bytes()),
                        entry(PasteboardType::kRtf, item.rtfRepresentation->bytes())}));
    }

    void richFormsGoOutWithoutAText()
    {
        ClipboardItem item = textItem(ClipboardContentType::Url, std::nullopt);
        item.htmlRepresentation = "<b>a</b>"_ba;
        QCOMPARE(textFamilyContents(item).entries,
                 QList({entry(PasteboardType::kHtml, item.htmlRepresentation->bytes())}));
    }

    void aLinkIsOfferedAsUrlToo()
    {
        const QByteArray address = "https://example.com/a?b=c%20d#e"_ba;
        const auto contents = textFamilyContents(
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
        QCOMPARE(textFamilyContents(textItem(ClipboardContentType::Url, text)).entries,
                 QList({entry(PasteboardType::kString, text.toUtf8())}));
    }

    void aTextThatLooksLikeALinkIsNoUrl()
    {
        const auto contents = textFamilyContents(
            textItem(ClipboardContentType::Text, u"https://example.com"_s));
        QCOMPARE(contents.entries.size(), 1);
    }

    void nothingMakesNothing()
    {
        QVERIFY(textFamilyContents(textItem(ClipboardContentType::Text, std::nullopt)).isEmpty());
    }

private:
    static PasteboardContents::Entry entry(QStringView type, const QByteArray &data)
    {
        return {type.toString(), data};
    }
};

QTEST_GUILESS_MAIN(PasteboardWritingTest)
#include "PasteboardWritingTest.moc"
