#pragma once

#include "app/DismissingPress.h"
#include "app/StatusMenu.h"
#include "foundation/CallbackHook.h"

#include <QObject>

class DesktopAppearance;
class StatusItem;
class Workspace;

/// What the status item shows, and what the person asks for there. Main thread only.
class StatusItemController : public QObject
{
    Q_OBJECT

public:
    /// All of it must outlive the controller, which takes the callbacks of \a statusItem.
    StatusItemController(StatusItem &statusItem, ClipboardMonitor &monitor, Workspace &workspace,
                         DesktopAppearance &appearance, Scheduler &scheduler);
    ~StatusItemController() override;

    /// Puts the item into the tray, and prints each step. Without a tray there is one line, and
    /// the item appears complete should a tray come later.
    void setupStatusItem();

    /// Takes over whether recording is paused.
    void refresh();
    void refreshTexts();

    /// The history window is about to hide because the person turned to something else.
    void noteTurningAway() { m_dismissingPress.note(); }

signals:
    void toggleRequested(); ///< By a click on the icon.
    void showRequested();   ///< This one and the others in the menu.
    void settingsRequested();
    void quitRequested();

private:
    void takeClicks();
    void setupMenu();
    void popUpMenu(const QPoint &position);
    void updateStatusItemIcon();
    void statusItemClicked(const QString &activationToken);

    StatusItem &m_statusItem;
    ClipboardMonitor &m_monitor;
    Workspace &m_workspace;
    DesktopAppearance &m_appearance;
    StatusMenu m_menu;
    CallbackHook<> m_appearanceHook;
    DismissingPress m_dismissingPress;
};
