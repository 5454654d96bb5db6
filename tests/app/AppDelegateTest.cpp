#include "tests/fakes/AppDelegateFixture.h"

#include "core/HistoryCapacity.h"

#include <QRegularExpression>
#include <QTest>
#include <QWidget>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class AppDelegateTest : public QObject, protected AppDelegateFixture
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void launchingPrintsItsStepsInOrder();
    void hotkeyOpensTheWindowAndClosesItAgain();
    void hotkeyDuringTheHideTurnsTheWindowRound();
    void hotkeyBringsAWindowBackThatIsNotOnTheScreen();
    void hiddenWindowIsDroppedAndTheNextOpeningBuildsANewOne();
    void openingRecordsTheEarlierProgramButNeverThisOne();
    void programWithoutNameIsRecordedAsUnknown();
    void newItemReachesTheOpenWindow();
    void storedPictureReachesTheOpenWindow();
    void unmarkingTheOldestOfAFullHistoryTakesItFromTheOpenWindow();
    void itemDuringAPasteIsIgnored();
    void chosenItemIsPastedIntoTheRecordedProgram();
    void onlyAHotkeyOfAnotherProgramIsToldAtTheStart_data();
    void onlyAHotkeyOfAnotherProgramIsToldAtTheStart();
    void refusedHotkeyIsPrintedAndTheProgramGoesOn();
    void changedHotkeyIsRegisteredAtOnce();
    void changedLanguageReachesTheWindows();
    void internalCopyPausesCaptureForAWhile();
    void secondStartShowsTheWindow();
    void settingsLeaveNoHistoryWindowBehind();
    void settingsStayWhileTheProgramBecomesActive();
    void closedSettingsAreMadeAnew();
    void pinButtonFollowsTheSettingsAtOnce();
    void hidingTheProgramHidesAllItsWindows();
    void terminationEndsTheFileLeaseFirst();
    void terminationLeavesNothingUnwritten();
    void terminationLetsGoOfThePastedFile();
    void nothingIsHeardAfterTheEnd();

private:
    /// Whether the delegate acts on what others announce.
    bool isListening();
};

void AppDelegateTest::init()
{
    setUpDelegate();
    m_delegate->applicationDidFinishLaunching();
}

void AppDelegateTest::cleanup()
{
    tearDownDelegate();
}

void AppDelegateTest::launchingPrintsItsStepsInOrder()
{
    QCOMPARE(m_printed->lines(),
             (QStringList{u"Loaded 0 items from disk"_s,
                          u"Tessarine started"_s,
                          u"Setting up menu bar..."_s,
                          u"Status item created successfully"_s,
                          u"Status item button exists"_s,
                          u"Menu bar button set up"_s,
                          u"Button action configured"_s,
                          u"Status bar set up complete"_s,
                          u"No saved settings found, using defaults"_s,
                          u"Event handler installed successfully"_s,
                          u"Hotkey registered successfully: keyCode=49, modifiers=2048"_s,
                          u"Hotkey setup complete: ⌥Space"_s,
                          u"Tessarine fully initialized"_s}));
}

void AppDelegateTest::hotkeyOpensTheWindowAndClosesItAgain()
{
    pressHotkey();
    QVERIFY(m_window.isVisible);
    QVERIFY(m_printed->contains(u"Hotkey triggered"_s));
    QVERIFY(m_printed->contains(u"Total items: 0"_s));
    pressHotkey();
    QVERIFY(m_window.isHiding);
}

void AppDelegateTest::hotkeyBringsAWindowBackThatIsNotOnTheScreen()
{
    pressHotkey();
    m_window.isTakenOff = true;
    pressHotkey();
    QCOMPARE(m_window.showCount, 2);
    QCOMPARE(m_window.hideCount, 0);
    QCOMPARE(m_window.windowCount, 1);
}

void AppDelegateTest::hotkeyDuringTheHideTurnsTheWindowRound()
{
    pressHotkey();
    pressHotkey();
    pressHotkey();
    QVERIFY(m_window.isVisible);
    QVERIFY(!m_window.isHiding);
    QCOMPARE(m_window.showCount, 2);
    QCOMPARE(m_window.windowCount, 1);
}

