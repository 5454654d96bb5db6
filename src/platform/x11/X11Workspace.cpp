#include "platform/x11/X11Workspace.h"

#include "platform/x11/QtX11Connection.h"
#include "platform/x11/X11StartupNotification.h"

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#include <QtMath>

#include <algorithm>

#include <unistd.h>

#include <xcb/xcb.h>
#include <xcb/xinput.h>

namespace {

/// Says that the wish is the person's, as a pager's is, and not a program's own.
constexpr quint32 kSourcePerson = 2;

/// Of WM_STATE (ICCCM 4.1.3.1). Until then a window is not to be mapped again (ICCCM 4.1.4).
constexpr quint32 kWithdrawnState = 0;

/// For how long after we have asked for the focus news of another window may be older than that.
constexpr std::chrono::milliseconds kBelatedNewsPeriod(1000);

} // namespace

/// Learns from Qt's events when the person last pressed something in our windows.
class X11Workspace::UserTimeFilter : public QAbstractNativeEventFilter
{
public:
    explicit UserTimeFilter(X11Connection &connection)
        : m_connection(connection)
    {
        QCoreApplication::instance()->installNativeEventFilter(this);
    }

    bool nativeEventFilter(const QByteArray &, void *message, qintptr *) override
    {
        const auto *event = static_cast<const xcb_generic_event_t *>(message);
        switch (event->response_type & ~0x80) {
        case XCB_KEY_PRESS:
        case XCB_BUTTON_PRESS:
            m_connection.noteUserTime(static_cast<const xcb_key_press_event_t *>(message)->time);
            break;
        case XCB_GE_GENERIC: notePointerPress(message); break;
        default: break;
        }
        return false;
    }

private:
    void notePointerPress(const void *message)
    {
        const auto *event = static_cast<const xcb_input_button_press_event_t *>(message);
        if (event->extension == m_connection.xinput().majorOpcode &&
            event->event_type == XCB_INPUT_BUTTON_PRESS)
            m_connection.noteUserTime(event->time);
    }

    X11Connection &m_connection;
};

X11Workspace::X11Workspace(X11Connection &connection, X11KnownWindows &knownWindows,
                           const DesktopEntries &entries, Scheduler &scheduler)
    : m_connection(connection)
    , m_knownWindows(knownWindows)
    , m_entries(entries)
    , m_windows(connection)
    , m_applications(connection, entries)
    , m_panels(connection, scheduler)
{
    m_panels.onChanged = [this] {
        if (onAvailableGeometryChanged)
            onAvailableGeometryChanged();
    };
    m_connection.selectRootEvents(XCB_EVENT_MASK_PROPERTY_CHANGE);
    m_connection.addListener(this);
    if (qtX11Connection())
        m_userTimeFilter = std::make_unique<UserTimeFilter>(m_connection);
}

X11Workspace::~X11Workspace()
{
    m_connection.removeListener(this);
}

void X11Workspace::selectEvents(quint32 window, quint32 eventMask)
{
    xcb_change_window_attributes(m_connection.xcb(), window, XCB_CW_EVENT_MASK, &eventMask);
    m_connection.flush();
}

std::optional<RunningApplication> X11Workspace::frontmostApplication() const
{
    const quint32 window = m_windows.activeWindow();
    const auto known = window != 0 ? m_knownWindows.note(window) : std::nullopt;
    // Who asks and then listens is not to hear of the same window: its notice may be on the way, and
    // some window managers name it once more.
    if (!onApplicationActivated)
        m_announcedWindow = known ? window : 0;
    if (!known)
        return std::nullopt;
    RunningApplication application = m_applications.describe({window, known->identity});
    application.windowSerial = known->serial;
    return application;
}

bool X11Workspace::isOwnApplication(const RunningApplication &application) const
{
    // By its name too, because a window need not tell its process.
    return application.processId == getpid()
        || application.bundleIdentifier == QGuiApplication::desktopFileName();
}

