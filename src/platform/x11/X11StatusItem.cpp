#include "platform/x11/X11StatusItem.h"

#include "platform/DesktopAppearance.h"
#include "platform/linux/StatusIconDrawing.h"

#include <xcb/xcb.h>

using namespace std::chrono_literals;

namespace {

/// A panel that is slow to say whether it takes items over D-Bus gets the window meanwhile.
constexpr auto kAnswerPatience = 1s;

constexpr auto kSettlingTime = 300ms;

} // namespace

X11StatusItem::X11StatusItem(X11Connection &connection, const DesktopAppearance &appearance,
                             Scheduler &scheduler)
    : m_connection(connection)
    , m_appearance(appearance)
    , m_scheduler(scheduler)
    , m_panelGround(connection)
    , m_trayIcon(connection, scheduler)
{
    m_connection.addListener(this);
    // The window manager tells there of windows that come, go and get the focus, and the desktop of
    // another background: what a panel looks like may follow from any of them.
    m_connection.selectRootEvents(XCB_EVENT_MASK_PROPERTY_CHANGE);
    forwardCalls();
}

X11StatusItem::~X11StatusItem()
{
    m_connection.removeListener(this);
}

void X11StatusItem::forwardCalls()
{
    m_notifierItem.onClicked = [this](const QString &activationToken) {
        if (onClicked)
            onClicked(activationToken);
    };
    m_trayIcon.onClicked = [this] {
        if (onClicked)
            onClicked({});
    };
    const auto requestMenu = [this](const QPoint &position) {
        if (onMenuRequested)
            onMenuRequested(position);
    };
    m_notifierItem.onMenuRequested = requestMenu;
    m_trayIcon.onMenuRequested = requestMenu;
    m_notifierItem.onMenuWillOpen = [this] {
        if (onMenuWillOpen)
            onMenuWillOpen();
    };
    m_notifierItem.onMenuEntryChosen = [this](int id) {
        if (onMenuEntryChosen)
            onMenuEntryChosen(id);
    };
    m_notifierItem.onHostsChanged = [this] {
        if (m_isCreated)
            chooseTray();
    };
    m_trayIcon.onGroundMayHaveChanged = [this] { refreshColorSoon(); };
}

bool X11StatusItem::create()
{
    m_isCreated = true;
    const bool isTaken = m_notifierItem.create();
    chooseTray();
    return isTaken || m_trayIcon.hasTray();
}

void X11StatusItem::setIcon(IconPainter painter, const QString &description)
{
    m_notifierItem.setIcon(painter, description);
    m_trayIcon.setIcon(std::move(painter), description);
}

void X11StatusItem::setMenu(const QList<StatusMenuEntry> &entries)
{
    m_notifierItem.setMenu(entries);
}

void X11StatusItem::chooseTray()
{
    switch (m_notifierItem.hosts()) {
    case StatusNotifierHosts::Presence::Present:
        m_patience.reset();
        m_trayIcon.hide();
        refreshColorSoon();
        break;
    case StatusNotifierHosts::Presence::Absent:
        m_patience.reset();
        m_trayIcon.show();
        break;
    case StatusNotifierHosts::Presence::Pending:
        m_patience = m_scheduler.after(kAnswerPatience, [this] { m_trayIcon.show(); });
        break;
    }
}

void X11StatusItem::handleX11Event(int type, const void *event)
{
    if (type == XCB_PROPERTY_NOTIFY &&
        static_cast<const xcb_property_notify_event_t *>(event)->window ==
            m_connection.rootWindow())
        refreshColorSoon();
}

void X11StatusItem::refreshColorSoon()
{
    if (!m_isCreated || m_isSettling)
        return;
    m_isSettling = true;
    m_settling = m_scheduler.after(kSettlingTime, [this] {
        m_isSettling = false;
        refreshColor();
    });
}

void X11StatusItem::refreshColor()
{
    if (m_notifierItem.hosts() != StatusNotifierHosts::Presence::Present)
        m_trayIcon.refreshColor();
    else if (const std::optional<QColor> color = colorForPanels())
        m_notifierItem.setColor(*color);
}

std::optional<QColor> X11StatusItem::colorForPanels()
{
    if (const auto ground = m_panelGround.ofPanels(m_notifierItem.hostProcessId())) {
        m_hasSeenPanel = true;
        return iconColorOn(*ground);
    }
    // It is covered, and has the colour still that it had.
    if (m_hasSeenPanel)
        return std::nullopt;
    const std::optional<bool> prefersDark = m_appearance.prefersDark();
    return prefersDark ? iconColorOn(*prefersDark ? Qt::black : Qt::white)
                       : iconColorOnUnknownGround();
}
