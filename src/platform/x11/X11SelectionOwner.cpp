#include "platform/x11/X11SelectionOwner.h"

#include <utility>

#include <xcb/xcb.h>
#include <xcb/xfixes.h>

X11SelectionOwner::X11SelectionOwner(X11Connection &connection, X11AtomName selection)
    : m_connection(connection)
    , m_selection(connection.atom(selection))
{
    m_connection.addListener(this);
    if (m_connection.xfixes().isPresent) {
        xcb_xfixes_select_selection_input(
            m_connection.xcb(), m_connection.rootWindow(), m_selection,
            XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    }
    const auto owner = m_connection.reply(xcb_get_selection_owner_reply,
                                          xcb_get_selection_owner(m_connection.xcb(), m_selection));
    m_window = owner ? owner->owner : 0;
}

X11SelectionOwner::~X11SelectionOwner()
{
    m_connection.removeListener(this);
}

void X11SelectionOwner::handleX11Event(int type, const void *event)
{
    if (!m_connection.xfixes().isPresent ||
        type != m_connection.xfixes().firstEvent + XCB_XFIXES_SELECTION_NOTIFY)
        return;
    const auto *notice = static_cast<const xcb_xfixes_selection_notify_event_t *>(event);
    if (notice->selection != m_selection)
        return;
    // The window named as the owner of a selection that was lost is the one that lost it.
    const bool isTaken = notice->subtype == XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER;
    const quint32 window = isTaken ? notice->owner : 0;
    if (std::exchange(m_window, window) != window && onChanged)
        onChanged();
}
