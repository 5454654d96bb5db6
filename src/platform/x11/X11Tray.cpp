#include "platform/x11/X11Tray.h"

#include <xcb/xcb.h>

namespace {

constexpr quint32 kRequestDock = 0; ///< SYSTEM_TRAY_REQUEST_DOCK
constexpr quint32 kVertical = 1;    ///< _NET_SYSTEM_TRAY_ORIENTATION_VERT

} // namespace

X11Tray::X11Tray(X11Connection &connection)
    : m_connection(connection)
{
    m_connection.addListener(this);
    // A tray that comes announces itself on the root window.
    m_connection.selectRootEvents(XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    follow();
}

X11Tray::~X11Tray()
{
    m_connection.removeListener(this);
}

void X11Tray::follow()
{
    const auto owner = m_connection.reply(
        xcb_get_selection_owner_reply,
        xcb_get_selection_owner(m_connection.xcb(),
                                m_connection.atom(X11AtomName::NetSystemTraySelection)));
    if (!owner)
        return;
    if (owner->owner == m_window) {
        if (m_window != 0 && readWishes() && onConfirmed)
            onConfirmed();
        return;
    }
    m_window = owner->owner;
    if (m_window != 0) {
        constexpr quint32 kEvents =
            XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(m_connection.xcb(), m_window, XCB_CW_EVENT_MASK, &kEvents);
        // It may have ended before we listened.
        if (!readWishes())
            m_window = 0;
    }
    if (onReplaced)
        onReplaced();
}

void X11Tray::forget()
{
    m_window = 0;
    m_visual = 0;
    m_isVertical = false;
    m_iconColor.reset();
    if (onReplaced)
        onReplaced();
}

bool X11Tray::readWishes()
{
    const auto request = [this](X11AtomName name) {
        return m_connection.requestProperty(m_window, m_connection.atom(name));
    };
    const quint32 visualRequest = request(X11AtomName::NetSystemTrayVisual);
    const quint32 orientationRequest = request(X11AtomName::NetSystemTrayOrientation);
    const quint32 colorsRequest = request(X11AtomName::NetSystemTrayColors);
    const std::optional<QByteArray> visual = m_connection.takeProperty(visualRequest);
    m_visual = propertyWords(visual).value(0);
    m_isVertical =
        propertyWords(m_connection.takeProperty(orientationRequest)).value(0) == kVertical;
    const QList<quint32> colors = propertyWords(m_connection.takeProperty(colorsRequest));
    m_iconColor.reset();
    // The first of four colours is that of plain icons; each part of it has 16 bits.
    if (colors.size() >= 3)
        m_iconColor
            = QColor::fromRgba64(quint16(colors[0]), quint16(colors[1]), quint16(colors[2]));
    return visual.has_value();
}

void X11Tray::askForDocking(quint32 icon)
{
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = m_window;
    message.type = m_connection.atom(X11AtomName::NetSystemTrayOpcode);
    message.data.data32[0] = XCB_CURRENT_TIME;
    message.data.data32[1] = kRequestDock;
    message.data.data32[2] = icon;
    xcb_send_event(m_connection.xcb(), 0, m_window, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char *>(&message));
}

void X11Tray::handleX11Event(int type, const void *event)
{
    switch (type) {
    case XCB_CLIENT_MESSAGE: handleMessage(event); break;
    case XCB_PROPERTY_NOTIFY: handleProperty(event); break;
    case XCB_DESTROY_NOTIFY:
        if (m_window != 0 && !isSentByProgram(event) &&
            static_cast<const xcb_destroy_notify_event_t *>(event)->window == m_window)
            forget();
        break;
    default: break;
    }
}

void X11Tray::handleMessage(const void *event)
{
    const auto *message = static_cast<const xcb_client_message_event_t *>(event);
    if (message->type == m_connection.atom(X11AtomName::Manager) &&
        message->data.data32[1] == m_connection.atom(X11AtomName::NetSystemTraySelection))
        follow();
}

void X11Tray::handleProperty(const void *event)
{
    const auto *notice = static_cast<const xcb_property_notify_event_t *>(event);
    const bool isWish = notice->atom == m_connection.atom(X11AtomName::NetSystemTrayColors) ||
                        notice->atom == m_connection.atom(X11AtomName::NetSystemTrayOrientation);
    if (m_window == 0 || notice->window != m_window || !isWish || !readWishes())
        return;
    if (onWishesChanged)
        onWishesChanged();
}
