#include "platform/x11/X11Appearance.h"

#include <utility>

#include <xcb/xcb.h>
#include <xcb/xfixes.h>

X11Appearance::X11Appearance(X11Connection &connection)
    : m_connection(connection)
{
    m_portal.onChanged = [this] {
        announceChange();
        if (onPreferenceChanged)
            onPreferenceChanged();
    };
    m_connection.addListener(this);
    watchCompositor();
}

X11Appearance::~X11Appearance()
{
    m_connection.removeListener(this);
}

void X11Appearance::watchCompositor()
{
    const quint32 selection = m_connection.atom(X11AtomName::CompositorSelection);
    if (m_connection.xfixes().isPresent) {
        xcb_xfixes_select_selection_input(
            m_connection.xcb(), m_connection.rootWindow(), selection,
            XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    }
    const auto owner = m_connection.reply(xcb_get_selection_owner_reply,
                                          xcb_get_selection_owner(m_connection.xcb(), selection));
    m_isComposited = owner && owner->owner != XCB_NONE;
}

void X11Appearance::handleX11Event(int type, const void *event)
{
    if (!m_connection.xfixes().isPresent ||
        type != m_connection.xfixes().firstEvent + XCB_XFIXES_SELECTION_NOTIFY)
        return;
    const auto *notice = static_cast<const xcb_xfixes_selection_notify_event_t *>(event);
    if (notice->selection != m_connection.atom(X11AtomName::CompositorSelection))
        return;
    // The window named as the owner of a selection that was lost is the one that lost it.
    const bool isComposited = notice->subtype == XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER &&
                              notice->owner != XCB_NONE;
    if (std::exchange(m_isComposited, isComposited) != isComposited)
        announceChange();
}

void X11Appearance::announceChange()
{
    if (onChanged)
        onChanged();
}
