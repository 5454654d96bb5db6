#include "platform/x11/X11Windows.h"

#include <xcb/xcb.h>

namespace {

/// Windows lie in few others, and dialogues belong to few others; more means a ring.
constexpr int kMaxDepth = 32;
constexpr quint32 kAllDesktops = 0xffffffff;

std::optional<quint32> firstValue(const std::optional<QByteArray> &property)
{
    const QList<quint32> words = propertyWords(property);
    return words.isEmpty() ? std::nullopt : std::optional(words.first());
}

} // namespace

quint32 X11Windows::activeWindow()
{
    const quint32 activeRequest = m_requests.requestProperty(
        m_requests.rootWindow(), m_requests.atom(X11AtomName::NetActiveWindow));
    const quint32 checkRequest = m_requests.requestProperty(
        m_requests.rootWindow(), m_requests.atom(X11AtomName::NetSupportingWmCheck));
    // There are window managers that write a second value; it means nothing.
    const std::optional<quint32> active = firstValue(m_requests.takeProperty(activeRequest));
    const std::optional<quint32> checkWindow = firstValue(m_requests.takeProperty(checkRequest));

    // What a window manager has written stays behind when it ends.
    if (isWindowManagerAlive(checkWindow))
        return active.value_or(0);
    const quint32 focus = focusWindow();
    return focus == 0 ? 0 : topLevelOf(focus);
}

std::optional<quint32> X11Windows::otherDesktopOf(quint32 window)
{
    const quint32 windowRequest =
        m_requests.requestProperty(window, m_requests.atom(X11AtomName::NetWmDesktop));
    const quint32 currentRequest = m_requests.requestProperty(
        m_requests.rootWindow(), m_requests.atom(X11AtomName::NetCurrentDesktop));
    const std::optional<quint32> desktop = firstValue(m_requests.takeProperty(windowRequest));
    const std::optional<quint32> current = firstValue(m_requests.takeProperty(currentRequest));
    const bool isElsewhere = desktop && current && *desktop != *current && *desktop != kAllDesktops;
    return isElsewhere ? desktop : std::nullopt;
}

bool X11Windows::hasWindowManager()
{
    const quint32 request = m_requests.requestProperty(
        m_requests.rootWindow(), m_requests.atom(X11AtomName::NetSupportingWmCheck));
    return isWindowManagerAlive(firstValue(m_requests.takeProperty(request)));
}

bool X11Windows::isWindowManagerAlive(const std::optional<quint32> &checkWindow)
{
    if (!checkWindow || *checkWindow == 0)
        return false;
    const quint32 request = m_requests.requestProperty(
        *checkWindow, m_requests.atom(X11AtomName::NetSupportingWmCheck));
    return firstValue(m_requests.takeProperty(request)) == checkWindow;
}

std::optional<X11Windows::Identity> X11Windows::identity(quint32 window)
{
    const quint32 classRequest = m_requests.requestProperty(window, XCB_ATOM_WM_CLASS);
    const quint32 gtkRequest =
        m_requests.requestProperty(window, m_requests.atom(X11AtomName::GtkApplicationId));
    const quint32 pidRequest =
        m_requests.requestProperty(window, m_requests.atom(X11AtomName::NetWmPid));
    const std::optional<QByteArray> windowClass = m_requests.takeProperty(classRequest);
    const std::optional<QByteArray> gtkId = m_requests.takeProperty(gtkRequest);
    const std::optional<QByteArray> pid = m_requests.takeProperty(pidRequest);
    if (!windowClass)
        return std::nullopt;

    // Two strings, each with a zero at its end.
    const QList<QByteArray> parts = windowClass->split('\0');
    Identity identity;
    identity.instanceName = QString::fromUtf8(parts.value(0));
    identity.className = QString::fromUtf8(parts.value(1));
    identity.gtkApplicationId = QString::fromUtf8(gtkId.value_or(QByteArray()));
    identity.processId = firstValue(pid).value_or(0);
    return identity;
}

bool X11Windows::belongsTo(quint32 window, quint32 main)
{
    if (window == 0 || main == 0)
        return false;
    quint32 ancestor = window;
    for (int depth = 0; ancestor != 0 && depth < kMaxDepth; ++depth) {
        if (ancestor == main)
            return true;
        ancestor = parent(ancestor);
    }
    return isTransientFor(topLevelOf(window), main);
}

bool X11Windows::isTransientFor(quint32 window, quint32 main)
{
    for (int depth = 0; depth < kMaxDepth; ++depth) {
        const quint32 request = m_requests.requestProperty(window, XCB_ATOM_WM_TRANSIENT_FOR);
        const std::optional<quint32> owner = firstValue(m_requests.takeProperty(request));
        if (!owner || *owner == 0 || *owner == window)
            return false;
        if (*owner == main)
            return true;
        window = *owner;
    }
    return false;
}

bool X11Windows::isViewable(quint32 window)
{
    const auto attributes = m_requests.reply(
        xcb_get_window_attributes_reply, xcb_get_window_attributes(m_requests.xcb(), window));
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

quint32 X11Windows::focusWindow()
{
    const auto focus =
        m_requests.reply(xcb_get_input_focus_reply, xcb_get_input_focus(m_requests.xcb()));
    if (!focus || focus->focus == XCB_INPUT_FOCUS_NONE)
        return 0;
    if (focus->focus == XCB_INPUT_FOCUS_POINTER_ROOT || focus->focus == m_requests.rootWindow())
        return windowUnderPointer();
    return focus->focus;
}

quint32 X11Windows::windowUnderPointer()
{
    const auto pointer = m_requests.reply(
        xcb_query_pointer_reply, xcb_query_pointer(m_requests.xcb(), m_requests.rootWindow()));
    return pointer ? pointer->child : 0;
}

quint32 X11Windows::parent(quint32 window)
{
    const auto tree =
        m_requests.reply(xcb_query_tree_reply, xcb_query_tree(m_requests.xcb(), window));
    return tree && tree->parent != m_requests.rootWindow() ? tree->parent : 0;
}

quint32 X11Windows::topLevelOf(quint32 window)
{
    // A window manager may have put the program's window into one of its own, which has no class.
    quint32 outermost = window;
    for (int depth = 0; window != 0 && depth < kMaxDepth; ++depth) {
        const quint32 request = m_requests.requestProperty(window, XCB_ATOM_WM_CLASS);
        if (!m_requests.takeProperty(request).value_or(QByteArray()).isEmpty())
            return window;
        outermost = window;
        window = parent(window);
    }
    return outermost;
}
