#include "core/CanPreview.h"

#include "core/ClipboardItem.h"

#include <QTest>

using namespace Qt::StringLiterals;

class CanPreviewTest : public QObject
{
    Q_OBJECT

private slots:
    void textsAndLinksCanIfTheyAreNotBlank_data();
    void textsAndLinksCanIfTheyAreNotBlank();
    void aPictureCanWithItsBytesOrItsFile();
    void filesAndMixedEntriesCannot();
};

namespace {

ClipboardItem itemOf(ClipboardContentType type, const std::optional<QString> &text = {})
{
    ClipboardItem item = makeItem(type, {});
    if (text)
        item.stringValue = Utf8Text(*text);
    return item;
}

} // namespace

void CanPreviewTest::textsAndLinksCanIfTheyAreNotBlank_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("can");
    QTest::newRow("a word") << u"word"_s << true;
    QTest::newRow("a word after many line ends") << QString(5000, u'\n') + u"word"_s << true;
    QTest::newRow("nothing") << QString() << false;
    QTest::newRow("blanks") << u" \t\r\n\u00A0"_s << false;
    QTest::newRow("many blanks") << QString(5000, u' ') << false;
}

void CanPreviewTest::textsAndLinksCanIfTheyAreNotBlank()
{
    QFETCH(const QString, text);
    QFETCH(const bool, can);
    QCOMPARE(canPreview(itemOf(ClipboardContentType::Text, text)), can);
    QCOMPARE(canPreview(itemOf(ClipboardContentType::Url, text)), can);
    QVERIFY(!canPreview(itemOf(ClipboardContentType::Text)));
}

void CanPreviewTest::aPictureCanWithItsBytesOrItsFile()
{
    ClipboardItem item = itemOf(ClipboardContentType::Image, u"words do not count"_s);
    QVERIFY(!canPreview(item));
    item.imageRepresentation = "bytes";
    QVERIFY(canPreview(item));
    item.imageRepresentation.reset();
    item.imageFileName = u"picture.jpg"_s;
    QVERIFY(canPreview(item));
}

void CanPreviewTest::filesAndMixedEntriesCannot()
{
    for (const auto type : {ClipboardContentType::File, ClipboardContentType::Mixed}) {
        ClipboardItem item = itemOf(type, u"name"_s);
        item.filePath = u"/tmp/name"_s;
        item.imageFileName = u"picture.jpg"_s;
        QVERIFY(!canPreview(item));
    }
}

QTEST_MAIN(CanPreviewTest)
#include "CanPreviewTest.moc"
