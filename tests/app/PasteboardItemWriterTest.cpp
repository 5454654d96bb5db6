#include "app/PasteboardItemWriter.h"

#include "app/ScopedFileLease.h"
#include "tests/fakes/CountingSource.h"
#include "tests/fakes/FakePasteboard.h"
#include "tests/fakes/FakeScheduler.h"
#include "tests/fakes/HistoryFixture.h"
#include "tests/fakes/SampleItems.h"

#include <QFile>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

using Entries = QList<PasteboardContents::Entry>;

PasteboardContents::Entry entry(QStringView type, const QByteArray &data)
{
    return {type.toString(), data};
}

const QString kImageComplaint = u"Failed to restore image data from history item"_s;
const QString kTextComplaint = u"Failed to restore text data from history item"_s;

} // namespace

class PasteboardItemWriterTest : public QObject, protected HistoryFixture
{
    Q_OBJECT

private slots:
    void init()
    {
        setUpHistory();
        m_pasteboard = std::make_unique<FakePasteboard>();
        m_scheduler = std::make_unique<FakeScheduler>();
        m_fileLease = std::make_unique<ScopedFileLease>(m_files->references, *m_scheduler, *m_clock,
                                                        *m_defaults);
        m_writer = std::make_unique<PasteboardItemWriter>(*m_pasteboard, *m_manager, *m_fileLease,
                                                          *m_codec, *m_defaults);
    }

    void cleanup()
    {
        m_writer.reset();
        m_fileLease.reset();
        tearDownHistory();
    }

    // Text.

    void plainTextLeavesExactlyOneType()
    {
        write(textItem(u"hello"_s, Timestamp{}));
        QCOMPARE(m_pasteboard->written.entries,
                 Entries{entry(PasteboardType::kString, "hello"_ba)});
    }

    void styledTextLeavesItsThreeFormsAndNoOther()
    {
        ClipboardItem item = textItem(u"hello"_s, Timestamp{});
        item.htmlRepresentation = "<b>hello\0</b>"_ba;
        item.rtfRepresentation = "{\\rtf1 hello}"_ba;
        write(item);
        QCOMPARE(m_pasteboard->written.entries,
                 Entries({entry(PasteboardType::kString, "hello"_ba),
                          entry(PasteboardType::kHtml, "<b>hello\0</b>"_ba),
                          entry(PasteboardType::kRtf, "{\\rtf1 hello}"_ba)}));
    }

    void aLinkThatIsNoUrlLeavesItsStringAndItsRichForms()
    {
        ClipboardItem item = textItem(u"https://two words"_s, Timestamp{});
        item.contentType = ClipboardContentType::Url;
        item.htmlRepresentation = "<a>"_ba;
        write(item);
        QCOMPARE(m_pasteboard->written.entries,
                 Entries({entry(PasteboardType::kString, "https://two words"_ba),
                          entry(PasteboardType::kHtml, "<a>"_ba)}));
    }

    void aTextWithoutAnyFormIsNoFailure()
    {
        write(makeItem(ClipboardContentType::Text, Timestamp{}));
        QVERIFY(m_pasteboard->written.isEmpty());
        QVERIFY(!m_printed->contains(kTextComplaint));
    }

    void longTextIsReadBackBeforeItsRowCanGo()
    {
        const QByteArray text(Utf8Text::kLongText + 1, 'a');
        const auto source = std::make_shared<CountingSource>(text);
        ClipboardItem item = makeItem(ClipboardContentType::Text, Timestamp{});
        item.stringValue = Utf8Text::elsewhere(text, source);
        write(item);
        QCOMPARE(source->readCount.load(), 1);
        QVERIFY(m_pasteboard->written.entries.first().data.isInMemory());
        QCOMPARE(m_pasteboard->written.entries, Entries{entry(PasteboardType::kString, text)});
    }

