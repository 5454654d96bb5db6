#include "app/StatusItemController.h"

#include "app/StatusItemIcon.h"
#include "tests/fakes/AppDelegateFixture.h"

#include <QApplication>
#include <QMenu>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The controller as part of the program, since half of what a click does depends on the windows.
class StatusItemControllerTest : public QObject, protected AppDelegateFixture
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void clickOpensTheWindowAndClosesItAgain();
    void clickTellsTheDesktopThatThePersonAsked();
    void clickWhosePressHidTheWindowLeavesItHidden();
    void clickOnAWindowThatIsGoneByThenLeavesItHidden();
    void secondClickShowsTheWindowAgain();
    void clickLongAfterAPressElsewhereShowsTheWindow();
    void hotkeyAfterAPressElsewhereTurnsTheWindowRound();
    void clickHidesAPinnedWindow();
    void withoutATrayTheErrorIsPrintedAndTheProgramWorks();
    void trayThatComesLaterFindsIconAndMenu();
    void panelMenuHasEveryFunction();
    void panelMenuShowsTheHistory();
    void panelMenuIsAskedForTheStateOfTheMoment();
    void popupMenuOpensWhereItIsWanted();
    void pauseShowsInTheIconAndEndsByItself();
    void resumeInAPanelThatIsBehindPausesNothing();
    void resumeInThePopupMenuAfterThePausePausesNothing();
    void changedLanguageReachesMenuAndIcon();

private:
    QImage icon(bool isPaused) const { return statusItemImage(22, Qt::black, isPaused); }
    QImage shownIcon() const { return m_statusItem->iconPainter(22, Qt::black); }
};

void StatusItemControllerTest::init()
{
    setUpDelegate();
    m_delegate->applicationDidFinishLaunching();
}

void StatusItemControllerTest::cleanup()
{
    tearDownDelegate();
}

void StatusItemControllerTest::clickOpensTheWindowAndClosesItAgain()
{
    clickStatusItem();
    QVERIFY(m_window.isVisible);
    clickStatusItem();
    QVERIFY(m_window.isHiding);
}

void StatusItemControllerTest::clickTellsTheDesktopThatThePersonAsked()
{
    clickStatusItem(u"panel-1_TIME4711"_s);
    QCOMPARE(m_workspace->activationTokens, QStringList{u"panel-1_TIME4711"_s});
}

void StatusItemControllerTest::clickWhosePressHidTheWindowLeavesItHidden()
{
    clickStatusItem();
    m_latestWindow->pressOutside();
    m_scheduler->advance(120ms);
    clickStatusItem();
    QVERIFY(m_window.isHiding);
    QCOMPARE(m_window.showCount, 1);
}

void StatusItemControllerTest::clickOnAWindowThatIsGoneByThenLeavesItHidden()
{
    clickStatusItem();
    m_latestWindow->pressOutside();
    m_scheduler->advance(160ms);
    m_latestWindow->finishHiding();
    m_scheduler->advance(100ms);
    clickStatusItem();
    QVERIFY(!m_window.isVisible);
}

void StatusItemControllerTest::secondClickShowsTheWindowAgain()
{
    clickStatusItem();
    m_latestWindow->pressOutside();
    clickStatusItem();
    clickStatusItem();
    QVERIFY(!m_window.isHiding);
    QCOMPARE(m_window.showCount, 2);
}

void StatusItemControllerTest::clickLongAfterAPressElsewhereShowsTheWindow()
{
    clickStatusItem();
    m_latestWindow->pressOutside();
    m_latestWindow->finishHiding();
    m_scheduler->advance(500ms);
    clickStatusItem();
    QVERIFY(m_window.isVisible);
}

void StatusItemControllerTest::hotkeyAfterAPressElsewhereTurnsTheWindowRound()
{
    pressHotkey();
    m_latestWindow->pressOutside();
    m_scheduler->advance(50ms);
    pressHotkey();
    QVERIFY(!m_window.isHiding);
    QCOMPARE(m_window.windowCount, 1);
}

void StatusItemControllerTest::clickHidesAPinnedWindow()
{
    m_window.isPinned = true;
    clickStatusItem();
    m_latestWindow->pressOutside();
    QVERIFY(!m_window.isHiding);
    clickStatusItem();
    QVERIFY(m_window.isHiding);
}

void StatusItemControllerTest::withoutATrayTheErrorIsPrintedAndTheProgramWorks()
{
    tearDownDelegate();
    setUpDelegate();
    m_statusItem->hasTray = false;
    m_delegate->applicationDidFinishLaunching();
    QCOMPARE(m_printed->lines().sliced(1, 4),
             (QStringList{u"Tessarine started"_s, u"Setting up menu bar..."_s,
                          u"ERROR: Failed to create status item!"_s,
                          u"No saved settings found, using defaults"_s}));
    QCOMPARE(m_printed->lines().constLast(), u"Tessarine fully initialized"_s);
    pressHotkey();
    QVERIFY(m_window.isVisible);
}