std::optional<QString> X11Workspace::applicationName(const QString &bundleIdentifier) const
{
    const auto entry = m_entries.findById(bundleIdentifier);
    return entry ? std::optional(entry->name) : std::nullopt;
}

QRect X11Workspace::claimedGeometry(const QScreen &screen) const
{
    const QRect whole = screen.geometry();
    const qreal ratio = screen.devicePixelRatio();
    // Qt scales each screen about its own corner, which stays where it is.
    const QRect monitor(whole.topLeft(), whole.size() * ratio);
    const QRect rest = m_panels.available(monitor);
    const auto scaled = [ratio](int length) { return qCeil(length / ratio); };
    const QMargins panels(scaled(rest.left() - monitor.left()), scaled(rest.top() - monitor.top()),
                          scaled(monitor.right() - rest.right()),
                          scaled(monitor.bottom() - rest.bottom()));
    // With one monitor Qt knows more: what the window manager leaves free for reasons of its own.
    return whole.marginsRemoved(panels) & screen.availableGeometry();
}

void X11Workspace::activate(const RunningApplication &application)
{
    const quint32 window = m_knownWindows.find(application);
    if (window == 0)
        return;
    m_windowToFocus = 0;
    if (m_windows.hasWindowManager()) {
        // There are window managers that activate no window of a desktop that is not shown.
        if (const auto desktop = m_windows.otherDesktopOf(window))
            askWindowManager(m_connection.xcb(), m_connection.rootWindow(),
                             X11AtomName::NetCurrentDesktop, {*desktop, m_connection.userTime()});
        askWindowManagerToActivate(m_connection.xcb(), window);
    } else {
        focus(window);
    }
    m_connection.flush();
}

void X11Workspace::prepareOwnWindow(QWindow *window)
{
    xcb_connection_t *xcb = qtX11Connection();
    if (!xcb)
        return;
    // On Qt's connection, because there the window is created before and mapped after this.
    const auto id = quint32(window->winId());
    writeUserTime(xcb, id);
    // Of a window that is there the state belongs to the window manager.
    if (window->type() != Qt::Tool || window->isVisible())
        return;
    keepOutOfLists(xcb, id);
    // Of a window that was open before, which is to come where the person is.
    xcb_delete_property(xcb, id, m_connection.atom(X11AtomName::NetWmDesktop));
}

bool X11Workspace::isWithdrawn(QWindow *window)
{
    const quint32 state = m_connection.requestProperty(quint32(window->winId()),
                                                       m_connection.atom(X11AtomName::WmState));
    const std::optional<QByteArray> answer = m_connection.takeProperty(state);
    if (!answer)
        return false; // Somebody has destroyed it.
    const QList<quint32> words = propertyWords(answer);
    return words.isEmpty() || words.first() == kWithdrawnState;
}

void X11Workspace::writeUserTime(xcb_connection_t *xcb, quint32 window)
{
    const quint32 time = m_connection.userTime();
    if (time == 0)
        return;
    xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window,
                        m_connection.atom(X11AtomName::NetWmUserTime), XCB_ATOM_CARDINAL, 32, 1,
                        &time);
}

void X11Workspace::keepOutOfLists(xcb_connection_t *xcb, quint32 window)
{
    const std::array states{m_connection.atom(X11AtomName::NetWmStateSkipTaskbar),
                            m_connection.atom(X11AtomName::NetWmStateSkipPager)};
    xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window,
                        m_connection.atom(X11AtomName::NetWmState), XCB_ATOM_ATOM, 32,
                        states.size(), states.data());
}

void X11Workspace::noteUserAction(const QString &activationToken)
{
    const quint32 now = m_connection.serverTime();
    const quint32 actedAt = startupTimeOf(activationToken);
    // A time that lies ahead would be the latest for days, and win over every real one.
    const bool isUsable = actedAt != 0 && (now == 0 || qint32(now - actedAt) >= 0);
    m_connection.noteUserTime(isUsable ? actedAt : now);
    if (!activationToken.isEmpty())
        completeStartup(m_connection, activationToken);
}

