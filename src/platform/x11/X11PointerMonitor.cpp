#include "platform/x11/X11PointerMonitor.h"

#include "platform/linux/ScreenPoint.h"

#include <xcb/xcb.h>
#include <xcb/xinput.h>

namespace {

constexpr quint32 kLeftButton = 1;
constexpr quint32 kRightButton = 3;

} // namespace

X11PointerMonitor::X11PointerMonitor(X11Connection &connection)
    : m_connection(connection)
{
}

X11PointerMonitor::~X11PointerMonitor()
{
    stop();
}

void X11PointerMonitor::start()
{
    if (m_isRunning || !m_connection.xinput().isPresent)
        return;
    m_isRunning = true;
    m_connection.addListener(this);
    selectPresses(true);
}

void X11PointerMonitor::stop()
{
    if (!m_isRunning)
        return;
    m_isRunning = false;
    selectPresses(false);
    m_connection.removeListener(this);
}

void X11PointerMonitor::selectPresses(bool isWanted)
{
    struct
    {
        xcb_input_event_mask_t head;
        quint32 mask;
    } selection{};
    selection.head.deviceid = XCB_INPUT_DEVICE_ALL_MASTER;
    selection.head.mask_len = 1;
    selection.mask = isWanted ? quint32(XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS) : 0;
    xcb_input_xi_select_events(m_connection.xcb(), m_connection.rootWindow(), 1, &selection.head);
    m_connection.flush();
}

void X11PointerMonitor::handleX11Event(int type, const void *event)
{
    const auto *press = static_cast<const xcb_input_raw_button_press_event_t *>(event);
    if (type != XCB_GE_GENERIC || press->extension != m_connection.xinput().majorOpcode ||
        press->event_type != XCB_INPUT_RAW_BUTTON_PRESS)
        return;
    if (press->detail != kLeftButton && press->detail != kRightButton)
        return;

    // A raw event does not say where the pointer is.
    const auto pointer = m_connection.reply(
        xcb_query_pointer_reply, xcb_query_pointer(m_connection.xcb(), m_connection.rootWindow()));
    if (!pointer || !onMousePressed)
        return;
    const QPoint place(pointer->root_x, pointer->root_y);
    if (!isOwnPlace || !isOwnPlace(place))
        onMousePressed(deviceIndependent(place), press->time);
}