void AppDelegateTest::hiddenWindowIsDroppedAndTheNextOpeningBuildsANewOne()
{
    pressHotkey();
    pressHotkey();
    m_latestWindow->finishHiding();
    QVERIFY(!m_delegate->hasHistoryWindow());
    pressHotkey();
    QCOMPARE(m_window.windowCount, 2);
}

void AppDelegateTest::openingRecordsTheEarlierProgramButNeverThisOne()
{
    m_workspace->setFrontmost(u"org.example.editor"_s, u"Editor"_s);
    pressHotkey();
    QVERIFY(m_printed->contains(u"Recorded previous app: Editor"_s));

    m_workspace->setFrontmost(u"tessarine"_s, u"Tessarine"_s);
    m_delegate->showHistoryWindow();
    QVERIFY(!m_printed->contains(u"Recorded previous app: Tessarine"_s));

    m_pipeline->pasteItem(makeItem(ClipboardContentType::Mixed, m_clock->now()));
    m_scheduler->advance(1s);
    QCOMPARE(m_workspace->activated.size(), 1);
    QCOMPARE(m_workspace->activated.first().localizedName, u"Editor"_s);
}

void AppDelegateTest::programWithoutNameIsRecordedAsUnknown()
{
    m_workspace->frontmost = RunningApplication{u"org.example.nameless"_s, {}, 1, 1};
    pressHotkey();
    QVERIFY(m_printed->contains(u"Recorded previous app: Unknown"_s));
}

void AppDelegateTest::newItemReachesTheOpenWindow()
{
    pressHotkey();
    m_pasteboard->copyText(u"fresh"_s);
    m_scheduler->advance(500ms);
    QCOMPARE(m_window.items.size(), 1);
    QCOMPARE(m_window.items.first()->stringValue->toString(), u"fresh"_s);
    QVERIFY(m_printed->contains(u"New clipboard item: text"_s));
}

void AppDelegateTest::storedPictureReachesTheOpenWindow()
{
    pressHotkey();
    PasteboardSnapshot snapshot;
    snapshot.types = {PasteboardType::kPng.toString()};
    snapshot.image = PasteboardImage{"pixels", QSize(2, 1)};
    m_pasteboard->copy(snapshot);
    m_scheduler->advance(500ms);
    QCOMPARE(m_window.items.size(), 1);
    QTRY_VERIFY(m_window.items.first()->imageThumbnailFileName);
    QVERIFY(!m_window.items.first()->imageRepresentation);
}

void AppDelegateTest::unmarkingTheOldestOfAFullHistoryTakesItFromTheOpenWindow()
{
    tearDownDelegate();
    setUpDelegate();
    const auto add = [this](bool isFavorite) {
        ClipboardItem item = makeItem(ClipboardContentType::Text, m_clock->now());
        item.stringValue = Utf8Text(QString::number(m_manager->items().size()));
        item.isFavorite = isFavorite;
        m_clock->advance(1ms);
        m_manager->addItem(item);
        return item.id;
    };
    const QUuid oldest = add(true);
    for (qsizetype i = 0; i < currentCapacity(*m_defaults); ++i)
        add(false);
    m_delegate->applicationDidFinishLaunching();
    pressHotkey();
    QCOMPARE(m_window.items.last()->id, oldest);

    m_latestWindow->onFavoriteToggled(oldest);
    QCOMPARE(m_window.items, m_manager->items());
    QVERIFY(m_window.items.last()->id != oldest);
}

void AppDelegateTest::itemDuringAPasteIsIgnored()
{
    pressHotkey();
    m_pipeline->pasteItem(makeItem(ClipboardContentType::Mixed, m_clock->now()));
    m_monitor->onNewClipboardItem(makeItem(ClipboardContentType::Text, m_clock->now()));
    QVERIFY(m_printed->contains(u"Ignoring clipboard change during paste operation"_s));
    QVERIFY(!m_printed->contains(u"New clipboard item: text"_s));
}

