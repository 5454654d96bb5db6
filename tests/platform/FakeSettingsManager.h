#pragma once

#include "platform/x11/X11Connection.h"
#include "tests/platform/MadeX11Settings.h"

#include <xcb/xcb.h>

/// A settings manager on a connection of its own; it is gone with the object.
class FakeSettingsManager
{
public:
    FakeSettingsManager(const QByteArray &displayName, const MadeX11Settings &settings)
        : m_connection(displayName)
        , m_window(xcb_generate_id(m_connection.xcb()))
    {
        xcb_create_window(m_connection.xcb(), 0, m_window, m_connection.rootWindow(), 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, 0, 0, nullptr);
        publish(settings);
        xcb_set_selection_owner(m_connection.xcb(), m_window,
                                m_connection.atom(X11AtomName::XsettingsSelection),
                                XCB_CURRENT_TIME);
        m_connection.serverTime(); // Whose answer comes after all that.
    }

    void publish(const MadeX11Settings &settings)
    {
        const quint32 property = m_connection.atom(X11AtomName::XsettingsSettings);
        const QByteArray bytes = settings.bytes();
        xcb_change_property(m_connection.xcb(), XCB_PROP_MODE_REPLACE, m_window, property, property,
                            8, quint32(bytes.size()), bytes.constData());
        m_connection.flush();
    }

private:
    X11Connection m_connection;
    quint32 m_window;
};
