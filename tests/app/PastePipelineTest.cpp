#include "app/PastePipeline.h"

#include "app/ScopedFileLease.h"
#include "tests/fakes/CaptureFixture.h"
#include "tests/fakes/CountingSource.h"
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
        advanceTo(999ms);
        QVERIFY(m_pipeline->isPasting());
        QVERIFY(m_monitor->isPaused());
        advanceTo(1000ms);
        QCOMPARE(m_keystroke->keyDownCount, 0);
        QVERIFY(!m_pipeline->isPasting());
        QVERIFY(!m_monitor->isPaused());
        QCOMPARE(m_printed->lines().last(),
                 u"The paste target is not in front; the entry stays on the clipboard"_s);
    }

    void aTargetThatComesToTheFrontLateGetsTheKeysOnce()
    {
        m_keystroke->targetFocused = false;
        m_pipeline->setPreviouslyActiveApp(kEditor);
        m_pipeline->pasteItem(textItem(u"hello"_s));
        advanceTo(655ms);
        m_keystroke->targetFocused = true;
        advanceTo(660ms);
        QCOMPARE(m_keystroke->keyDownCount, 1);
        QCOMPARE(m_keystroke->keyUpCount, 1);
        advanceTo(859ms);
        QVERIFY(m_pipeline->isPasting());
        advanceTo(860ms);
        QVERIFY(!m_pipeline->isPasting());
        advanceTo(2s);
        QCOMPARE(m_keystroke->keyDownCount, 1);
    }

    void ofTwoPastesTheFirstDoesNotWaitForItsTarget()
    {
        m_keystroke->targetFocused = false;
        m_pipeline->setPreviouslyActiveApp(kEditor);
        m_pipeline->pasteItem(textItem(u"first"_s));
        advanceTo(300ms);
        m_pipeline->pasteItem(textItem(u"second"_s));
        advanceTo(600ms);
        m_keystroke->targetFocused = true;
        advanceTo(2s);
        QCOMPARE(m_keystroke->keyDownCount, 1);
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

    void anEntryThatLeavesNothingOnThePasteboardIsPastedAllTheSame_data()
    {
        QTest::addColumn<ClipboardContentType>("type");
        QTest::newRow("mixed content") << ClipboardContentType::Mixed;
        QTest::newRow("an image without source") << ClipboardContentType::Image;
        QTest::newRow("a file without path") << ClipboardContentType::File;
    }

    void anEntryThatLeavesNothingOnThePasteboardIsPastedAllTheSame()
    {
        QFETCH(ClipboardContentType, type);
        m_pipeline->setPreviouslyActiveApp(kEditor);
        m_pipeline->pasteItem(makeItem(type, Timestamp{}));
        advanceTo(400ms);
        QCOMPARE(m_pasteboard->writeCount, 1);
        QVERIFY(m_pasteboard->written.isEmpty());
        QVERIFY(m_printed->contains(u"Item copied to clipboard"_s));
        QCOMPARE(m_keystroke->keyDownCount, 1);
    }

    void aTextThatTheHistoryHasLostEndsNoRun()
    {
        const auto lost = std::make_shared<CountingSource>(std::nullopt);
        ClipboardItem item = textItem(u"hello"_s);
        item.stringValue = Utf8Text::elsewhere(QByteArray(Utf8Text::kLongText + 1, 'a'), lost);
        m_pipeline->setPreviouslyActiveApp(kEditor);
        m_pipeline->pasteItem(item);
        advanceTo(400ms);
        QVERIFY(m_printed->contains(u"Failed to restore text data from history item"_s));
        QVERIFY(m_pasteboard->written.isEmpty());
        QCOMPARE(m_keystroke->keyDownCount, 1);
    }

    // The lease of a file.

    void aPastedFileIsHeldUntilItsReaderHasHadTime()
    {
        askForTheTrail();
        m_pipeline->setPreviouslyActiveApp(kEditor);
        m_pipeline->pasteItem(fileItem());
        QCOMPARE(openCount(), 1);
        advanceTo(749ms);
        QCOMPARE(openCount(), 1);
        QVERIFY(!m_pipeline->isPasting());
        advanceTo(750ms);
        QCOMPARE(openCount(), 0);
        QCOMPARE(releases(), QStringList{release(u"paste event posted"_s, 750)});
        advanceTo(1min);
        QCOMPARE(releases().size(), 1);
    }

    void withoutTargetTheFileIsLetGoAfterAQuarterOfASecond()
    {
        askForTheTrail();
        m_pipeline->pasteItem(fileItem());
        advanceTo(249ms);
        QCOMPARE(openCount(), 1);
        advanceTo(250ms);
        QCOMPARE(openCount(), 0);
        QCOMPARE(releases(), QStringList{release(u"no previous app for paste"_s, 250)});
        // A paste by hand relies on what the other program may read itself.
        QCOMPARE(m_pasteboard->written.entries.size(), 1);
    }

    void withoutKeystrokeTheFileIsLetGoAtOnce_data()
    {
        QTest::addColumn<bool>("isPermitted");
        QTest::addColumn<bool>("isFocused");
        QTest::newRow("no permission") << false << true;
        QTest::newRow("another window in front") << true << false;
    }

    void withoutKeystrokeTheFileIsLetGoAtOnce()
    {
        QFETCH(bool, isPermitted);
        QFETCH(bool, isFocused);
        askForTheTrail();
        m_keystroke->permitted = isPermitted;
        m_keystroke->targetFocused = isFocused;
        m_pipeline->setPreviouslyActiveApp(kEditor);
        m_pipeline->pasteItem(fileItem());
        const int endsAt = isPermitted && !isFocused ? 1000 : 400;
        advanceTo(std::chrono::milliseconds(endsAt - 1));
        QCOMPARE(openCount(), 1);
        advanceTo(std::chrono::milliseconds(endsAt));
        QCOMPARE(openCount(), 0);
        QCOMPARE(releases(), QStringList{release(u"paste event not posted"_s, endsAt)});
    }

    void ofTwoFilesOnlyTheSecondEndsByItsOwnSchedule()
    {
        askForTheTrail();
        m_pipeline->setPreviouslyActiveApp(kEditor);
        m_pipeline->pasteItem(fileItem());
        advanceTo(200ms);
        m_pipeline->pasteItem(fileItem());
        QCOMPARE(openCount(), 1);
        // Not at 0.75 s, by the keystroke of the first.
        advanceTo(949ms);
        QCOMPARE(openCount(), 1);
        advanceTo(950ms);
        QCOMPARE(openCount(), 0);
        advanceTo(1min);
        QCOMPARE(releases(),
                 QStringList({release(u"normal"_s, 200), release(u"paste event posted"_s, 750)}));
    }

    void aRunThatFailsSparesTheFileOfALaterOne()
    {
        m_keystroke->permitted = false;
        m_pipeline->setPreviouslyActiveApp(kEditor);
        m_pipeline->pasteItem(fileItem());
        advanceTo(200ms);
        m_pipeline->pasteItem(fileItem());
        advanceTo(599ms);
        QCOMPARE(openCount(), 1);
        advanceTo(600ms);
        QCOMPARE(openCount(), 0);
    }

    void aReleaseThatALaterPasteHasOvertakenDoesNothing()
    {
        m_pipeline->setPreviouslyActiveApp(kEditor);
        m_pipeline->pasteItem(fileItem());
        advanceTo(500ms);
        m_pipeline->pasteItem(fileItem());
        advanceTo(1249ms);
        QCOMPARE(openCount(), 1);
        advanceTo(1250ms);
        QCOMPARE(openCount(), 0);
    }

    void anyLaterPasteLetsGoOfTheFileFirst()
    {
        askForTheTrail();
        m_pipeline->pasteItem(fileItem());
        m_pipeline->pasteItem(textItem(u"hello"_s));
        QCOMPARE(openCount(), 0);
        QCOMPARE(releases(), QStringList{release(u"normal"_s, 0)});
    }

    void aFileThatMayNotBeReadIsPastedAllTheSame()
    {
        askForTheTrail();
        m_files->access.isGranted = false;
        m_pipeline->setPreviouslyActiveApp(kEditor);
        m_pipeline->pasteItem(fileItem());
        advanceTo(10s);
        QCOMPARE(m_keystroke->keyDownCount, 1);
        QCOMPARE(releases(), QStringList());
    }

    void theEndOfTheProgramLetsGoOfTheFile()
    {
        askForTheTrail();
        m_pipeline->pasteItem(fileItem());
        advanceTo(100ms);
        m_pipeline->applicationWillTerminate();
        QCOMPARE(openCount(), 0);
        QCOMPARE(releases(), QStringList{release(u"app terminate"_s, 100)});
    }

    void theTrailFollowsAPastedFile()
    {
        askForTheTrail();
        const ClipboardItem item = fileItem();
        m_pipeline->setPreviouslyActiveApp(kEditor);
        m_pipeline->pasteItem(item);
        QStringList trail = m_printed->lines().filter(u"[DragPaste]"_s);
        QCOMPARE(trail.takeFirst(),
                 u"[DragPaste] pasteItem start type=file id="_s + uuidString(item.id));
        QVERIFY(trail.takeFirst().startsWith(
            u"[DragPaste] beginScopedFileURLAccess started path=/home/a lease="_s));
        QCOMPARE(trail, QStringList{u"[DragPaste] pasteItem file writeObjects resolved url=/home/a "
                                    "stale=false accessing=true"_s});
    }

    void theTrailNamesTheTypeOfThePastedEntry_data()
    {
        QTest::addColumn<ClipboardContentType>("type");
        QTest::addColumn<QString>("name");
        QTest::newRow("a text") << ClipboardContentType::Text << u"text"_s;
        QTest::newRow("a picture") << ClipboardContentType::Image << u"image"_s;
        QTest::newRow("a file") << ClipboardContentType::File << u"file"_s;
        QTest::newRow("a link") << ClipboardContentType::Url << u"url"_s;
        QTest::newRow("mixed content") << ClipboardContentType::Mixed << u"mixed"_s;
    }

    void theTrailNamesTheTypeOfThePastedEntry()
    {
        QFETCH(ClipboardContentType, type);
        QFETCH(QString, name);
        askForTheTrail();
        const ClipboardItem item = makeItem(type, Timestamp{});
        m_pipeline->pasteItem(item);
        QCOMPARE(m_printed->lines().filter(u"pasteItem start"_s),
                 QStringList{u"[DragPaste] pasteItem start type=%1 id=%2"_s.arg(
                     name, uuidString(item.id))});
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

private:
    void advanceTo(std::chrono::milliseconds moment)
    {
        const auto step = moment - m_scheduler->now();
        m_clock->advance(step);
        m_scheduler->advance(step);
    }

    /// An entry whose bookmark leads to /home/a.
    ClipboardItem fileItem()
    {
        ClipboardItem item = makeItem(ClipboardContentType::File, Timestamp{});
        item.fileBookmarkData = "bookmark"_ba;
        m_files->bookmarks.places.insert("bookmark"_ba, {QUrl(u"file:///home/a"_s), false});
        return item;
    }

    int openCount() const { return m_files->access.openCount; }
    void askForTheTrail() { m_defaults->set(u"debug.drag_paste_logging"_s, true); }

    /// What the trail tells of the ends of leases.
    QStringList releases() const
    {
        return m_printed->lines().filter(u"releaseActiveScopedFileURLIfNeeded"_s);
    }

    static QString release(const QString &reason, int heldMs)
    {
        return u"[DragPaste] releaseActiveScopedFileURLIfNeeded reason=%1 path=/home/a heldMs=%2"_s
            .arg(reason)
            .arg(heldMs);
    }

    std::unique_ptr<FakePasteKeystroke> m_keystroke;
    std::unique_ptr<ScopedFileLease> m_fileLease;
    std::unique_ptr<PastePipeline> m_pipeline;
    int m_hideCount = 0;
};

QTEST_GUILESS_MAIN(PastePipelineTest)
#include "PastePipelineTest.moc"
