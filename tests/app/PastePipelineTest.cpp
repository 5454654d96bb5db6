#include "app/PastePipeline.h"

#include "app/ScopedFileLease.h"
#include "tests/fakes/CaptureFixture.h"
#include "tests/fakes/FakePasteKeystroke.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

using Entries = QList<PasteboardContents::Entry>;

PasteboardContents::Entry entry(QStringView type, const QByteArray &data)
{
    return {type.toString(), data};
}

ClipboardItem textItem(const QString &text)
{
    ClipboardItem item = makeItem(ClipboardContentType::Text, Timestamp{});
    item.stringValue = Utf8Text(text);
    return item;
}

const RunningApplication kEditor{u"org.editor"_s, u"Editor"_s, 7, 70};
const RunningApplication kTerminal{u"org.terminal"_s, u"Terminal"_s, 8, 80};

} // namespace

class PastePipelineTest : public QObject, protected CaptureFixture
{
    Q_OBJECT

private slots:
    void init()
    {
        setUpCapture();
        m_keystroke = std::make_unique<FakePasteKeystroke>();
        m_fileLease = std::make_unique<ScopedFileLease>(m_files->references, *m_scheduler, *m_clock,
                                                        *m_defaults);
        m_pipeline = std::make_unique<PastePipeline>(*m_pasteboard, *m_workspace, *m_keystroke,
                                                     *m_scheduler, *m_monitor, *m_manager,
                                                     *m_defaults, *m_codec, *m_fileLease);
        m_hideCount = 0;
        m_pipeline->onHideWindow = [this] { ++m_hideCount; };
    }

    void cleanup()
    {
        m_pipeline.reset();
        m_fileLease.reset();
        tearDownCapture();
    }

    // The timeline.

    void aPasteFollowsItsTimelineToTheMillisecond()
    {
        m_pipeline->setPreviouslyActiveApp(kEditor);
        m_pipeline->pasteItem(textItem(u"hello"_s));
        QCOMPARE(m_pasteboard->written.entries, Entries{entry(PasteboardType::kString, "hello"_ba)});
        QCOMPARE(m_hideCount, 1);
        QVERIFY(m_pipeline->isPasting());
        QVERIFY(m_monitor->isPaused());

        advanceTo(249ms);
        QVERIFY(m_workspace->activated.isEmpty());
        advanceTo(250ms);
        QCOMPARE(m_workspace->activated, QList{kEditor});
        QCOMPARE(m_keystroke->prepared, QList{kEditor});

        advanceTo(399ms);
        QCOMPARE(m_keystroke->keyDownCount, 0);
        advanceTo(400ms);
        QCOMPARE(m_keystroke->keyDownCount, 1);
        QCOMPARE(m_keystroke->keyUpCount, 1);

        advanceTo(599ms);
        QVERIFY(m_pipeline->isPasting());
        QVERIFY(m_monitor->isPaused());
        advanceTo(600ms);
        QVERIFY(!m_pipeline->isPasting());
        QVERIFY(!m_monitor->isPaused());

        advanceTo(1min);
        QCOMPARE(m_pasteboard->writeCount, 1);
        QCOMPARE(m_workspace->activated.size(), 1);
        QCOMPARE(m_keystroke->keyDownCount, 1);
        QCOMPARE(m_hideCount, 1);
    }

    void aPasteTellsItsSteps()
    {
        m_pipeline->setPreviouslyActiveApp(kEditor);
        const QStringList before = m_printed->lines();
        m_pipeline->pasteItem(textItem(u"hello"_s));
        advanceTo(1s);
        QCOMPARE(m_printed->lines().sliced(before.size()),
                 QStringList({u"Item copied to clipboard"_s,
                              u"Activating previous app: Editor"_s,
                              u"Accessibility permission: GRANTED ✓"_s, u"Posted keyDown event"_s,
                              u"Posted keyUp event"_s, u"Simulated Cmd+V paste completed"_s}));
    }

