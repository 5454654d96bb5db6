#include "app/StatusMenu.h"

#include "language/LanguageManager.h"
#include "tests/fakes/CaptureFixture.h"

#include <QMenu>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QStringList titlesOf(const QMenu &menu)
{
    QStringList titles;
    const QList<QAction *> actions = menu.actions();
    for (const QAction *action : actions) {
        titles.append(action->isSeparator() ? u"-"_s : action->text());
    }
    return titles;
}

} // namespace

class StatusMenuTest : public QObject, protected CaptureFixture
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void withoutATableTheFallbacksAreShown();
    void titlesFollowTheLanguage();
    void pausedTitlesAreShownOnlyWhilePaused();
    void pausedTitlesFollowTheLanguage();
    void pauseLengthsAreThoseOfTheirTitles_data();
    void pauseLengthsAreThoseOfTheirTitles();
    void firstEntryPausesUntilResumed();
    void firstEntryResumesWhilePaused();
    void timedPauseReplacesTheOneThatRuns();
    void openMenuStaysAsItIsWhenThePauseEnds();
    void shortcutsAreShownForSettingsAndQuit();
    void entriesAreThePopupMenu();
    void entriesAreNumberedApart();
    void chosenEntriesAreTold();
    void unknownEntryDoesNothing();

private:
    QMenu &pauseMenu() const { return *m_menu->contextMenu().actions().at(2)->menu<QMenu *>(); }
    /// As when the menu is about to open, and the person clicks.
    void choose(QMenu &menu, int place)
    {
        m_menu->menuNeedsUpdate();
        menu.actions().at(place)->trigger();
    }

    std::unique_ptr<StatusMenu> m_menu;
};

void StatusMenuTest::init()
{
    setUpCapture();
    m_menu = std::make_unique<StatusMenu>(*m_monitor);
}

void StatusMenuTest::cleanup()
{
    m_menu.reset();
    tearDownCapture();
}

void StatusMenuTest::withoutATableTheFallbacksAreShown()
{
    QCOMPARE(titlesOf(m_menu->contextMenu()),
             (QStringList{u"Show Clipboard History"_s, u"-"_s, u"暂停记录"_s, u"-"_s,
                          u"Settings..."_s, u"-"_s, u"Quit Tessarine"_s}));
    QCOMPARE(titlesOf(pauseMenu()),
             (QStringList{u"暂停"_s, u"暂停 15 分钟"_s, u"暂停 30 分钟"_s, u"暂停 1 小时"_s}));
}

void StatusMenuTest::titlesFollowTheLanguage()
{
    LanguageManager languages(*m_defaults);
    languages.install();
    m_menu->refreshMenuTitles();
    m_menu->menuNeedsUpdate();
    QCOMPARE(titlesOf(m_menu->contextMenu()),
             (QStringList{u"Show Clipboard History"_s, u"-"_s, u"Pause Recording"_s, u"-"_s,
                          u"Settings..."_s, u"-"_s, u"Quit Tessarine"_s}));
    QCOMPARE(titlesOf(pauseMenu()),
             (QStringList{u"Pause"_s, u"Pause for 15 Minutes"_s, u"Pause for 30 Minutes"_s,
                          u"Pause for 1 Hour"_s}));

    languages.setLanguage(AppLanguage::Chinese);
    m_menu->refreshMenuTitles();
    m_menu->menuNeedsUpdate();
    QCOMPARE(titlesOf(m_menu->contextMenu()),
             (QStringList{u"显示剪贴板历史"_s, u"-"_s, u"暂停记录"_s, u"-"_s, u"设置…"_s, u"-"_s,
                          u"退出 Tessarine"_s}));
    QCOMPARE(titlesOf(pauseMenu()),
             (QStringList{u"暂停"_s, u"暂停 15 分钟"_s, u"暂停 30 分钟"_s, u"暂停 1 小时"_s}));
}

void StatusMenuTest::pausedTitlesAreShownOnlyWhilePaused()
{
    m_monitor->setUserPaused(true);
    emit m_menu->contextMenu().aboutToShow();
    QCOMPARE(titlesOf(m_menu->contextMenu()).at(2), u"已暂停"_s);
    QCOMPARE(titlesOf(pauseMenu()).constFirst(), u"恢复"_s);

    m_monitor->resumeFromUserPause();
    emit m_menu->contextMenu().aboutToShow();
    QCOMPARE(titlesOf(m_menu->contextMenu()).at(2), u"暂停记录"_s);
    QCOMPARE(titlesOf(pauseMenu()).constFirst(), u"暂停"_s);
}

void StatusMenuTest::pausedTitlesFollowTheLanguage()
{
    LanguageManager languages(*m_defaults);
    languages.install();
    m_monitor->setUserPaused(true);
    m_menu->menuNeedsUpdate();
    QCOMPARE(titlesOf(m_menu->contextMenu()).at(2), u"Paused"_s);
    QCOMPARE(titlesOf(pauseMenu()).constFirst(), u"Resume"_s);
}

void StatusMenuTest::pauseLengthsAreThoseOfTheirTitles_data()
{
    QTest::addColumn<int>("place");
    QTest::addColumn<int>("minutes");
    QTest::newRow("15 minutes") << 1 << 15;
    QTest::newRow("30 minutes") << 2 << 30;
    QTest::newRow("an hour") << 3 << 60;
}

void StatusMenuTest::pauseLengthsAreThoseOfTheirTitles()
{
    QFETCH(int, place);
    QFETCH(int, minutes);
    choose(pauseMenu(), place);
    QVERIFY(m_monitor->isUserPaused());
    m_scheduler->advance(std::chrono::minutes(minutes) - 1ms);
    QVERIFY(m_monitor->isUserPaused());
    m_scheduler->advance(1ms);
    QVERIFY(!m_monitor->isUserPaused());
}

