#include "app/StatusMenu.h"

#include "capture/ClipboardMonitor.h"
#include "language/Localized.h"

#include <QAction>
#include <QMenu>

using namespace Qt::StringLiterals;

StatusMenu::StatusMenu(ClipboardMonitor &monitor)
    : m_monitor(monitor)
    , m_contextMenu(std::make_unique<QMenu>())
{
    m_contextMenu->setObjectName(u"contextMenu"_s);
    buildMenu();
    numberActionsOf(*m_contextMenu);
    m_numbered.append(m_resumeMenuItem);
    refreshMenuTitles();
    menuNeedsUpdate();
    connect(m_contextMenu.get(), &QMenu::aboutToShow, this, &StatusMenu::menuNeedsUpdate);
}

StatusMenu::~StatusMenu() = default;

QList<StatusMenuEntry> StatusMenu::entries()
{
    menuNeedsUpdate();
    return entriesOf(*m_contextMenu);
}

void StatusMenu::chooseEntry(int id)
{
    if (id > 0 && id <= m_numbered.size())
        m_numbered.at(id - 1)->trigger();
}

void StatusMenu::refreshMenuTitles()
{
    m_showMenuItem->setText(localized(u"menu.show_history"_s, u"Show Clipboard History"_s));
    m_settingsMenuItem->setText(localized(u"menu.settings"_s, u"Settings..."_s));
    m_quitMenuItem->setText(localized(u"menu.quit"_s, u"Quit Tessarine"_s));
    // The first entry has its title from menuNeedsUpdate().
    const QList<QAction *> pauses = m_pauseMenu->actions();
    pauses.at(1)->setText(localized(u"menu.pause_15m"_s, u"暂停 15 分钟"_s));
    pauses.at(2)->setText(localized(u"menu.pause_30m"_s, u"暂停 30 分钟"_s));
    pauses.at(3)->setText(localized(u"menu.pause_1h"_s, u"暂停 1 小时"_s));
}

void StatusMenu::menuNeedsUpdate()
{
    // A pause may end by itself just when the person is about to choose its end.
    if (m_contextMenu->isVisible())
        return;
    m_resumeMenuItem->setText(localized(u"menu.resume"_s, u"恢复"_s));
    m_endlessPauseMenuItem->setText(localized(u"menu.pause"_s, u"暂停"_s));
    if (m_monitor.isUserPaused()) {
        m_pauseMenuItem->setText(localized(u"menu.paused"_s, u"已暂停"_s));
        putFirstInPauseMenu(m_resumeMenuItem);
    } else {
        m_pauseMenuItem->setText(localized(u"menu.pause_recording"_s, u"暂停记录"_s));
        putFirstInPauseMenu(m_endlessPauseMenuItem);
    }
}

void StatusMenu::buildMenu()
{
    m_showMenuItem = addEntry(*m_contextMenu, &StatusMenu::showRequested);
    m_contextMenu->addSeparator();
    buildPauseMenu();
    m_contextMenu->addSeparator();
    m_settingsMenuItem = addEntry(*m_contextMenu, &StatusMenu::settingsRequested);
    m_settingsMenuItem->setShortcut(Qt::CTRL | Qt::Key_Comma);
    m_contextMenu->addSeparator();
    m_quitMenuItem = addEntry(*m_contextMenu, &StatusMenu::quitRequested);
    m_quitMenuItem->setShortcut(Qt::CTRL | Qt::Key_Q);
    for (QAction *action : {m_settingsMenuItem, m_quitMenuItem})
        action->setShortcutVisibleInContextMenu(true); // Some desktops hide them otherwise.
}

void StatusMenu::buildPauseMenu()
{
    m_pauseMenu = m_contextMenu->addMenu(QString());
    m_pauseMenuItem = m_pauseMenu->menuAction();
    m_endlessPauseMenuItem = addPause(0.0);
    for (const double seconds : {900.0, 1800.0, 3600.0})
        addPause(seconds);

    // An entry of its own, so that a panel which still shows it cannot start a pause by it.
    m_resumeMenuItem = new QAction(m_pauseMenu);
    connect(m_resumeMenuItem, &QAction::triggered, this, &StatusMenu::resumeUserPause);
}

QAction *StatusMenu::addEntry(QMenu &menu, void (StatusMenu::*action)())
{
    QAction *entry = menu.addAction(QString());
    connect(entry, &QAction::triggered, this, action);
    return entry;
}

QAction *StatusMenu::addPause(double seconds)
{
    QAction *entry = m_pauseMenu->addAction(QString());
    entry->setData(seconds);
    connect(entry, &QAction::triggered, this, [this, entry] { toggleUserPause(*entry); });
    return entry;
}

void StatusMenu::putFirstInPauseMenu(QAction *entry)
{
    QAction *first = m_pauseMenu->actions().constFirst();
    if (first == entry)
        return;
    m_pauseMenu->insertAction(first, entry);
    m_pauseMenu->removeAction(first);
}

QList<StatusMenuEntry> StatusMenu::entriesOf(const QMenu &menu) const
{
    QList<StatusMenuEntry> entries;
    const QList<QAction *> actions = menu.actions();
    for (QAction *action : actions) {
        StatusMenuEntry entry;
        entry.id = int(m_numbered.indexOf(action)) + 1;
        entry.title = action->text();
        entry.shortcut = action->shortcut();
        entry.isSeparator = action->isSeparator();
        if (const auto *submenu = action->menu<QMenu *>())
            entry.children = entriesOf(*submenu);
        entries.append(entry);
    }
    return entries;
}

void StatusMenu::numberActionsOf(const QMenu &menu)
{
    const QList<QAction *> actions = menu.actions();
    for (QAction *action : actions) {
        m_numbered.append(action);
        if (const auto *submenu = action->menu<QMenu *>())
            numberActionsOf(*submenu);
    }
}

void StatusMenu::toggleUserPause(const QAction &entry)
{
    const std::chrono::duration<double> length(entry.data().toDouble());
    m_monitor.setUserPaused(true, std::chrono::duration_cast<std::chrono::milliseconds>(length));
}

void StatusMenu::resumeUserPause()
{
    m_monitor.resumeFromUserPause();
}
