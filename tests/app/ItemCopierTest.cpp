#include "app/ItemCopier.h"

#include "tests/fakes/AppDelegateFixture.h"
#include "tests/fakes/CountingSource.h"
#include "tests/fakes/SampleItems.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Entries = QList<PasteboardContents::Entry>;

PasteboardContents::Entry entry(QStringView type, const QByteArray &data)
{
    return {type.toString(), data};
}

PasteboardContents::Entry asTiff(const QByteArray &picture)
{
    return {PasteboardType::kTiff.toString(), picture, true};
}

} // namespace

class ItemCopierTest : public QObject, protected AppDelegateFixture
{
    Q_OBJECT

private slots:
    void init()
    {
        setUpDelegate();
        m_delegate->applicationDidFinishLaunching();
        m_copier = std::make_unique<ItemCopier>(*m_internalCopies, *m_pasteboard, *m_manager);
    }

    void cleanup()
    {
        m_copier.reset();
        tearDownDelegate();
    }

    // The way.

    void capturePausesBeforeThePasteboardIsTouched()
    {
        bool wasPaused = false;
        QSignalSpy posted(m_internalCopies.get(),
                          &InternalCopies::tessarineInternalCopyWillWrite);
        m_pasteboard->onWritten = [&] { wasPaused = m_monitor->isPaused(); };
        m_copier->copyItem(textItem(u"hello"_s, Timestamp{}));
        QVERIFY(wasPaused);
        QCOMPARE(posted.count(), 1);
        QCOMPARE(m_pasteboard->writeCount, 1);
    }

    void theHistoryStaysAsItIs()
    {
        m_manager->addItem(textItem(u"older"_s, Timestamp{}));
        m_manager->addItem(textItem(u"newer"_s, Timestamp{1s}));
        const ClipboardItemList before = m_manager->items();
        m_copier->copyItem(*before.last());
        m_scheduler->advance(5s);
        m_manager->drain();
        QVERIFY(m_manager->items() == before);
    }

    void whatIsCopiedElsewhereAfterThePauseIsCaptured()
    {
        m_manager->addItem(textItem(u"older"_s, Timestamp{}));
        m_copier->copyItem(*m_manager->items().first());
        m_scheduler->advance(600ms);
        m_pasteboard->copyText(u"other"_s);
        m_scheduler->advance(1s);
        m_manager->drain();
        QCOMPARE(m_manager->items().first()->stringValue->toString(), u"other"_s);
        QCOMPARE(m_manager->items().size(), 2);
    }

    void aSecondCopyIsPausedNoLongerThanTheFirst()
    {
        m_copier->copyItem(textItem(u"one"_s, Timestamp{}));
        m_scheduler->advance(400ms);
        m_copier->copyItem(textItem(u"two"_s, Timestamp{}));
        m_scheduler->advance(199ms);
        QVERIFY(m_monitor->isPaused());
        m_scheduler->advance(1ms);
        QVERIFY(!m_monitor->isPaused());
        // The second pause ends as well, and does not begin anew.
        m_monitor->setPaused(true);
        m_scheduler->advance(399ms);
        QVERIFY(m_monitor->isPaused());
        m_scheduler->advance(1ms);
        QVERIFY(!m_monitor->isPaused());
    }

    void neitherOfTwoCopiesComesBackAsAnEntry()
    {
        m_manager->addItem(textItem(u"older"_s, Timestamp{}));
        m_manager->addItem(textItem(u"newer"_s, Timestamp{1s}));
        const ClipboardItemList before = m_manager->items();
        m_copier->copyItem(*before.last());
        m_scheduler->advance(400ms);
        m_copier->copyItem(*before.first());
        m_scheduler->advance(5s);
        m_manager->drain();
        QVERIFY(m_manager->items() == before);
    }

