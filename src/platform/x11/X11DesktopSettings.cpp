#include "platform/x11/X11DesktopSettings.h"

#include "platform/x11/X11Settings.h"

#include <utility>

#include <xcb/xcb.h>

X11DesktopSettings::X11DesktopSettings(X11Connection &connection)
    : m_connection(connection)
{
    m_connection.addListener(this);
    QMetaObject::invokeMethod(
        &m_context, [this] { follow(); }, Qt::QueuedConnection);
}

X11DesktopSettings::~X11DesktopSettings()
{
    m_connection.removeListener(this);
}

void X11DesktopSettings::handleX11Event(int type, const void *event)
{
    if (type != XCB_PROPERTY_NOTIFY || !m_manager)
        return;
    const auto *notice = static_cast<const xcb_property_notify_event_t *>(event);
    if (notice->window == m_manager->window() &&
        notice->atom == m_connection.atom(X11AtomName::XsettingsSettings))
        readSettings();
}

void X11DesktopSettings::follow()
{
    m_manager.emplace(m_connection, X11AtomName::XsettingsSelection);
    m_manager->onChanged = [this] { listenToManager(); };
    listenToManager();
}

void X11DesktopSettings::listenToManager()
{
    if (m_manager->window() != 0) {
        // Before reading, so that no change is missed.
        constexpr quint32 kEvents = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(m_connection.xcb(), m_manager->window(), XCB_CW_EVENT_MASK,
                                     &kEvents);
    }
    readSettings();
}

void X11DesktopSettings::readSettings()
{
    Values values;
    if (m_manager->window() != 0) {
        const quint32 request = m_connection.requestProperty(
            m_manager->window(), m_connection.atom(X11AtomName::XsettingsSettings));
        const QByteArray settings = m_connection.takeProperty(request).value_or(QByteArray());
        const auto animations = x11SettingIn(settings, "Gtk/EnableAnimations");
        const auto theme = x11SettingIn(settings, "Net/ThemeName");
        values.isAnimationOff = animations && animations->number == 0;
        values.isContrastHigh = theme && theme->text && theme->text->startsWith("HighContrast");
    }
    if (std::exchange(m_values, values) != values && onChanged)
        onChanged();
}