void AppDelegateTest::chosenItemIsPastedIntoTheRecordedProgram()
{
    m_workspace->setFrontmost(u"org.example.editor"_s, u"Editor"_s);
    pressHotkey();
    ClipboardItem item = makeItem(ClipboardContentType::Text, m_clock->now());
    item.stringValue = Utf8Text(u"chosen"_s);
    m_latestWindow->onPasteSelected(std::make_shared<const ClipboardItem>(item));
    QVERIFY(m_window.isHiding);
    m_scheduler->advance(400ms);
    QCOMPARE(m_workspace->activated, QList{*m_workspace->frontmost});
    QCOMPARE(m_keystroke->prepared, QList{*m_workspace->frontmost});
    QCOMPARE(m_keystroke->keyDownCount, 1);
    QCOMPARE(m_pasteboard->written.entries.size(), 1);
    QCOMPARE(m_pasteboard->written.entries.first().data, QByteArray("chosen"));
}

void AppDelegateTest::onlyAHotkeyOfAnotherProgramIsToldAtTheStart_data()
{
    QTest::addColumn<int>("refusal");
    QTest::addColumn<int>("noticeCount");
    QTest::newRow("not refused") << 0 << 0;
    QTest::newRow("another program has it") << HotkeyError::kHeldByAnother << 1;
    QTest::newRow("no key of that meaning") << HotkeyError::kNoSuchKey << 0;
    QTest::newRow("no global keys") << HotkeyError::kNotSupported << 0;
    QTest::newRow("refused for another reason") << 2 << 0;
}

void AppDelegateTest::onlyAHotkeyOfAnotherProgramIsToldAtTheStart()
{
    QFETCH(int, refusal);
    QFETCH(int, noticeCount);
    tearDownDelegate();
    setUpDelegate();
    m_hotkey->refusal = refusal;
    m_delegate->applicationDidFinishLaunching();
    QCOMPARE(m_notifications.shown.size(), noticeCount);
}

void AppDelegateTest::refusedHotkeyIsPrintedAndTheProgramGoesOn()
{
    m_hotkey->refusal = 10;
    m_hotkeySettings->announce({12, HotkeySettings::kControl});
    QVERIFY(m_printed->contains(u"Failed to register hotkey: 10"_s));
    m_delegate->showHistoryWindow();
    QVERIFY(m_window.isVisible);
}

void AppDelegateTest::changedHotkeyIsRegisteredAtOnce()
{
    m_hotkeySettings->announce({9, HotkeySettings::kControl | HotkeySettings::kCommand});
    QCOMPARE(m_hotkey->assigned->first, 9u);
    QVERIFY(m_printed->contains(u"Updating hotkey settings..."_s));
    QVERIFY(m_printed->contains(u"Hotkey updated: ⌘⌃V"_s));
}

void AppDelegateTest::changedLanguageReachesTheWindows()
{
    m_languages->setLanguage(AppLanguage::Chinese);
    QCOMPARE(m_window.languageCount, 0);
    pressHotkey();
    m_languages->setLanguage(AppLanguage::English);
    QCOMPARE(m_window.languageCount, 1);
    m_delegate->showSettings();
    m_languages->setLanguage(AppLanguage::Chinese);
    QCOMPARE(m_settingsWindow.languageCount, 1);
}

void AppDelegateTest::internalCopyPausesCaptureForAWhile()
{
    emit m_internalCopies->tessarineInternalCopyWillWrite();
    QVERIFY(m_monitor->isPaused());
    m_scheduler->advance(599ms);
    QVERIFY(m_monitor->isPaused());
    m_scheduler->advance(1ms);
    QVERIFY(!m_monitor->isPaused());
}

void AppDelegateTest::secondStartShowsTheWindow()
{
    m_delegate->applicationDidBecomeActive();
    m_delegate->applicationDidBecomeActive();
    QCOMPARE(m_window.windowCount, 1);
    QVERIFY(m_window.isVisible);
}

void AppDelegateTest::settingsLeaveNoHistoryWindowBehind()
{
    clickStatusItem();
    QVERIFY(chooseInPanel(u"Settings..."_s));
    QVERIFY(m_window.isHiding);
    QVERIFY(m_settingsWindow.isVisible);
    m_latestWindow->finishHiding();
    QVERIFY(!m_delegate->hasHistoryWindow());
}

void AppDelegateTest::settingsStayWhileTheProgramBecomesActive()
{
    m_delegate->showSettings();
    m_delegate->applicationDidBecomeActive();
    QCOMPARE(m_window.windowCount, 0);
    QCOMPARE(m_settingsWindow.showCount, 2);
}