    void nothingIsPasted()
    {
        pressHotkey();
        m_copier->copyItem(textItem(u"hello"_s, Timestamp{}));
        m_scheduler->advance(5s);
        QVERIFY(m_window.isVisible);
        QCOMPARE(m_keystroke->keyDownCount, 0);
        QVERIFY(m_workspace->activated.isEmpty());
    }

    // What is written.

    void aTextIsWrittenInAllItsForms()
    {
        ClipboardItem item = textItem(u"hello"_s, Timestamp{});
        item.htmlRepresentation = "<b>hello\0</b>"_ba;
        item.rtfRepresentation = "{\\rtf1 hello}"_ba;
        m_copier->copyItem(item);
        QCOMPARE(m_pasteboard->written.entries,
                 Entries({entry(PasteboardType::kString, "hello"_ba),
                          entry(PasteboardType::kHtml, "<b>hello\0</b>"_ba),
                          entry(PasteboardType::kRtf, "{\\rtf1 hello}"_ba)}));
    }

    void aLinkIsWrittenAsUrlToo()
    {
        ClipboardItem item = textItem(u"https://example.org/ü"_s, Timestamp{});
        item.contentType = ClipboardContentType::Url;
        m_copier->copyItem(item);
        QCOMPARE(m_pasteboard->written.entries,
                 Entries({entry(PasteboardType::kString, "https://example.org/ü"_ba),
                          entry(PasteboardType::kUrl, "https://example.org/%C3%BC"_ba)}));
    }

    void aTextThatCannotBeReadBackLeavesThePasteboardEmpty()
    {
        ClipboardItem item = makeItem(ClipboardContentType::Text, Timestamp{});
        item.stringValue
            = Utf8Text::elsewhere(QByteArray(Utf8Text::kLongText + 1, 'a'),
                                  std::make_shared<CountingSource>(std::nullopt));
        m_pasteboard->written.add(PasteboardType::kString, "old"_ba);
        m_copier->copyItem(item);
        QVERIFY(m_pasteboard->written.isEmpty());
        QCOMPARE(m_pasteboard->writeCount, 1);
    }

    void aPictureInMemoryIsPreferredToItsFile()
    {
        writePicture(u"a.jpg"_s, "pixels in the file");
        ClipboardItem item = picture(u"a.jpg"_s);
        item.imageRepresentation = "pixels in memory"_ba;
        m_copier->copyItem(item);
        QCOMPARE(m_pasteboard->written.entries, Entries{asTiff("pixels in memory"_ba)});
    }

    void bytesInMemoryThatAreNoPictureDoNotGiveWayToTheFile()
    {
        writePicture(u"a.jpg"_s, "pixels in the file");
        ClipboardItem item = picture(u"a.jpg"_s);
        item.imageRepresentation = "no picture"_ba;
        m_copier->copyItem(item);
        QCOMPARE(m_pasteboard->written.entries, Entries{asTiff("no picture"_ba)});
    }