    void thePasteboardIsWrittenBeforeTheWindowHides()
    {
        int writesAtHiding = -1;
        bool wasPausedAtHiding = false;
        m_pipeline->onHideWindow = [&] {
            writesAtHiding = m_pasteboard->writeCount;
            wasPausedAtHiding = m_monitor->isPaused();
        };
        m_pipeline->pasteItem(textItem(u"hello"_s));
        QCOMPARE(writesAtHiding, 1);
        QVERIFY(wasPausedAtHiding);
    }

    void aPasteNeedsNoWindow()
    {
        m_pipeline->onHideWindow = {};
        m_pipeline->setPreviouslyActiveApp(kEditor);
        m_pipeline->pasteItem(textItem(u"hello"_s));
        advanceTo(1s);
        QCOMPARE(m_keystroke->keyUpCount, 1);
    }

    void withoutTargetTheEntryStaysOnThePasteboard()
    {
        m_pipeline->pasteItem(textItem(u"hello"_s));
        advanceTo(249ms);
        QVERIFY(m_pipeline->isPasting());
        advanceTo(250ms);
        QVERIFY(!m_pipeline->isPasting());
        QVERIFY(!m_monitor->isPaused());
        advanceTo(2s);
        QCOMPARE(m_keystroke->keyDownCount, 0);
        QVERIFY(m_workspace->activated.isEmpty());
        QCOMPARE(m_pasteboard->written.entries.size(), 1);
    }

    void theTargetOfTheStartIsPastedInto()
    {
        m_pipeline->setPreviouslyActiveApp(kEditor);
        m_pipeline->pasteItem(textItem(u"hello"_s));
        m_pipeline->setPreviouslyActiveApp(kTerminal);
        advanceTo(1s);
        QCOMPARE(m_workspace->activated, QList{kEditor});
    }

    void theTargetIsKeptForLaterPastes()
    {
        m_pipeline->setPreviouslyActiveApp(kEditor);
        m_pipeline->pasteItem(textItem(u"one"_s));
        advanceTo(1s);
        m_pipeline->pasteItem(textItem(u"two"_s));
        advanceTo(2s);
        QCOMPARE(m_workspace->activated, QList({kEditor, kEditor}));
        QCOMPARE(m_keystroke->keyDownCount, 2);
    }

    void aTargetWithoutNameIsUnknown()
    {
        m_pipeline->setPreviouslyActiveApp({u"org.nameless"_s, {}, 9, 90});
        m_pipeline->pasteItem(textItem(u"hello"_s));
        advanceTo(1s);
        QVERIFY(m_printed->contains(u"Activating previous app: Unknown"_s));
    }

    void aSecondPasteRunsBesideTheFirst()
    {
        m_pipeline->setPreviouslyActiveApp(kEditor);
        m_pipeline->pasteItem(textItem(u"one"_s));
        advanceTo(100ms);
        m_pipeline->pasteItem(textItem(u"two"_s));
        // The end of the first run ends the pause for both.
        advanceTo(600ms);
        QVERIFY(!m_pipeline->isPasting());
        advanceTo(2s);
        QCOMPARE(m_keystroke->keyDownCount, 2);
        QCOMPARE(m_pasteboard->writeCount, 2);
    }

    void stepsOfAPipelineThatIsGoneDoNothing()
    {
        m_pipeline->setPreviouslyActiveApp(kEditor);
        m_pipeline->pasteItem(textItem(u"hello"_s));
        m_pipeline->internalCopyWillWrite();
        m_pipeline.reset();
        advanceTo(2s);
        QVERIFY(m_workspace->activated.isEmpty());
        QCOMPARE(m_keystroke->keyDownCount, 0);
    }

    // The keystroke.

