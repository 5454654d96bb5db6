#include "core/DiskUsage.h"

#include "tests/fakes/SampleItems.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class DiskUsageTest : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void anEmptyHistoryTakesNothing();
    void textsCountInUtf8();
    void richDataPathsAndBookmarksCount();
    void otherFieldsDoNotCount();
    void aLongTextCountsWithoutBeingRead();
    void picturesAndThumbnailsCountByTheirFiles();
    void aThumbnailThatIsNamedTwiceCountsOnce();
    void aThumbnailThatTheRecordDoesNotNameCounts();
    void aFileOfSeveralEntriesCountsOnce();
    void namesWithoutFileCountNothing();
    void filesThatNobodyNamesDoNotCount();
    void aDirectoryInPlaceOfAFileCountsNothing();

private:
    void write(const QString &name, qsizetype size) const;
    qint64 usageOf(const QList<ClipboardItem> &items) const;

    std::optional<QTemporaryDir> m_images;
};

namespace {

ClipboardItem picture(const std::optional<QString> &fileName,
                      const std::optional<QString> &thumbnailName)
{
    ClipboardItem item = makeItem(ClipboardContentType::Image, Timestamp{});
    item.imageFileName = fileName;
    item.imageThumbnailFileName = thumbnailName;
    return item;
}

class UnreadableSource : public ByteSource
{
public:
    std::optional<QByteArray> read() const override { return std::nullopt; }
};

} // namespace

void DiskUsageTest::init()
{
    m_images.emplace();
}

void DiskUsageTest::write(const QString &name, qsizetype size) const
{
    QFile file(m_images->filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(QByteArray(size, 'x')), size);
}

qint64 DiskUsageTest::usageOf(const QList<ClipboardItem> &items) const
{
    ClipboardItemList list;
    for (const ClipboardItem &item : items)
        list.append(std::make_shared<const ClipboardItem>(item));
    return diskUsageBytes(list, m_images->path());
}

void DiskUsageTest::anEmptyHistoryTakesNothing()
{
    QCOMPARE(usageOf({}), 0);
}

void DiskUsageTest::textsCountInUtf8()
{
    QCOMPARE(usageOf({textItem(u"abc"_s, {}), textItem(u"ï文\U0001F600"_s, {})}), 3 + 2 + 3 + 4);
}

void DiskUsageTest::richDataPathsAndBookmarksCount()
{
    ClipboardItem item = makeItem(ClipboardContentType::File, Timestamp{});
    item.htmlRepresentation = QByteArray(1'000, 'h');
    item.rtfRepresentation = QByteArray(200, 'r');
    item.fileBookmarkData = QByteArray(30, 'b');
    item.filePath = u"/ä"_s;
    QCOMPARE(usageOf({item}), 1'000 + 200 + 30 + 3);
}

void DiskUsageTest::otherFieldsDoNotCount()
{
    ClipboardItem item = picture({}, {});
    item.imageRepresentation = QByteArray(1'000, 'p');
    item.imageDigest = QByteArray(64, 'd');
    item.tags = {u"work"_s};
    item.fileTypes = {u"txt"_s};
    item.sourceAppBundleID = u"org.example.Editor"_s;
    QCOMPARE(usageOf({item}), 0);
}

void DiskUsageTest::aLongTextCountsWithoutBeingRead()
{
    ClipboardItem item = makeItem(ClipboardContentType::Text, Timestamp{});
    item.stringValue
        = Utf8Text::elsewhere(QByteArray(50'000, 'x'), std::make_shared<UnreadableSource>());
    item.htmlRepresentation = LazyBytes::elsewhere(7'000, std::make_shared<UnreadableSource>());
    QCOMPARE(usageOf({item}), 57'000);
}

void DiskUsageTest::picturesAndThumbnailsCountByTheirFiles()
{
    write(u"a.jpg"_s, 1'000);
    write(u"small.jpg"_s, 10);
    QCOMPARE(usageOf({picture(u"a.jpg"_s, u"small.jpg"_s)}), 1'010);
}

void DiskUsageTest::aThumbnailThatIsNamedTwiceCountsOnce()
{
    // By the record, and by what follows from the name of the picture.
    write(u"a_thumb.jpg"_s, 10);
    QCOMPARE(usageOf({picture(u"a.jpg"_s, u"a_thumb.jpg"_s)}), 10);
}

void DiskUsageTest::aThumbnailThatTheRecordDoesNotNameCounts()
{
    write(u"a.b.png"_s, 1'000);
    write(u"a.b_thumb.jpg"_s, 10);
    QCOMPARE(usageOf({picture(u"a.b.png"_s, {})}), 1'010);
    QCOMPARE(usageOf({picture({}, u"a.b_thumb.jpg"_s)}), 10);
}

void DiskUsageTest::aFileOfSeveralEntriesCountsOnce()
{
    write(u"a.jpg"_s, 1'000);
    QCOMPARE(usageOf({picture(u"a.jpg"_s, {}), picture(u"a.jpg"_s, {})}), 1'000);
}

void DiskUsageTest::namesWithoutFileCountNothing()
{
    QCOMPARE(usageOf({picture(u"gone.jpg"_s, u"gone_thumb.jpg"_s), picture(u""_s, u""_s)}), 0);
}

void DiskUsageTest::filesThatNobodyNamesDoNotCount()
{
    write(u"stray.jpg"_s, 1'000);
    QCOMPARE(usageOf({textItem(u"abc"_s, {})}), 3);
}

void DiskUsageTest::aDirectoryInPlaceOfAFileCountsNothing()
{
    QVERIFY(QDir(m_images->path()).mkdir(u"a.jpg"_s));
    QCOMPARE(usageOf({picture(u"a.jpg"_s, {})}), 0);
}

QTEST_APPLESS_MAIN(DiskUsageTest)
#include "DiskUsageTest.moc"
