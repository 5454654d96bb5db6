#include "settings/HotkeyChoice.h"

#include "foundation/Log.h"
#include "settings/HotkeySettingsManager.h"

using namespace Qt::StringLiterals;

void HotkeyChoice::takeOver(const HotkeySettings &settings)
{
    cmdEnabled = settings.modifiers & HotkeySettings::kCommand;
    shiftEnabled = settings.modifiers & HotkeySettings::kShift;
    optionEnabled = settings.modifiers & HotkeySettings::kOption;
    controlEnabled = settings.modifiers & HotkeySettings::kControl;
    const QString name = HotkeySettingsManager::keyName(settings.keyCode);
    if (HotkeySettingsManager::availableKeys().contains(name))
        selectedKey = name;
}

bool HotkeyChoice::apply(HotkeySettingsManager &manager) const
{
    const auto keyCode = HotkeySettingsManager::keyCode(selectedKey);
    if (!keyCode) {
        printLine(u"Invalid key: "_s + selectedKey);
        return false;
    }
    HotkeySettings settings{*keyCode, 0};
    if (cmdEnabled)
        settings.modifiers |= HotkeySettings::kCommand;
    if (shiftEnabled)
        settings.modifiers |= HotkeySettings::kShift;
    if (optionEnabled)
        settings.modifiers |= HotkeySettings::kOption;
    if (controlEnabled)
        settings.modifiers |= HotkeySettings::kControl;
    manager.saveSettings(settings);
    manager.announce(settings);
    return true;
}