void StatusItemControllerTest::trayThatComesLaterFindsIconAndMenu()
{
    tearDownDelegate();
    setUpDelegate();
    m_statusItem->hasTray = false;
    m_delegate->applicationDidFinishLaunching();
    QCOMPARE(shownIcon(), icon(false));
    QVERIFY(chooseInPanel(u"Show Clipboard History"_s));
    QVERIFY(m_window.isVisible);
    clickStatusItem();
    QVERIFY(m_window.isHiding);
}

void StatusItemControllerTest::panelMenuHasEveryFunction()
{
    QCOMPARE(
        titlesOf(m_statusItem->menu),
        (QStringList{u"Show Clipboard History"_s, u"-"_s, u"Pause Recording"_s, u"Pause"_s,
                     u"Pause for 15 Minutes"_s, u"Pause for 30 Minutes"_s, u"Pause for 1 Hour"_s,
                     u"-"_s, u"Settings..."_s, u"-"_s, u"Quit Tessarine"_s}));
}

void StatusItemControllerTest::panelMenuShowsTheHistory()
{
    QVERIFY(chooseInPanel(u"Show Clipboard History"_s));
    QVERIFY(m_window.isVisible);
    QCOMPARE(m_workspace->activationTokens, QStringList{QString()});
}

void StatusItemControllerTest::panelMenuIsAskedForTheStateOfTheMoment()
{
    m_statusItem->menu.clear();
    m_statusItem->onMenuWillOpen();
    QCOMPARE(m_statusItem->menu.constFirst().title, u"Show Clipboard History"_s);
}

void StatusItemControllerTest::popupMenuOpensWhereItIsWanted()
{
    m_appearance.composited = false; // A shadow would lie around the menu.
    m_statusItem->onMenuRequested({40, 30});
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    QVERIFY(menu != nullptr);
    QCOMPARE(menu->geometry().topLeft(), QPoint(40, 30));
    menu->close();
}

void StatusItemControllerTest::pauseShowsInTheIconAndEndsByItself()
{
    QCOMPARE(shownIcon(), icon(false));
    QVERIFY(chooseInPanel(u"Pause for 15 Minutes"_s));
    QVERIFY(m_monitor->isUserPaused());
    QCOMPARE(shownIcon(), icon(true));
    QCOMPARE(m_statusItem->iconDescription, u"Tessarine: Paused"_s);
    QVERIFY(titlesOf(m_statusItem->menu).contains(u"Resume"_s));

    m_scheduler->advance(15min);
    QVERIFY(!m_monitor->isUserPaused());
    QCOMPARE(shownIcon(), icon(false));
    QCOMPARE(m_statusItem->iconDescription, u"Tessarine"_s);
    QVERIFY(!titlesOf(m_statusItem->menu).contains(u"Resume"_s));
}

void StatusItemControllerTest::resumeInAPanelThatIsBehindPausesNothing()
{
    m_monitor->setUserPaused(true, 15min);
    const StatusMenuEntry resume = m_statusItem->menu.at(2).children.constFirst();
    QCOMPARE(resume.title, u"Resume"_s);
    m_scheduler->advance(15min);
    m_statusItem->onMenuEntryChosen(resume.id);
    QVERIFY(!m_monitor->isUserPaused());
    QVERIFY(chooseInPanel(u"Pause"_s));
    QVERIFY(m_monitor->isUserPaused());
}

void StatusItemControllerTest::resumeInThePopupMenuAfterThePausePausesNothing()
{
    m_monitor->setUserPaused(true, 15min);
    m_statusItem->onMenuRequested({40, 30});
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    QVERIFY(menu != nullptr);
    m_scheduler->advance(15min);
    QVERIFY(!m_monitor->isUserPaused());
    // Down to the pause, into its menu, and onto the first entry there.
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Right})
        QTest::keyClick(QApplication::activePopupWidget(), key);
    auto *pauses = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    QVERIFY(pauses != nullptr);
    QCOMPARE(pauses->activeAction()->text(), u"Resume"_s);
    QTest::keyClick(pauses, Qt::Key_Return);
    QVERIFY(!m_monitor->isUserPaused());
    QVERIFY(!menu->isVisible());
}

void StatusItemControllerTest::changedLanguageReachesMenuAndIcon()
{
    m_monitor->setUserPaused(true);
    m_languages->setLanguage(AppLanguage::Chinese);
    QCOMPARE(titlesOf(m_statusItem->menu),
             (QStringList{u"显示剪贴板历史"_s, u"-"_s, u"已暂停"_s, u"恢复"_s, u"暂停 15 分钟"_s,
                          u"暂停 30 分钟"_s, u"暂停 1 小时"_s, u"-"_s, u"设置…"_s, u"-"_s,
                          u"退出 Tessarine"_s}));
    QCOMPARE(m_statusItem->iconDescription, u"Tessarine: 已暂停"_s);
}

QTEST_MAIN(StatusItemControllerTest)
#include "StatusItemControllerTest.moc"
