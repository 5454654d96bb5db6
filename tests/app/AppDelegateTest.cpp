#include "app/AppDelegate.h"

#include "app/HotkeyRefusalNotice.h"
#include "app/PastePipeline.h"
#include "app/ScopedFileLease.h"
#include "language/LanguageManager.h"
#include "settings/HotkeySettingsManager.h"
#include "tests/fakes/CaptureFixture.h"
#include "tests/fakes/FakeGlobalHotkey.h"
#include "tests/fakes/FakeNotifications.h"
#include "tests/fakes/FakePasteKeystroke.h"

#include <QApplication>
#include <QMenu>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A history window that only remembers what it was told.
class FakeWindow : public ClipboardSearchWindowProtocol
{
public:
    struct State
    {
        ClipboardItemList items;
        int windowCount = 0;
        int showCount = 0;
        int languageCount = 0;
        bool isVisible = false;
        bool isHiding = false;
    };

    explicit FakeWindow(State &state) : m_state(state) {}

    bool isVisible() const override { return m_state.isVisible; }
    bool isHideAnimationInFlight() const override { return m_state.isHiding; }

    void show() override
    {
        ++m_state.showCount;
        m_state.isVisible = true;
        m_state.isHiding = false;
    }

    void hide() override
    {
        if (!m_state.isHiding)
            m_state.isHiding = true;
    }

    void finishHiding()
    {
        m_state.isHiding = false;
        m_state.isVisible = false;
        onWindowHidden();
    }

    void updateItems(const ClipboardItemList &items) override { m_state.items = items; }
    void refreshLanguage() override { ++m_state.languageCount; }

private:
    State &m_state;
};

QStringList statusMenuTitles()
{
    QStringList titles;
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (const QWidget *widget : widgets) {
        if (qobject_cast<const QMenu *>(widget) == nullptr)
            continue;
        const QList<QAction *> actions = widget->actions();
        for (const QAction *action : actions) {
            if (!action->isSeparator())
                titles.append(action->text());
        }
    }
    return titles;
}

} // namespace

class AppDelegateTest : public QObject, protected CaptureFixture
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void launchingPrintsItsStepsInOrder();
    void hotkeyOpensTheWindowAndClosesItAgain();
    void hotkeyDuringTheHideTurnsTheWindowRound();
    void hiddenWindowIsDroppedAndTheNextOpeningBuildsANewOne();
    void openingRecordsTheEarlierProgramButNeverThisOne();
    void newItemReachesTheOpenWindow();
    void storedPictureReachesTheOpenWindow();
    void itemDuringAPasteIsIgnored();
    void chosenItemIsPastedIntoTheRecordedProgram();
    void refusedHotkeyIsPrintedAndTheProgramGoesOn();
    void changedHotkeyIsRegisteredAtOnce();
    void changedLanguageReachesTheMenuAndTheWindow();
    void secondStartShowsTheWindow();
    void terminationLeavesNothingUnwritten();
    void terminationLetsGoOfThePastedFile();

private:
    void pressHotkey() { m_hotkey->onPressed(); }

    std::unique_ptr<FakePasteKeystroke> m_keystroke;
    std::unique_ptr<FakeGlobalHotkey> m_hotkey;
    FakeNotifications m_notifications;
    std::unique_ptr<HotkeyRefusalNotice> m_hotkeyNotice;
    std::unique_ptr<HotkeySettingsManager> m_hotkeySettings;
    std::unique_ptr<LanguageManager> m_languages;
    std::unique_ptr<ScopedFileLease> m_fileLease;
    std::unique_ptr<PastePipeline> m_pipeline;
    std::unique_ptr<AppDelegate> m_delegate;
    FakeWindow::State m_window;
    FakeWindow *m_latestWindow = nullptr;
};

void AppDelegateTest::init()
{
    m_window = {};
    setUpCapture();
    m_keystroke = std::make_unique<FakePasteKeystroke>();
    m_hotkey = std::make_unique<FakeGlobalHotkey>();
    m_hotkeyNotice = std::make_unique<HotkeyRefusalNotice>(*m_defaults, m_notifications);
    m_hotkeySettings = std::make_unique<HotkeySettingsManager>(*m_defaults);
    m_languages = std::make_unique<LanguageManager>(*m_defaults);
    m_languages->install();
    m_fileLease = std::make_unique<ScopedFileLease>(m_files->references, *m_scheduler, *m_clock,
                                                    *m_defaults);
    m_pipeline = std::make_unique<PastePipeline>(*m_pasteboard, *m_workspace, *m_keystroke,
                                                 *m_scheduler, *m_monitor, *m_manager,
                                                 *m_defaults, *m_codec, *m_fileLease);
    m_delegate = std::make_unique<AppDelegate>(AppDelegate::Collaborators{
        *m_manager, *m_monitor, *m_pipeline, *m_hotkeySettings, *m_languages, *m_hotkey,
        *m_hotkeyNotice, *m_workspace,
        [this](const ClipboardItemList &items) {
            ++m_window.windowCount;
            m_window.items = items;
            auto window = std::make_unique<FakeWindow>(m_window);
            m_latestWindow = window.get();
            return window;
        }});
    m_delegate->applicationDidFinishLaunching();
}

void AppDelegateTest::cleanup()
{
    m_delegate.reset();
    m_pipeline.reset();
    m_fileLease.reset();
    m_languages.reset();
    tearDownCapture();
}

void AppDelegateTest::launchingPrintsItsStepsInOrder()
{
    const QStringList lines = m_printed->lines();
    const QStringList expected{u"Tessarine started"_s,
                               u"Setting up menu bar..."_s,
                               u"No saved settings found, using defaults"_s,
                               u"Event handler installed successfully"_s,
                               u"Hotkey registered successfully: keyCode=49, modifiers=2048"_s,
                               u"Hotkey setup complete: ⌥Space"_s,
                               u"Tessarine fully initialized"_s};
    qsizetype position = -1;
    for (const QString &line : expected) {
        const qsizetype next = lines.indexOf(line);
        QVERIFY2(next > position, qPrintable(line + u" in "_s + lines.join(u'\n')));
        position = next;
    }
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
    QCOMPARE(m_keystroke->keyDownCount, 1);
    QCOMPARE(m_pasteboard->written.entries.size(), 1);
    QCOMPARE(m_pasteboard->written.entries.first().data, QByteArray("chosen"));
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

void AppDelegateTest::changedLanguageReachesTheMenuAndTheWindow()
{
    m_languages->setLanguage(AppLanguage::Chinese);
    QCOMPARE(statusMenuTitles(), (QStringList{u"显示剪贴板历史"_s, u"退出 Tessarine"_s}));
    QCOMPARE(m_window.languageCount, 0);
    pressHotkey();
    m_languages->setLanguage(AppLanguage::English);
    QCOMPARE(statusMenuTitles(),
             (QStringList{u"Show Clipboard History"_s, u"Quit Tessarine"_s}));
    QCOMPARE(m_window.languageCount, 1);
}

void AppDelegateTest::secondStartShowsTheWindow()
{
    m_delegate->applicationDidBecomeActive();
    m_delegate->applicationDidBecomeActive();
    QCOMPARE(m_window.windowCount, 1);
    QVERIFY(m_window.isVisible);
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

QTEST_MAIN(AppDelegateTest)
#include "AppDelegateTest.moc"
