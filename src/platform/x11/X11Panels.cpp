#include "platform/x11/X11Panels.h"

#include "platform/Scheduler.h"

#include <utility>

#include <xcb/xcb.h>

using namespace std::chrono_literals;

namespace {

constexpr auto kSettling = 100ms;

} // namespace

X11Panels::X11Panels(X11Connection &connection, Scheduler &scheduler)
    : m_connection(connection)
    , m_scheduler(scheduler)
{
    m_connection.addListener(this);
    m_connection.selectRootEvents(XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    m_refresh = m_scheduler.after(0ms, [this] { refresh(); });
}

X11Panels::~X11Panels()
{
    m_connection.removeListener(this);
}

QRect X11Panels::available(const QRect &monitor) const
{
    return withoutStruts(monitor, m_screen, m_struts);
}

void X11Panels::handleX11Event(int type, const void *event)
{
    if (type == XCB_CONFIGURE_NOTIFY) {
        const auto *notice = static_cast<const xcb_configure_notify_event_t *>(event);
        if (notice->window == m_connection.rootWindow())
            refreshSoon();
    } else if (type == XCB_PROPERTY_NOTIFY) {
        const auto *notice = static_cast<const xcb_property_notify_event_t *>(event);
        const bool isList = notice->window == m_connection.rootWindow()
            && notice->atom == m_connection.atom(X11AtomName::NetClientList);
        const bool isStrut = m_windows.value(notice->window)
            && (notice->atom == m_connection.atom(X11AtomName::NetWmStrut)
                || notice->atom == m_connection.atom(X11AtomName::NetWmStrutPartial));
        if (isList || isStrut)
            refreshSoon();
    }
}

void X11Panels::refreshSoon()
{
    if (!m_refresh)
        m_refresh = m_scheduler.after(kSettling, [this] { refresh(); });
}

void X11Panels::refresh()
{
    const std::unique_ptr<ScheduledWork> done = std::move(m_refresh);
    QList<std::pair<quint32, quint32>> questions;
    for (const quint32 panel : panels()) {
        questions.append(
            {m_connection.requestProperty(panel,
                                          m_connection.atom(X11AtomName::NetWmStrutPartial)),
             m_connection.requestProperty(panel, m_connection.atom(X11AtomName::NetWmStrut))});
    }
    const auto root = m_connection.reply(
        xcb_get_geometry_reply, xcb_get_geometry(m_connection.xcb(), m_connection.rootWindow()));
    const QSize screen = root ? QSize(root->width, root->height) : m_screen;
    QList<PanelStrut> struts;
    for (const auto &[partial, whole] : questions) {
        const QList<quint32> partialWords = propertyWords(m_connection.takeProperty(partial));
        struts += panelStruts(partialWords, propertyWords(m_connection.takeProperty(whole)));
    }
    const bool isOld = std::exchange(m_struts, struts) == struts;
    if (std::exchange(m_screen, screen) == screen && isOld)
        return;
    if (onChanged)
        onChanged();
}

/// Those that are new are followed from now on.
QList<quint32> X11Panels::panels()
{
    const QList<quint32> windows
        = propertyWords(m_connection.takeProperty(m_connection.requestProperty(
            m_connection.rootWindow(), m_connection.atom(X11AtomName::NetClientList))));
    const QHash<quint32, bool> known = std::exchange(m_windows, {});
    QList<std::pair<quint32, quint32>> questions;
    for (const quint32 window : windows) {
        if (known.contains(window))
            m_windows[window] = known[window];
        else
            questions.append({window, m_connection.requestProperty(
                                          window, m_connection.atom(X11AtomName::NetWmWindowType))});
    }
    for (const auto &[window, question] : questions) {
        const bool isPanel = propertyWords(m_connection.takeProperty(question))
                                 .contains(m_connection.atom(X11AtomName::NetWmWindowTypeDock));
        m_windows[window] = isPanel;
        constexpr quint32 kEvents
            = XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
        if (isPanel)
            xcb_change_window_attributes(m_connection.xcb(), window, XCB_CW_EVENT_MASK, &kEvents);
    }
    return m_windows.keys(true);
}
