#pragma once

#include "platform/StatusItem.h"

#include <QObject>

#include <memory>

class ClipboardMonitor;
class QAction;
class QMenu;

/// The menu of the status item, in which everything can be reached that a click on the icon does,
/// and recording can be paused. Main thread only.
///
/// It is one menu for desktops that let the program show it and for those that draw it themselves.
class StatusMenu : public QObject
{
    Q_OBJECT

public:
    /// \a monitor, which is paused and resumed from here, must outlive the menu.
    explicit StatusMenu(ClipboardMonitor &monitor);
    ~StatusMenu() override;

    /// To be popped up by hand.
    QMenu &contextMenu() { return *m_contextMenu; }

    /// The same menu as it is at this moment, for who draws it.
    QList<StatusMenuEntry> entries();

    /// Does what the entry is for; nothing if there is no such entry any more.
    void chooseEntry(int id);

    void refreshMenuTitles();

    /// Takes over whether recording is paused. Both forms of the menu do it before they are shown;
    /// a menu that is open stays as it is.
    void menuNeedsUpdate();

signals:
    void showRequested();
    void settingsRequested();
    void quitRequested();

private:
    void buildMenu();
    void buildPauseMenu();
    QAction *addEntry(QMenu &menu, void (StatusMenu::*action)());
    QAction *addPause(double seconds);
    void putFirstInPauseMenu(QAction *entry);
    QList<StatusMenuEntry> entriesOf(const QMenu &menu) const;
    void numberActionsOf(const QMenu &menu);

    void toggleUserPause(const QAction &entry);
    void resumeUserPause();

    ClipboardMonitor &m_monitor;
    std::unique_ptr<QMenu> m_contextMenu;
    QMenu *m_pauseMenu = nullptr; ///< The entries below belong to the menus.
    QAction *m_showMenuItem = nullptr;
    QAction *m_pauseMenuItem = nullptr;
    QAction *m_resumeMenuItem = nullptr;       ///< First in the pause menu while paused,
    QAction *m_endlessPauseMenuItem = nullptr; ///< and this one while not.
    QAction *m_settingsMenuItem = nullptr;
    QAction *m_quitMenuItem = nullptr;
    QList<QAction *> m_numbered; ///< Every entry; its number is one more than its place here.
};