    void withoutPermissionNoKeyIsSentAndTheFlagsClearAtOnce()
    {
        m_keystroke->permitted = false;
        m_pipeline->setPreviouslyActiveApp(kEditor);
        m_pipeline->pasteItem(textItem(u"hello"_s));
        advanceTo(399ms);
        QVERIFY(m_pipeline->isPasting());
        QCOMPARE(m_keystroke->permissionRequestCount, 0);
        advanceTo(400ms);
        QVERIFY(!m_pipeline->isPasting());
        QVERIFY(!m_monitor->isPaused());
        QCOMPARE(m_keystroke->permissionRequestCount, 1);
        QCOMPARE(m_keystroke->keyDownCount, 0);
        QCOMPARE(m_printed->lines().last(3),
                 QStringList({u"Accessibility permission: DENIED ✗"_s,
                              u"ERROR: 需要辅助功能权限才能自动粘贴！"_s,
                              u"请在 系统设置 → 隐私与安全性 → 辅助功能 中授权 Xcode"_s}));
    }

    void noKeyIsSentToAWindowThatIsNotTheTarget()
    {
        m_keystroke->targetFocused = false;
        m_pipeline->setPreviouslyActiveApp(kEditor);
        m_pipeline->pasteItem(textItem(u"hello"_s));
        advanceTo(400ms);
        QCOMPARE(m_keystroke->keyDownCount, 0);
        QVERIFY(!m_pipeline->isPasting());
        QVERIFY(!m_monitor->isPaused());
        QVERIFY(m_printed->lines().last().endsWith(
            u"aste target is not in front; the entry stays on the clipboard"_s));
    }

    void aKeyThatCannotBePressedEndsThePaste()
    {
        m_keystroke->keyDownWorks = false;
        m_pipeline->setPreviouslyActiveApp(kEditor);
        m_pipeline->pasteItem(textItem(u"hello"_s));
        advanceTo(400ms);
        QCOMPARE(m_printed->lines().last(), u"ERROR: Failed to create keyDown event!"_s);
        QCOMPARE(m_keystroke->keyUpCount, 0);
        QVERIFY(!m_pipeline->isPasting());
    }

    void aKeyThatCannotBeReleasedEndsThePaste()
    {
        m_keystroke->keyUpWorks = false;
        m_pipeline->setPreviouslyActiveApp(kEditor);
        m_pipeline->pasteItem(textItem(u"hello"_s));
        advanceTo(400ms);
        QCOMPARE(m_keystroke->keyDownCount, 1);
        QCOMPARE(m_printed->lines().last(2),
                 QStringList({u"Posted keyDown event"_s,
                              u"ERROR: Failed to create keyUp event!"_s}));
        QVERIFY(!m_pipeline->isPasting());
    }

    // What goes onto the pasteboard.

    void anItemOfMixedContentLeavesThePasteboardEmptyAndIsPastedAllTheSame()
    {
        ClipboardItem item = textItem(u"hello"_s);
        item.contentType = ClipboardContentType::Mixed;
        item.filePath = u"/etc/hosts"_s;
        paste(item);
        QCOMPARE(m_pasteboard->writeCount, 1);
        QVERIFY(m_pasteboard->written.isEmpty());
        QCOMPARE(m_keystroke->keyDownCount, 1);
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
        paste(item);
        QCOMPARE(m_pasteboard->written.entries, Entries{entry(type, bytes)});
        QVERIFY(!m_printed->contains(u"Failed to restore image data from history item"_s));
    }

    void aLostImageFileIsReplacedByTheBytesInMemoryEvenUnreadableOnes()
    {
        ClipboardItem item = makeItem(ClipboardContentType::Image, Timestamp{});
        item.imageFileName = u"lost.jpg"_s;
        item.imageRepresentation = "no picture"_ba;
        paste(item);
        QCOMPARE(m_pasteboard->written.entries,
                 Entries{entry(PasteboardType::kTiff, "no picture"_ba)});
        QVERIFY(!m_printed->contains(u"Failed to restore image data from history item"_s));
    }

