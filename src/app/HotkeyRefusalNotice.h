#pragma once

struct HotkeySettings;
class Notifications;
class UserDefaults;

/// Tells the person, once in the life of the settings, that another program has the hot key and
/// what to do about it. Nothing else would: the program has no window at its start. Main thread
/// only.
class HotkeyRefusalNotice
{
public:
    /// Both must outlive what the desktop has to say of a notification.
    HotkeyRefusalNotice(UserDefaults &defaults, Notifications &notifications)
        : m_defaults(defaults)
        , m_notifications(notifications)
    {
    }

    /// Does nothing if the person was told before, whatever the combination was.
    void show(const HotkeySettings &settings);

private:
    UserDefaults &m_defaults;
    Notifications &m_notifications;
};