void AppDelegateTest::closedSettingsAreMadeAnew()
{
    m_delegate->showSettings();
    m_latestSettingsWindow->close();
    QVERIFY(!m_delegate->hasSettingsWindow());
    QTRY_COMPARE(m_settingsWindow.windowCount, 0);
    m_delegate->applicationDidBecomeActive();
    QVERIFY(m_window.isVisible);
    m_delegate->showSettings();
    QVERIFY(m_settingsWindow.isVisible);
}

void AppDelegateTest::pinButtonFollowsTheSettingsAtOnce()
{
    m_delegate->showSettings();
    m_latestSettingsWindow->onPinButtonVisibilityChanged(); // Nobody is there to follow.
    pressHotkey();
    m_latestSettingsWindow->onPinButtonVisibilityChanged();
    QCOMPARE(m_window.pinButtonRefreshCount, 1);
}

void AppDelegateTest::hidingTheProgramHidesAllItsWindows()
{
    pressHotkey();
    QWidget widget;
    widget.setFocusPolicy(Qt::StrongFocus);
    widget.show();
    QVERIFY(QTest::qWaitForWindowActive(&widget));
    widget.setFocus();
    m_delegate->showSettings();
    pressHotkey();
    QTest::keyClick(&widget, Qt::Key_H, Qt::ControlModifier);
    QVERIFY(m_window.isHiding);
    QVERIFY(!m_settingsWindow.isVisible);
}

void AppDelegateTest::terminationEndsTheFileLeaseFirst()
{
    m_defaults->set(u"debug.drag_paste_logging"_s, true);
    QFile file(m_directory->filePath(u"report.txt"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    m_fileLease->beginScopedFileURLAccess(QUrl::fromLocalFile(file.fileName()));

    // A poll is still to come when the lease ends, and not when the monitor lets go of the
    // pasteboard; the delegate listens to the last.
    struct State
    {
        int pendingPolls;
        bool isListening;
        bool operator==(const State &) const = default;
    };
    std::optional<State> atRelease;
    std::optional<State> atStop;
    const auto state = [this] { return State{m_scheduler->pendingCount(), isListening()}; };
    m_files->access.onEnded = [&] { atRelease = state(); };
    m_pasteboard->onChanged =
        [stop = std::shared_ptr<void>(nullptr, [&](void *) { atStop = state(); })] {};

    m_delegate->applicationWillTerminate();
    QVERIFY(m_printed->lines().contains(QRegularExpression(u".*reason=app terminate.*"_s)));
    QCOMPARE(atRelease, (State{1, true}));
    QCOMPARE(atStop, (State{0, true}));
    QVERIFY(!isListening());
}

void AppDelegateTest::terminationLeavesNothingUnwritten()
{
    m_pasteboard->copyText(u"last words"_s);
    m_scheduler->advance(500ms);
    m_delegate->applicationWillTerminate();
    QCOMPARE(m_history->live().size(), 1);

    m_pasteboard->copyText(u"too late"_s);
    m_scheduler->advance(5s);
    m_manager->drain();
    QCOMPARE(m_history->live().size(), 1);
}

void AppDelegateTest::terminationLetsGoOfThePastedFile()
{
    m_fileLease->beginScopedFileURLAccess(QUrl(u"file:///home/a"_s));
    m_delegate->applicationWillTerminate();
    QCOMPARE(m_files->access.openCount, 0);
}

void AppDelegateTest::nothingIsHeardAfterTheEnd()
{
    pressHotkey();
    m_delegate->applicationWillTerminate();
    m_languages->setLanguage(AppLanguage::Chinese);
    emit m_internalCopies->tessarineInternalCopyWillWrite();
    m_hotkeySettings->announce({9, HotkeySettings::kControl});
    QCOMPARE(m_window.languageCount, 0);
    QVERIFY(!m_monitor->isPaused());
    QVERIFY(!m_hotkey->onPressed);
    QVERIFY(!m_statusItem->onClicked);
    QVERIFY(!m_statusItem->onMenuEntryChosen);
}

bool AppDelegateTest::isListening()
{
    const int before = m_statusItem->iconCount;
    emit m_monitor->clipboardMonitorPauseStateChanged();
    return m_statusItem->iconCount > before;
}

QTEST_MAIN(AppDelegateTest)
#include "AppDelegateTest.moc"