    void theBytesInMemoryGoOutAsTiff()
    {
        ClipboardItem item = makeItem(ClipboardContentType::Image, Timestamp{});
        item.imageRepresentation = "pixels"_ba;
        paste(item);
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
        paste(item);
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
        paste(item);
        QVERIFY(m_pasteboard->written.isEmpty());
    }

    void anImageWithoutSourceLeavesThePasteboardEmptyAndIsPastedAllTheSame()
    {
        ClipboardItem item = makeItem(ClipboardContentType::Image, Timestamp{});
        item.imageFileName = u"lost.png"_s;
        paste(item);
        QVERIFY(m_pasteboard->written.isEmpty());
        QVERIFY(m_printed->contains(u"Failed to restore image data from history item"_s));
        QVERIFY(m_printed->contains(u"Item copied to clipboard"_s));
        QCOMPARE(m_keystroke->keyDownCount, 1);
    }

    void aFileGoesOutAsUrl()
    {
        ClipboardItem item = makeItem(ClipboardContentType::File, Timestamp{});
        item.stringValue = Utf8Text(u"ü b.txt, c"_s);
        item.filePath = u"/tmp/ü b.txt"_s;
        paste(item);
        QCOMPARE(m_pasteboard->written.entries,
                 Entries{entry(PasteboardType::kFileUrl, "file:///tmp/%C3%BC%20b.txt"_ba)});
    }

    void aFileGoesOutFromWhereItsBookmarkLeads()
    {
        const ClipboardItem item = bookmarkedFile(u"file:///new/b"_s, false);
        paste(item);
        QCOMPARE(m_pasteboard->written.entries,
                 Entries{entry(PasteboardType::kFileUrl, "file:///new/b"_ba)});
    }

    void aStaleBookmarkIsRenewedByThePaste()
    {
        ClipboardItem item = bookmarkedFile(u"file:///new/b"_s, true);
        m_manager->addItem(item);
        paste(item);
        QCOMPARE(m_pasteboard->written.entries,
                 Entries{entry(PasteboardType::kFileUrl, "file:///new/b"_ba)});
        QCOMPARE(m_manager->items().first()->fileBookmarkData, "bookmark of file:///new/b"_ba);
    }

    void aDeadBookmarkGivesWayToThePath()
    {
        ClipboardItem item = bookmarkedFile(u"file:///new/b"_s, false);
        item.fileBookmarkData = "dead"_ba;
        m_files->access.files = {QUrl(u"file:///old/a"_s)};
        paste(item);
        QCOMPARE(m_pasteboard->written.entries,
                 Entries{entry(PasteboardType::kFileUrl, "file:///old/a"_ba)});
    }

    void aFileWithoutPathLeavesThePasteboardEmpty()
    {
        paste(makeItem(ClipboardContentType::File, Timestamp{}));
        QVERIFY(m_pasteboard->written.isEmpty());
        QCOMPARE(m_keystroke->keyDownCount, 1);
    }

    // The shield.

    void nothingCopiedDuringAPasteIsCaptured()
    {
        m_monitor->startMonitoring();
        m_pipeline->setPreviouslyActiveApp(kEditor);
        m_pipeline->pasteItem(textItem(u"hello"_s));
        m_pasteboard->onChanged();
        m_pasteboard->copyText(u"an echo"_s);
        advanceTo(5s);
        QVERIFY(m_manager->items().isEmpty());
    }

    void theWriteOfAPasteIsNotCapturedEvenIfItIsNoticedLate()
    {
        m_monitor->startMonitoring();
        m_pipeline->pasteItem(textItem(u"hello"_s));
        // Without target the pause ends before the first poll.
        advanceTo(5s);
        QVERIFY(m_manager->items().isEmpty());
    }

    void anInternalCopyPausesForSixTenths()
    {
        m_pipeline->internalCopyWillWrite();
        QVERIFY(m_monitor->isPaused());
        QVERIFY(!m_pipeline->isPasting());
        advanceTo(599ms);
        QVERIFY(m_monitor->isPaused());
        advanceTo(600ms);
        QVERIFY(!m_monitor->isPaused());
    }