void StatusMenuTest::firstEntryPausesUntilResumed()
{
    choose(pauseMenu(), 0);
    m_scheduler->advance(24h);
    QVERIFY(m_monitor->isUserPaused());
}

void StatusMenuTest::firstEntryResumesWhilePaused()
{
    m_monitor->setUserPaused(true, 15min);
    QSignalSpy told(m_monitor.get(), &ClipboardMonitor::clipboardMonitorPauseStateChanged);
    choose(pauseMenu(), 0);
    QVERIFY(!m_monitor->isUserPaused());
    QCOMPARE(told.count(), 1);
    m_scheduler->advance(15min); // The timer of the pause is gone with it.
    QCOMPARE(told.count(), 1);
}

void StatusMenuTest::timedPauseReplacesTheOneThatRuns()
{
    m_monitor->setUserPaused(true, 1h);
    choose(pauseMenu(), 1);
    m_scheduler->advance(15min);
    QVERIFY(!m_monitor->isUserPaused());

    m_monitor->setUserPaused(true);
    choose(pauseMenu(), 1);
    m_scheduler->advance(15min);
    QVERIFY(!m_monitor->isUserPaused());
}

void StatusMenuTest::openMenuStaysAsItIsWhenThePauseEnds()
{
    m_monitor->setUserPaused(true, 15min);
    m_menu->contextMenu().popup({});
    m_scheduler->advance(15min);
    m_menu->menuNeedsUpdate();
    QCOMPARE(titlesOf(m_menu->contextMenu()).at(2), u"已暂停"_s);
    QCOMPARE(titlesOf(pauseMenu()).constFirst(), u"恢复"_s);
    pauseMenu().actions().constFirst()->trigger();
    QVERIFY(!m_monitor->isUserPaused());

    m_menu->contextMenu().close();
    m_menu->contextMenu().popup({});
    QCOMPARE(titlesOf(m_menu->contextMenu()).at(2), u"暂停记录"_s);
    QCOMPARE(titlesOf(pauseMenu()).constFirst(), u"暂停"_s);
    m_menu->contextMenu().close();
}

void StatusMenuTest::shortcutsAreShownForSettingsAndQuit()
{
    const QList<QAction *> actions = m_menu->contextMenu().actions();
    QCOMPARE(actions.at(0)->shortcut(), QKeySequence());
    QCOMPARE(actions.at(4)->shortcut(), QKeySequence(u"Ctrl+,"_s));
    QCOMPARE(actions.at(6)->shortcut(), QKeySequence(u"Ctrl+Q"_s));
    QVERIFY(actions.at(4)->isShortcutVisibleInContextMenu());
    QVERIFY(actions.at(6)->isShortcutVisibleInContextMenu());
}

void StatusMenuTest::entriesAreThePopupMenu()
{
    m_monitor->setUserPaused(true);
    const QList<StatusMenuEntry> entries = m_menu->entries();
    const QList<QAction *> actions = m_menu->contextMenu().actions();
    QCOMPARE(entries.size(), actions.size());
    for (qsizetype place = 0; place < entries.size(); ++place) {
        QCOMPARE(entries.at(place).title, actions.at(place)->text());
        QCOMPARE(entries.at(place).shortcut, actions.at(place)->shortcut());
        QCOMPARE(entries.at(place).isSeparator, actions.at(place)->isSeparator());
    }
    QCOMPARE(entries.at(2).title, u"已暂停"_s);
    QCOMPARE(entries.at(2).children.size(), 4);
    QCOMPARE(entries.at(2).children.at(0).title, u"恢复"_s);
}

void StatusMenuTest::entriesAreNumberedApart()
{
    QSet<int> numbers;
    int count = 0;
    const auto collect = [&](const auto &self, const QList<StatusMenuEntry> &entries) -> void {
        for (const StatusMenuEntry &entry : entries) {
            QVERIFY(entry.id > 0);
            numbers.insert(entry.id);
            ++count;
            self(self, entry.children);
        }
    };
    collect(collect, m_menu->entries());
    QCOMPARE(count, 11);
    QCOMPARE(numbers.size(), count);
}

void StatusMenuTest::chosenEntriesAreTold()
{
    QSignalSpy shown(m_menu.get(), &StatusMenu::showRequested);
    QSignalSpy settings(m_menu.get(), &StatusMenu::settingsRequested);
    QSignalSpy quit(m_menu.get(), &StatusMenu::quitRequested);
    const QList<StatusMenuEntry> entries = m_menu->entries();
    m_menu->chooseEntry(entries.at(0).id);
    QCOMPARE(shown.count(), 1);
    m_menu->chooseEntry(entries.at(4).id);
    QCOMPARE(settings.count(), 1);
    m_menu->chooseEntry(entries.at(6).id);
    QCOMPARE(quit.count(), 1);
    m_menu->chooseEntry(entries.at(2).children.at(2).id);
    QVERIFY(m_monitor->isUserPaused());
}

void StatusMenuTest::unknownEntryDoesNothing()
{
    QSignalSpy shown(m_menu.get(), &StatusMenu::showRequested);
    for (const int id : {-1, 0, 13, 1000})
        m_menu->chooseEntry(id);
    QCOMPARE(shown.count(), 0);
    QVERIFY(!m_monitor->isUserPaused());
}

QTEST_MAIN(StatusMenuTest)
#include "StatusMenuTest.moc"
