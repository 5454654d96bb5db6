#pragma once

#include "settings/HotkeySettings.h"

#include <QString>

class HotkeySettingsManager;

/// A key combination as a person chooses it: four toggles and the name of a key.
struct HotkeyChoice
{
    QString selectedKey = QStringLiteral("Space");
    bool cmdEnabled = false;
    bool shiftEnabled = false;
    bool optionEnabled = true;
    bool controlEnabled = false;

    /// The key stays as it was if that of \a settings is not among those that are shown.
    void takeOver(const HotkeySettings &settings);

    /// Stores the choice and tells everybody. False, and nothing is changed, if no key that can be
    /// stored has that name.
    bool apply(HotkeySettingsManager &manager) const;

    friend bool operator==(const HotkeyChoice &, const HotkeyChoice &) = default;
};