QString X11Workspace::newActivationToken() const
{
    const quint32 actedAt = m_connection.userTime();
    return actedAt == 0 ? QString() : newStartupToken(++m_tokenCount, actedAt);
}

void X11Workspace::activateOwnWindow(QWindow *window)
{
    xcb_connection_t *xcb = qtX11Connection();
    if (!xcb)
        return;
    const auto id = quint32(window->winId());
    m_awaitedWindow = id;
    m_awaitedSince = m_connection.userTime();
    if (onOwnWindowActivated)
        onOwnWindowActivated(id);
    if (m_windows.hasWindowManager()) {
        // Qt writes its own idea of the time when it maps a window, and that is older than the hot
        // key, which Qt did not see.
        writeUserTime(xcb, id);
        askWindowManagerToActivate(xcb, id);
        xcb_flush(xcb);
        return;
    }
    // The server must have seen the window before the other connection speaks of it.
    const X11Reply<xcb_get_input_focus_reply_t> seen(
        xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
    focusWhenViewable(id);
}

void X11Workspace::askWindowManagerToActivate(xcb_connection_t *xcb, quint32 window)
{
    askWindowManager(xcb, window, X11AtomName::NetActiveWindow,
                     {kSourcePerson, m_connection.userTime()});
}

void X11Workspace::askWindowManager(xcb_connection_t *xcb, quint32 window, X11AtomName wish,
                                    std::array<quint32, 2> details)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = window;
    message.type = m_connection.atom(wish);
    std::ranges::copy(details, message.data.data32);
    xcb_send_event(xcb, 0, m_connection.rootWindow(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&message));
}

void X11Workspace::focusWhenViewable(quint32 window)
{
    // Selected first and looked at second, so that the moment between is not missed.
    m_windowToFocus = window;
    selectEvents(window, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    if (m_windows.isViewable(window))
        focus(window);
}

void X11Workspace::focus(quint32 window)
{
    constexpr quint32 kAbove = XCB_STACK_MODE_ABOVE;
    m_windowToFocus = 0;
    xcb_configure_window(m_connection.xcb(), window, XCB_CONFIG_WINDOW_STACK_MODE, &kAbove);
    // Without a time: nothing but us moves the focus here, and a time that is older than the last
    // change of focus would be ignored.
    xcb_set_input_focus(m_connection.xcb(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
    m_connection.flush();
}

void X11Workspace::handleX11Event(int type, const void *event)
{
    if (type == XCB_MAP_NOTIFY && m_windowToFocus != 0 &&
        static_cast<const xcb_map_notify_event_t *>(event)->window == m_windowToFocus) {
        focus(m_windowToFocus);
        return;
    }
    if (type != XCB_PROPERTY_NOTIFY)
        return;
    const auto *property = static_cast<const xcb_property_notify_event_t *>(event);
    if (property->atom == m_connection.atom(X11AtomName::NetActiveWindow))
        announceActivation(property->time);
}

/// The window of ours that is to have the focus has it.
void X11Workspace::noteArrival(quint32 activeWindow)
{
    if (activeWindow == m_awaitedWindow)
        m_awaitedWindow = 0;
}

/// Whether the focus of which we hear at \a time of the server was given away before we asked for it:
/// when our window closes and opens again at once, the window manager may still give the focus to the
/// one that had it in between. A window manager that never gives it to us is believed after a while.
bool X11Workspace::isBelated(quint32 time) const
{
    return m_awaitedWindow != 0 && qint32(time - m_awaitedSince) < kBelatedNewsPeriod.count();
}

void X11Workspace::announceActivation(quint32 time)
{
    if (!onApplicationActivated) {
        // Whoever listens next has heard of none.
        m_announcedWindow = 0;
        return;
    }
    const std::optional<RunningApplication> application = frontmostApplication();
    // In between no window has the focus; that is no activation.
    if (!application)
        return;
    noteArrival(quint32(application->window));
    if (isBelated(time) || application->window == m_announcedWindow)
        return;
    m_announcedWindow = quint32(application->window);
    onApplicationActivated(*application);
}
