#pragma once

#include <QByteArray>

#include <cstdlib>
#include <map>
#include <utility>

#include <xcb/xcb.h>

/// Windows of a program that has nothing else, at numbers that the test chooses, on a desktop
/// without a window manager. One thread at a time, but for focus().
class PlainWindows
{
public:
    explicit PlainWindows(const QByteArray &displayName)
        : m_xcb(xcb_connect(displayName.constData(), nullptr))
        , m_screen(xcb_setup_roots_iterator(xcb_get_setup(m_xcb)).data)
    {
    }

    ~PlainWindows() { xcb_disconnect(m_xcb); }
    PlainWindows(const PlainWindows &) = delete;
    PlainWindows &operator=(const PlainWindows &) = delete;

    quint32 makeNumber() { return xcb_generate_id(m_xcb); }

    /// \a number may be that of a window that was closed.
    void open(quint32 number, const QByteArray &windowClass)
    {
        constexpr quint32 kEvents = XCB_EVENT_MASK_KEY_PRESS;
        const QByteArray names = windowClass + '\0' + windowClass + '\0';
        xcb_create_window(m_xcb, XCB_COPY_FROM_PARENT, number, m_screen->root, 0, 0, 100, 100, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                          &kEvents);
        xcb_change_property(m_xcb, XCB_PROP_MODE_REPLACE, number, XCB_ATOM_WM_CLASS,
                            XCB_ATOM_STRING, 8, quint32(names.size()), names.constData());
        xcb_map_window(m_xcb, number);
        waitForServer();
    }

    void close(quint32 number)
    {
        xcb_destroy_window(m_xcb, number);
        waitForServer();
    }

    void focus(quint32 number)
    {
        xcb_set_input_focus(m_xcb, XCB_INPUT_FOCUS_PARENT, number, XCB_CURRENT_TIME);
        waitForServer();
    }

    /// How many keys were pressed in the window \a number since this was asked last.
    int takePresses(quint32 number)
    {
        waitForServer();
        while (xcb_generic_event_t *event = xcb_poll_for_event(m_xcb)) {
            if ((event->response_type & ~0x80) == XCB_KEY_PRESS)
                ++m_presses[reinterpret_cast<xcb_key_press_event_t *>(event)->event];
            std::free(event);
        }
        return std::exchange(m_presses[number], 0);
    }

private:
    void waitForServer()
    {
        std::free(xcb_get_input_focus_reply(m_xcb, xcb_get_input_focus(m_xcb), nullptr));
    }

    xcb_connection_t *m_xcb;
    xcb_screen_t *m_screen;
    std::map<quint32, int> m_presses; ///< By window.
};