    void theFirstOfTwoInternalCopiesEndsThePause()
    {
        m_pipeline->internalCopyWillWrite();
        advanceTo(300ms);
        m_pipeline->internalCopyWillWrite();
        advanceTo(600ms);
        QVERIFY(!m_monitor->isPaused());
    }

    void aPasteThatFinishesEndsThePauseOfAnInternalCopy()
    {
        m_pipeline->pasteItem(textItem(u"hello"_s));
        m_pipeline->internalCopyWillWrite();
        advanceTo(250ms);
        QVERIFY(!m_monitor->isPaused());
    }

    // The trail.

    void theTrailIsSilentUnlessItIsAskedFor()
    {
        m_pipeline->setPreviouslyActiveApp(kEditor);
        paste(textItem(u"hello"_s));
        QVERIFY(trail().isEmpty());
    }

    void theTrailTellsWhatWasWritten()
    {
        m_defaults->set(u"debug.drag_paste_logging"_s, true);
        writeFile(u"a.JPG"_s, "1234"_ba);
        ClipboardItem image = makeItem(ClipboardContentType::Image, Timestamp{});
        image.imageFileName = u"a.JPG"_s;
        paste(image);
        QCOMPARE(trail(),
                 QStringList({u"[DragPaste] pasteItem start type=image id="_s + idOf(image),
                              u"[DragPaste] writeImageToPasteboard from file name=a.JPG ext=jpg "
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
        paste(image);
        QCOMPARE(trail().last(), line);
    }

    void theTrailTellsWhyNothingWasWritten()
    {
        m_defaults->set(u"debug.drag_paste_logging"_s, true);
        ClipboardItem image = makeItem(ClipboardContentType::Image, Timestamp{});
        image.imageFileName = u"lost"_s;
        paste(image);
        QCOMPARE(
            trail(),
            QStringList(
                {u"[DragPaste] pasteItem start type=image id="_s + idOf(image),
                 u"[DragPaste] writeImageToPasteboard failed reading file name=lost"_s,
                 u"[DragPaste] writeImageToPasteboard exhausted all sources for id="_s + idOf(image),
                 u"[DragPaste] pasteItem image failed to write to NSPasteboard"_s}));
    }

    void theTrailNamesThePathOfAFile()
    {
        m_defaults->set(u"debug.drag_paste_logging"_s, true);
        ClipboardItem file = makeItem(ClipboardContentType::File, Timestamp{});
        file.filePath = u"/tmp/a b"_s;
        paste(file);
        QCOMPARE(trail().last(),
                 u"[DragPaste] pasteItem file writeObjects fallback path=/tmp/a b"_s);
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
        paste(item);
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

    void advanceTo(std::chrono::milliseconds moment)
    {
        m_scheduler->advance(moment - m_scheduler->now());
    }

    void paste(const ClipboardItem &item)
    {
        m_pipeline->setPreviouslyActiveApp(kEditor);
        m_pipeline->pasteItem(item);
        m_scheduler->advance(1s);
    }

    void writeFile(const QString &name, const QByteArray &bytes) const
    {
        QFile file(m_images + u'/' + name);
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
            qFatal("The file cannot be written.");
    }

    QStringList trail() const { return m_printed->lines().filter(u"[DragPaste]"_s); }

    static QString idOf(const ClipboardItem &item)
    {
        return item.id.toString(QUuid::WithoutBraces).toUpper();
    }

    std::unique_ptr<FakePasteKeystroke> m_keystroke;
    std::unique_ptr<ScopedFileLease> m_fileLease;
    std::unique_ptr<PastePipeline> m_pipeline;
    int m_hideCount = 0;
};

QTEST_GUILESS_MAIN(PastePipelineTest)
#include "PastePipelineTest.moc"
