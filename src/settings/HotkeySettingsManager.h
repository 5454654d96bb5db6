#pragma once

#include "settings/HotkeySettings.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <optional>

class UserDefaults;

/// Keeps the global key combination in the user defaults. Main thread only.
class HotkeySettingsManager : public QObject
{
    Q_OBJECT

public:
    explicit HotkeySettingsManager(UserDefaults &defaults) : m_defaults(defaults) {}

    /// The keys that are shown in the picker when the pane opens; keyNames() has two more, which
    /// can be picked but are not shown again.
    static const QStringList &availableKeys();

    /// The names of all keys that can be stored, in the order of the picker: those, and Backspace
    /// and Esc.
    static const QStringList &keyNames();

    /// The stored combination, or the default if there is none that can be read.
    HotkeySettings loadSettings() const;

    /// Stores \a settings; says nothing to anybody: see announce().
    void saveSettings(const HotkeySettings &settings);

    /// Tells everybody that the combination is now \a settings.
    void announce(const HotkeySettings &settings) { emit hotkeySettingsChanged(settings); }

    /// The name of a virtual key code, "Unknown" if it has none.
    static QString keyName(quint32 keyCode);

    /// The code of a name that can be stored; absent if there is none.
    static std::optional<quint32> keyCode(const QString &keyName);

    /// The combination as text, modifiers first, for example "⌥Space".
    static QString displayString(const HotkeySettings &settings);

signals:
    void hotkeySettingsChanged(const HotkeySettings &settings);

private:
    UserDefaults &m_defaults;
};