    void aStoredPictureOfAnyFormatIsOfferedAsTiff_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::newRow("jpg") << u"a.jpg"_s;
        QTest::newRow("png") << u"a.png"_s;
        QTest::newRow("tiff") << u"a.tiff"_s;
    }

    void aStoredPictureOfAnyFormatIsOfferedAsTiff()
    {
        QFETCH(QString, fileName);
        writePicture(fileName, "pixels");
        m_copier->copyItem(picture(fileName));
        QCOMPARE(m_pasteboard->written.entries, Entries{asTiff("pixels"_ba)});
    }

    void aStoredPictureIsReadWhenAProgramAsksEvenIfItsEntryIsGone()
    {
        writePicture(u"a.jpg"_s, "pixels");
        m_copier->copyItem(picture(u"a.jpg"_s));
        QCOMPARE(m_pasteboard->written.entries.size(), 1);
        const LazyBytes data = m_pasteboard->written.entries.first().data;
        QVERIFY(!data.isInMemory());
        QVERIFY(QFile::remove(m_images + u"/a.jpg"_s));
        QCOMPARE(data.read(), "pixels"_ba);
    }

    void whatIsGoneLeavesThePasteboardEmpty_data()
    {
        QTest::addColumn<ClipboardContentType>("type");
        QTest::newRow("a picture") << ClipboardContentType::Image;
        QTest::newRow("a file without a path") << ClipboardContentType::File;
        QTest::newRow("a text without any form") << ClipboardContentType::Text;
    }

    void whatIsGoneLeavesThePasteboardEmpty()
    {
        QFETCH(ClipboardContentType, type);
        ClipboardItem item = makeItem(type, Timestamp{});
        item.imageFileName = u"lost.jpg"_s;
        m_pasteboard->written.add(PasteboardType::kString, "old"_ba);
        m_copier->copyItem(item);
        QVERIFY(m_pasteboard->written.isEmpty());
        QCOMPARE(m_pasteboard->writeCount, 1);
    }

    void mixedContentLeavesThePasteboardEmpty()
    {
        ClipboardItem item = textItem(u"hello"_s, Timestamp{});
        item.contentType = ClipboardContentType::Mixed;
        item.filePath = u"/etc/hosts"_s;
        m_pasteboard->written.add(PasteboardType::kString, "old"_ba);
        m_copier->copyItem(item);
        QVERIFY(m_pasteboard->written.isEmpty());
        QCOMPARE(m_pasteboard->writeCount, 1);
        QVERIFY(m_monitor->isPaused());
    }

    void aFileIsWrittenFromWhereItsBookmarkLeadsWithoutALease()
    {
        m_copier->copyItem(bookmarkedFile(false));
        QCOMPARE(m_pasteboard->written.entries,
                 Entries{entry(PasteboardType::kFileUrl, "file:///new/b"_ba)});
        QVERIFY(m_files->access.started.isEmpty());
    }

    void aStaleBookmarkIsRenewedAndTheEntryKeepsItsPlace()
    {
        const ClipboardItem item = bookmarkedFile(true);
        m_manager->addItem(item);
        m_manager->addItem(textItem(u"newer"_s, Timestamp{1s}));
        m_copier->copyItem(item);
        QCOMPARE(m_pasteboard->written.entries,
                 Entries{entry(PasteboardType::kFileUrl, "file:///new/b"_ba)});
        QCOMPARE(m_manager->items().last()->fileBookmarkData, "bookmark of file:///new/b"_ba);
        QCOMPARE(m_files->access.openCount, 0);
    }

    void aFileWithoutAnyBookmarkIsWrittenByItsPathEvenIfItIsGone()
    {
        ClipboardItem item = makeItem(ClipboardContentType::File, Timestamp{});
        item.filePath = u"/tmp/100% ü\nline#?"_s;
        m_copier->copyItem(item);
        QCOMPARE(m_pasteboard->written.entries,
                 Entries{entry(PasteboardType::kFileUrl,
                               "file:///tmp/100%25%20%C3%BC%0Aline%23%3F"_ba)});
    }

private:
    void writePicture(const QString &name, const QByteArray &bytes)
    {
        QFile file(m_images + u'/' + name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    static ClipboardItem picture(const QString &fileName)
    {
        ClipboardItem item = makeItem(ClipboardContentType::Image, Timestamp{});
        item.imageFileName = fileName;
        return item;
    }

    ClipboardItem bookmarkedFile(bool isStale)
    {
        ClipboardItem item = makeItem(ClipboardContentType::File, Timestamp{});
        item.filePath = u"/old/a"_s;
        item.fileBookmarkData = "bookmark"_ba;
        m_files->bookmarks.places.insert("bookmark"_ba, {QUrl(u"file:///new/b"_s), isStale});
        return item;
    }

    std::unique_ptr<ItemCopier> m_copier;
};

QTEST_MAIN(ItemCopierTest)
#include "ItemCopierTest.moc"
