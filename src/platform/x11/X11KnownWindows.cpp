#include "platform/x11/X11KnownWindows.h"

#include <xcb/xcb.h>

namespace {

bool isOfSameProgram(const X11Windows::Identity &one, const X11Windows::Identity &other)
{
    return one.processId == other.processId && one.instanceName == other.instanceName &&
           one.className == other.className;
}

} // namespace

X11KnownWindows::X11KnownWindows(X11Connection &connection)
    : m_connection(connection)
    , m_windows(connection)
{
    m_connection.addListener(this);
}

X11KnownWindows::~X11KnownWindows()
{
    m_connection.removeListener(this);
}

std::optional<X11KnownWindows::Window> X11KnownWindows::note(quint32 window)
{
    // Selected first and asked second: it is the window of the answer that is followed.
    constexpr quint32 kEvents = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_connection.xcb(), window, XCB_CW_EVENT_MASK, &kEvents);
    const auto identity = m_windows.identity(window);
    if (!identity)
        return std::nullopt;

    Window &known = m_known[window];
    if (known.serial == 0 || !isOfSameProgram(known.identity, *identity))
        known.serial = ++m_lastSerial;
    known.identity = *identity;
    return known;
}

quint32 X11KnownWindows::find(const RunningApplication &application)
{
    const auto window = quint32(application.window);
    const auto known = m_known.constFind(window);
    if (known == m_known.constEnd() || known->serial != application.windowSerial)
        return 0;
    // The end of the window may not have been told yet.
    const auto identity = m_windows.identity(window);
    return identity && isOfSameProgram(known->identity, *identity) ? window : 0;
}

void X11KnownWindows::handleX11Event(int type, const void *event)
{
    if (type == XCB_DESTROY_NOTIFY)
        m_known.remove(static_cast<const xcb_destroy_notify_event_t *>(event)->window);
}