    void textThatCannotBeReadBackIsToldOfOnceAndLeavesNothingOld()
    {
        m_pasteboard->written.add(PasteboardType::kString, "old"_ba);
        const auto lost = std::make_shared<CountingSource>(std::nullopt);
        ClipboardItem item = makeItem(ClipboardContentType::Text, Timestamp{});
        item.stringValue
            = Utf8Text::elsewhere(QByteArray(Utf8Text::kLongText + 1, 'a'), lost);
        item.htmlRepresentation = LazyBytes::elsewhere(10, lost);
        write(item);
        QVERIFY(m_pasteboard->written.isEmpty());
        QCOMPARE(m_printed->lines().count(kTextComplaint), 1);
    }

    // Pictures and files.

    void anItemOfMixedContentLeavesThePasteboardEmpty()
    {
        ClipboardItem item = textItem(u"hello"_s, Timestamp{});
        item.contentType = ClipboardContentType::Mixed;
        item.filePath = u"/etc/hosts"_s;
        write(item);
        QCOMPARE(m_pasteboard->writeCount, 1);
        QVERIFY(m_pasteboard->written.isEmpty());
    }

    void imageFilesGoOutUnchangedUnderTheTypeOfTheirName_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<QString>("type");
        QTest::newRow("jpg") << u"a.jpg"_s << PasteboardType::kJpeg.toString();
        QTest::newRow("jpeg") << u"a.jpeg"_s << PasteboardType::kJpeg.toString();
        QTest::newRow("capitals") << u"a.PNG"_s << PasteboardType::kPng.toString();
        QTest::newRow("tif") << u"a.tif"_s << PasteboardType::kTiff.toString();
        QTest::newRow("heic") << u"a.heic"_s << PasteboardType::kTiff.toString();
        QTest::newRow("nothing") << u"a"_s << PasteboardType::kTiff.toString();
    }

    void imageFilesGoOutUnchangedUnderTheTypeOfTheirName()
    {
        QFETCH(QString, fileName);
        QFETCH(QString, type);
        const QByteArray bytes = "no picture, but bytes\0"_ba;
        writeFile(fileName, bytes);
        ClipboardItem item = makeItem(ClipboardContentType::Image, Timestamp{});
        item.imageFileName = fileName;
        item.imageRepresentation = "not these"_ba;
        write(item);
        QCOMPARE(m_pasteboard->written.entries, Entries{entry(type, bytes)});
        QVERIFY(!m_printed->contains(kImageComplaint));
    }

    void aLostImageFileIsReplacedByTheBytesInMemoryEvenUnreadableOnes()
    {
        ClipboardItem item = makeItem(ClipboardContentType::Image, Timestamp{});
        item.imageFileName = u"lost.jpg"_s;
        item.imageRepresentation = "no picture"_ba;
        write(item);
        QCOMPARE(m_pasteboard->written.entries,
                 Entries{entry(PasteboardType::kTiff, "no picture"_ba)});
        QVERIFY(!m_printed->contains(kImageComplaint));
    }

    void aPipeInPlaceOfAnImageFileIsNotWaitedFor()
    {
        QCOMPARE(::mkfifo(QFile::encodeName(m_images + u"/pipe.jpg"_s).constData(), 0600), 0);
        ClipboardItem item = makeItem(ClipboardContentType::Image, Timestamp{});
        item.imageFileName = u"pipe.jpg"_s;
        write(item);
        QVERIFY(m_pasteboard->written.isEmpty());
        QVERIFY(m_printed->contains(kImageComplaint));
    }

    void theBytesInMemoryGoOutAsTiff()
    {
        ClipboardItem item = makeItem(ClipboardContentType::Image, Timestamp{});
        item.imageRepresentation = "pixels"_ba;
        write(item);
        QCOMPARE(m_pasteboard->written.entries,
                 Entries{entry(PasteboardType::kTiff, "tiff of pixels"_ba)});
    }

    void aFileThatCannotBeReadAtFirstIsTriedAgain()
    {
        m_defaults->set(u"debug.drag_paste_logging"_s, true);
        ClipboardItem item = makeItem(ClipboardContentType::Image, Timestamp{});
        item.imageFileName = u"late.jpg"_s;
        QStringList lines;
        setPrintSink([&](const QString &line) {
            lines.append(line);
            if (line.contains(u"failed reading file"_s))
                writeFile(u"late.jpg"_s, "pixels"_ba);
        });
        write(item);
        QCOMPARE(m_pasteboard->written.entries,
                 Entries{entry(PasteboardType::kTiff, "tiff of pixels"_ba)});
        QCOMPARE(lines.filter(u"[DragPaste]"_s).last(),
                 u"[DragPaste] writeImageToPasteboard fallback loadImage() -> tiff bytes=14"_s);
    }

    void aFileThatComesLateMustBeAPicture()
    {
        m_defaults->set(u"debug.drag_paste_logging"_s, true);
        ClipboardItem item = makeItem(ClipboardContentType::Image, Timestamp{});
        item.imageFileName = u"late.jpg"_s;
        setPrintSink([&](const QString &line) {
            if (line.contains(u"failed reading file"_s))
                writeFile(u"late.jpg"_s, "no picture"_ba);
        });
        write(item);
        QVERIFY(m_pasteboard->written.isEmpty());
    }

    void anImageWithoutSourceLeavesThePasteboardEmpty()
    {
        ClipboardItem item = makeItem(ClipboardContentType::Image, Timestamp{});
        item.imageFileName = u"lost.png"_s;
        write(item);
        QVERIFY(m_pasteboard->written.isEmpty());
        QVERIFY(m_printed->contains(kImageComplaint));
    }

    void aFileGoesOutAsUrl()
    {
        ClipboardItem item = makeItem(ClipboardContentType::File, Timestamp{});
        item.stringValue = Utf8Text(u"ü b.txt, c"_s);
        item.filePath = u"/tmp/ü b.txt"_s;
        write(item);
        QCOMPARE(m_pasteboard->written.entries,
                 Entries{entry(PasteboardType::kFileUrl, "file:///tmp/%C3%BC%20b.txt"_ba)});
    }

    void aFileGoesOutFromWhereItsBookmarkLeads()
    {
        const ClipboardItem item = bookmarkedFile(u"file:///new/b"_s, false);
        write(item);
        QCOMPARE(m_pasteboard->written.entries,
                 Entries{entry(PasteboardType::kFileUrl, "file:///new/b"_ba)});
    }

    void aStaleBookmarkIsRenewedByThePaste()
    {
        ClipboardItem item = bookmarkedFile(u"file:///new/b"_s, true);
        m_manager->addItem(item);
        write(item);
        QCOMPARE(m_pasteboard->written.entries,
                 Entries{entry(PasteboardType::kFileUrl, "file:///new/b"_ba)});
        QCOMPARE(m_manager->items().first()->fileBookmarkData, "bookmark of file:///new/b"_ba);
    }

    void aDeadBookmarkGivesWayToThePath()
    {
        ClipboardItem item = bookmarkedFile(u"file:///new/b"_s, false);
        item.fileBookmarkData = "dead"_ba;
        m_files->access.files = {QUrl(u"file:///old/a"_s)};
        write(item);
        QCOMPARE(m_pasteboard->written.entries,
                 Entries{entry(PasteboardType::kFileUrl, "file:///old/a"_ba)});
    }

    void aFileWithoutPathLeavesThePasteboardEmpty()
    {
        write(makeItem(ClipboardContentType::File, Timestamp{}));
        QVERIFY(m_pasteboard->written.isEmpty());
    }

    void aFileHasItsLeaseBeforeAnythingIsWritten()
    {
        int leasesAtWriting = -1;
        m_pasteboard->onWritten = [&] { leasesAtWriting = m_files->access.openCount; };
        write(bookmarkedFile(u"file:///new/b"_s, false));
        QCOMPARE(leasesAtWriting, 1);
        QCOMPARE(m_files->access.started, QList{QUrl(u"file:///new/b"_s)});
    }

    void aFileThatIsOnlyAPathHasNoLease()
    {
        ClipboardItem item = makeItem(ClipboardContentType::File, Timestamp{});
        item.filePath = u"/old/a"_s;
        write(item);
        QVERIFY(m_files->access.started.isEmpty());
    }

    void refusedAccessStillWritesTheUrl()
    {
        m_files->access.isGranted = false;
        write(bookmarkedFile(u"file:///new/b"_s, false));
        QCOMPARE(m_pasteboard->written.entries,
                 Entries{entry(PasteboardType::kFileUrl, "file:///new/b"_ba)});
    }

    void pathsWithStrangeNamesAreEncoded()
    {
        ClipboardItem item = makeItem(ClipboardContentType::File, Timestamp{});
        item.filePath = u"/tmp/100% ü\nline#?"_s;
        write(item);
        QCOMPARE(m_pasteboard->written.entries,
                 Entries{entry(PasteboardType::kFileUrl,
                               "file:///tmp/100%25%20%C3%BC%0Aline%23%3F"_ba)});
    }

    void aPictureFileIsNotReadBeforeAProgramAsks()
    {
        writeFile(u"a.png"_s, "1234"_ba);
        ClipboardItem item = makeItem(ClipboardContentType::Image, Timestamp{});
        item.imageFileName = u"a.png"_s;
        write(item);
        const LazyBytes data = m_pasteboard->written.entries.first().data;
        QVERIFY(!data.isInMemory());
        // The entry may go while its picture is on the pasteboard.
        QVERIFY(QFile::remove(m_images + u"/a.png"_s));
        QCOMPARE(data.read(), "1234"_ba);
        QCOMPARE(data.read(), "1234"_ba);
    }

    void aPictureThatWasClearedBeforeItHadAFileIsStillThere()
    {
        ClipboardItem item = makeItem(ClipboardContentType::Image, Timestamp{});
        item.imageRepresentation = "pixels"_ba;
        m_manager->addItem(item);
        const ClipboardItemPointer chosen = m_manager->items().first();
        m_manager->clearHistory(ClipboardItemManager::Favorites::Clear, {});
        m_manager->drain();
        write(*chosen);
        QCOMPARE(m_pasteboard->written.entries.size(), 1);
        QVERIFY(!m_printed->contains(kImageComplaint));
    }

    void aChosenTextThatWasEditedMeanwhileGoesOutAsItWasChosen()
    {
        m_manager->addItem(textItem(u"chosen"_s, Timestamp{}));
        const ClipboardItemPointer chosen = m_manager->items().first();
        m_manager->updateTextContent(chosen->id, u"edited"_s, {});
        m_manager->drain();
        write(*chosen);
        QCOMPARE(m_pasteboard->written.entries,
                 Entries{entry(PasteboardType::kString, "chosen"_ba)});
    }

    // The trail.

    void theTrailIsSilentUnlessItIsAskedFor()
    {
        write(textItem(u"hello"_s, Timestamp{}));
        QVERIFY(trail().isEmpty());
    }

    void theTrailTellsWhatWasWritten()
    {
        m_defaults->set(u"debug.drag_paste_logging"_s, true);
        writeFile(u"a.JPG"_s, "1234"_ba);
        ClipboardItem image = makeItem(ClipboardContentType::Image, Timestamp{});
        image.imageFileName = u"a.JPG"_s;
        write(image);
        QCOMPARE(trail(),
                 QStringList({u"[DragPaste] writeImageToPasteboard from file name=a.JPG ext=jpg "
                              u"bytes=4 type=public.jpeg"_s}));
    }

    void theTrailTellsOfBytesInMemory_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("line");
        QTest::newRow("a picture")
            << "pixels"_ba
            << u"[DragPaste] writeImageToPasteboard from in-memory imageRepresentation -> tiff "
               "bytes=14"_s;
        QTest::newRow("no picture")
            << "unreadable"_ba
            << u"[DragPaste] writeImageToPasteboard fallback raw imageRepresentation bytes=10"_s;
    }

    void theTrailTellsOfBytesInMemory()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, line);
        m_defaults->set(u"debug.drag_paste_logging"_s, true);
        ClipboardItem image = makeItem(ClipboardContentType::Image, Timestamp{});
        image.imageRepresentation = bytes;
        write(image);
        QCOMPARE(trail().last(), line);
    }

    void theTrailTellsWhyNothingWasWritten()
    {
        m_defaults->set(u"debug.drag_paste_logging"_s, true);
        ClipboardItem image = makeItem(ClipboardContentType::Image, Timestamp{});
        image.imageFileName = u"lost"_s;
        write(image);
        QCOMPARE(
            trail(),
            QStringList(
                {u"[DragPaste] writeImageToPasteboard failed reading file name=lost"_s,
                 u"[DragPaste] writeImageToPasteboard exhausted all sources for id="_s + uuidString(image.id),
                 u"[DragPaste] pasteItem image failed to write to NSPasteboard"_s}));
    }

    void theTrailNamesThePathOfAFile()
    {
        m_defaults->set(u"debug.drag_paste_logging"_s, true);
        ClipboardItem file = makeItem(ClipboardContentType::File, Timestamp{});
        file.filePath = u"/tmp/a b"_s;
        write(file);
        QCOMPARE(trail().last(),
                 u"[DragPaste] pasteItem file writeObjects fallback path=/tmp/a b"_s);
    }

    void theTrailTellsOfRefusedAccess()
    {
        m_defaults->set(u"debug.drag_paste_logging"_s, true);
        m_files->access.isGranted = false;
        write(bookmarkedFile(u"file:///new/b"_s, false));
        QCOMPARE(trail(),
                 QStringList({u"[DragPaste] beginScopedFileURLAccess startAccessing returned false "
                              "path=/new/b"_s,
                              u"[DragPaste] pasteItem file writeObjects resolved url=/new/b "
                              "stale=false accessing=false"_s}));
    }

    void theTrailTellsWhetherTheBookmarkWasStale_data()
    {
        QTest::addColumn<bool>("isStale");
        QTest::newRow("stale") << true;
        QTest::newRow("good") << false;
    }

    void theTrailTellsWhetherTheBookmarkWasStale()
    {
        QFETCH(bool, isStale);
        m_defaults->set(u"debug.drag_paste_logging"_s, true);
        const ClipboardItem item = bookmarkedFile(u"file:///new/b%20%251"_s, isStale);
        write(item);
        const QString line = u"[DragPaste] pasteItem file writeObjects resolved url=/new/b %1 "
                             u"stale="_s
            + (isStale ? u"true"_s : u"false"_s) + u" accessing=true"_s;
        QVERIFY(trail().contains(line));
    }

private:
    /// An entry of /old/a, of which the bookmark leads to \a url.
    ClipboardItem bookmarkedFile(const QString &url, bool isStale)
    {
        ClipboardItem item = makeItem(ClipboardContentType::File, Timestamp{});
        item.stringValue = Utf8Text(u"a"_s);
        item.filePath = u"/old/a"_s;
        item.fileBookmarkData = "bookmark"_ba;
        m_files->bookmarks.places.insert("bookmark"_ba, {QUrl(url), isStale});
        return item;
    }

    void write(const ClipboardItem &item) { m_writer->write(item); }

    void writeFile(const QString &name, const QByteArray &bytes) const
    {
        QFile file(m_images + u'/' + name);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("The file cannot be written.");
    }

    QStringList trail() const { return m_printed->lines().filter(u"[DragPaste]"_s); }

    std::unique_ptr<FakePasteboard> m_pasteboard;
    std::unique_ptr<FakeScheduler> m_scheduler;
    std::unique_ptr<ScopedFileLease> m_fileLease;
    std::unique_ptr<PasteboardItemWriter> m_writer;
};

QTEST_GUILESS_MAIN(PasteboardItemWriterTest)
#include "PasteboardItemWriterTest.moc"
