#pragma once

#include "platform/x11/X11Connection.h"
#include "platform/x11/X11Pixels.h"

#include <QColor>
#include <QPoint>
#include <QSize>

#include <algorithm>
#include <cstring>
#include <vector>

#include <xcb/xcb.h>

/// A panel with a tray, on a connection of its own. It ends as a program that crashes does, unless
/// it is told to close before.
class FakeTray : private X11EventListener
{
public:
    struct Look
    {
        QColor ground = Qt::black;
        QSize icon{24, 24};
        bool hasAlpha = false;           ///< It wants icons with a visual that has alpha.
        std::optional<QColor> iconColor; ///< What it asks its icons to have.
    };

    static constexpr QPoint kIconPlace{105, 53}; ///< On the screen.

    FakeTray(const QByteArray &displayName, const Look &look)
        : m_look(look)
        , m_connection(displayName)
    {
        m_connection.addListener(this);
        createPanel();
        if (look.hasAlpha)
            set(X11AtomName::NetSystemTrayVisual, XCB_ATOM_VISUALID, {visualWithAlpha()});
        if (look.iconColor)
            setIconColor(*look.iconColor);
        announce();
        waitUntilDone();
    }

    ~FakeTray() override { m_connection.removeListener(this); }

    /// Lets go of the icons first, as panels do that end kindly.
    void close()
    {
        for (const quint32 icon : m_icons)
            xcb_reparent_window(xcb(), icon, m_connection.rootWindow(), 0, 0);
        m_icons.clear();
        xcb_destroy_window(xcb(), m_panel);
        m_connection.flush();
    }

    const std::vector<quint32> &icons() const { return m_icons; }
    quint32 panel() const { return m_panel; }
    quint32 icon() const { return m_icons.empty() ? 0 : m_icons.front(); }

    void setGround(const QColor &color)
    {
        const quint32 pixel = color.rgb() & 0xffffff;
        xcb_change_window_attributes(xcb(), m_panel, XCB_CW_BACK_PIXEL, &pixel);
        xcb_clear_area(xcb(), 0, m_panel, 0, 0, 0, 0);
        if (icon() != 0)
            xcb_clear_area(xcb(), 1, icon(), 0, 0, 0, 0);
        m_connection.flush();
    }

    void setIconColor(const QColor &color)
    {
        const QRgba64 parts = color.rgba64();
        const auto red = quint32(parts.red());
        const auto green = quint32(parts.green());
        const auto blue = quint32(parts.blue());
        set(X11AtomName::NetSystemTrayColors, XCB_ATOM_CARDINAL,
            {red, green, blue, red, green, blue, red, green, blue, red, green, blue});
        m_connection.flush();
    }

    void resizeIcon(const QSize &size)
    {
        const quint32 values[] = {quint32(size.width()), quint32(size.height())};
        xcb_configure_window(xcb(), icon(), XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                             values);
        m_connection.flush();
    }

    void destroyIcon()
    {
        xcb_destroy_window(xcb(), icon());
        waitUntilDone();
    }

    /// Pretends to the owner of the icon that somebody has destroyed \a window.
    void forgeDestructionOf(quint32 window)
    {
        xcb_destroy_notify_event_t event{};
        event.response_type = XCB_DESTROY_NOTIFY;
        event.event = icon();
        event.window = window;
        char bytes[32] = {}; // That many go over the wire, for all events.
        std::memcpy(bytes, &event, sizeof event);
        xcb_send_event(xcb(), 0, icon(), XCB_EVENT_MASK_STRUCTURE_NOTIFY, bytes);
        waitUntilDone();
    }

    /// As a panel does whose tray is switched off and on.
    void resign()
    {
        xcb_set_selection_owner(xcb(), XCB_NONE,
                                m_connection.atom(X11AtomName::NetSystemTraySelection),
                                XCB_CURRENT_TIME);
        letGoOfIcon();
    }

