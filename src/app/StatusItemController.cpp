#include "app/StatusItemController.h"

#include "app/StatusItemIcon.h"
#include "capture/ClipboardMonitor.h"
#include "foundation/Log.h"
#include "language/Localized.h"
#include "platform/DesktopAppearance.h"
#include "platform/StatusItem.h"
#include "platform/Workspace.h"
#include "widgets/DesktopLook.h"
#include "widgets/MenuLook.h"

#include <QMenu>

using namespace Qt::StringLiterals;

StatusItemController::StatusItemController(StatusItem &statusItem, ClipboardMonitor &monitor,
                                           Workspace &workspace,
                                           DesktopAppearance &appearance,
                                           Scheduler &scheduler)
    : m_statusItem(statusItem)
    , m_monitor(monitor)
    , m_workspace(workspace)
    , m_appearance(appearance)
    , m_menu(monitor)
    , m_appearanceHook(appearance.onChanged,
                       [this] { recolorMenu(m_menu.contextMenu(), desktopLook(m_appearance)); })
    , m_dismissingPress(scheduler)
{
}

StatusItemController::~StatusItemController()
{
    m_statusItem.onClicked = nullptr;
    m_statusItem.onMenuRequested = nullptr;
    m_statusItem.onMenuWillOpen = nullptr;
    m_statusItem.onMenuEntryChosen = nullptr;
}

void StatusItemController::setupStatusItem()
{
    printLine(u"Setting up menu bar..."_s);
    const bool isInTray = m_statusItem.create();
    const auto printStep = [isInTray](const QString &line) {
        if (isInTray)
            printLine(line);
    };
    if (!isInTray)
        printLine(u"ERROR: Failed to create status item!"_s);
    printStep(u"Status item created successfully"_s);
    printStep(u"Status item button exists"_s);
    updateStatusItemIcon();
    printStep(u"Menu bar button set up"_s);
    takeClicks();
    printStep(u"Button action configured"_s);
    setupMenu();
    printStep(u"Status bar set up complete"_s);
}

void StatusItemController::refresh()
{
    updateStatusItemIcon();
    // Not every panel that draws the menu itself asks before it opens it.
    m_statusItem.setMenu(m_menu.entries());
}

void StatusItemController::refreshTexts()
{
    m_menu.refreshMenuTitles();
    refresh();
}

void StatusItemController::takeClicks()
{
    m_statusItem.onClicked = [this](const QString &token) { statusItemClicked(token); };
    m_statusItem.onMenuRequested = [this](const QPoint &position) { popUpMenu(position); };
    m_statusItem.onMenuWillOpen = [this] { m_statusItem.setMenu(m_menu.entries()); };
    m_statusItem.onMenuEntryChosen = [this](int id) { m_menu.chooseEntry(id); };
}

void StatusItemController::setupMenu()
{
    const auto passOn = [this](auto request, auto signal) {
        connect(&m_menu, request, this, [this, signal] {
            m_workspace.noteUserAction({});
            emit (this->*signal)();
        });
    };
    passOn(&StatusMenu::showRequested, &StatusItemController::showRequested);
    passOn(&StatusMenu::settingsRequested, &StatusItemController::settingsRequested);
    passOn(&StatusMenu::quitRequested, &StatusItemController::quitRequested);
    m_statusItem.setMenu(m_menu.entries());
}

void StatusItemController::popUpMenu(const QPoint &position)
{
    QMenu &menu = m_menu.contextMenu();
    menu.close(); // It gets its look while it is not on the screen.
    applyMenuLook(menu, desktopLook(m_appearance));
    menu.popup(position);
}

void StatusItemController::updateStatusItemIcon()
{
    const bool isPaused = m_monitor.isUserPaused();
    QString description = u"Tessarine"_s;
    if (isPaused)
        description += u": "_s + localized(u"menu.paused"_s, u"已暂停"_s);
    m_statusItem.setIcon(
        [isPaused](int side, const QColor &color) {
            return statusItemImage(side, color, isPaused);
        },
        description);
}

void StatusItemController::statusItemClicked(const QString &activationToken)
{
    m_workspace.noteUserAction(activationToken);
    if (!m_dismissingPress.takeClick())
        emit toggleRequested();
}