    /// Takes the selection of trays, and says so.
    void announce()
    {
        const quint32 selection = m_connection.atom(X11AtomName::NetSystemTraySelection);
        xcb_set_selection_owner(xcb(), m_panel, selection, XCB_CURRENT_TIME);
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = m_connection.rootWindow();
        message.type = m_connection.atom(X11AtomName::Manager);
        message.data.data32[1] = selection;
        message.data.data32[2] = m_panel;
        xcb_send_event(xcb(), 0, m_connection.rootWindow(), XCB_EVENT_MASK_STRUCTURE_NOTIFY,
                       reinterpret_cast<const char *>(&message));
        m_connection.flush();
    }

    void letGoOfIcon()
    {
        xcb_reparent_window(xcb(), icon(), m_connection.rootWindow(), 300, 300);
        xcb_map_window(xcb(), icon());
        m_icons.clear();
        waitUntilDone();
    }

    /// What is seen on the screen where the icon lies.
    QColor pixel(const QPoint &inIcon)
    {
        const QImage image = readPixels(m_connection, m_connection.rootWindow(),
                                        QRect(kIconPlace + inIcon, QSize(1, 1)));
        return image.isNull() ? QColor() : image.pixelColor(0, 0);
    }

    quint8 iconDepth()
    {
        const auto geometry =
            m_connection.reply(xcb_get_geometry_reply, xcb_get_geometry(xcb(), icon()));
        return geometry ? geometry->depth : 0;
    }

    std::optional<QByteArray> iconProperty(quint32 atom)
    {
        return m_connection.takeProperty(m_connection.requestProperty(icon(), atom));
    }

    X11Connection &connection() { return m_connection; }

private:
    xcb_connection_t *xcb() { return m_connection.xcb(); }

    /// Once the server answers, other connections see what was done.
    void waitUntilDone()
    {
        m_connection.reply(xcb_get_input_focus_reply, xcb_get_input_focus(xcb()));
    }

    void createPanel()
    {
        m_panel = xcb_generate_id(xcb());
        const quint32 values[] = {m_look.ground.rgb() & 0xffffff, 1,
                                  XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY};
        xcb_create_window(xcb(), XCB_COPY_FROM_PARENT, m_panel, m_connection.rootWindow(), 100, 50,
                          200, 60, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
        xcb_map_window(xcb(), m_panel);
    }

    void handleX11Event(int type, const void *event) override
    {
        if (type == XCB_DESTROY_NOTIFY) {
            std::erase(m_icons, static_cast<const xcb_destroy_notify_event_t *>(event)->window);
            return;
        }
        if (type != XCB_CLIENT_MESSAGE)
            return;
        const auto *message = static_cast<const xcb_client_message_event_t *>(event);
        if (message->type == m_connection.atom(X11AtomName::NetSystemTrayOpcode))
            embed(message->data.data32[2]);
    }

    void embed(quint32 window)
    {
        m_icons.push_back(window);
        xcb_change_save_set(xcb(), XCB_SET_MODE_INSERT, window);
        const QPoint place = kIconPlace - QPoint(100, 50);
        xcb_reparent_window(xcb(), window, m_panel, qint16(place.x()), qint16(place.y()));
        resizeIcon(m_look.icon);
        xcb_map_window(xcb(), window);
        m_connection.flush();
    }

    void set(X11AtomName property, quint32 type, const std::vector<quint32> &values)
    {
        xcb_change_property(xcb(), XCB_PROP_MODE_REPLACE, m_panel, m_connection.atom(property),
                            type, 32, quint32(values.size()), values.data());
    }

    quint32 visualWithAlpha()
    {
        const xcb_screen_t *screen = xcb_setup_roots_iterator(xcb_get_setup(xcb())).data;
        for (auto depths = xcb_screen_allowed_depths_iterator(screen); depths.rem > 0;
             xcb_depth_next(&depths)) {
            if (depths.data->depth == 32 && depths.data->visuals_len > 0)
                return xcb_depth_visuals_iterator(depths.data).data->visual_id;
        }
        return 0;
    }

    Look m_look;
    X11Connection m_connection;
    quint32 m_panel = 0;
    std::vector<quint32> m_icons;
};
