#include "settings/HotkeyText.h"

#include "language/Localized.h"
#include "settings/HotkeySettingsManager.h"

using namespace Qt::StringLiterals;

QStringList HotkeyText::keyCaps(const HotkeySettings &settings)
{
    QStringList caps;
    if (settings.modifiers & HotkeySettings::kCommand)
        caps += localized(u"settings.shortcuts.cmd"_s, u"Super"_s);
    if (settings.modifiers & HotkeySettings::kControl)
        caps += localized(u"settings.shortcuts.control"_s, u"Ctrl"_s);
    if (settings.modifiers & HotkeySettings::kOption)
        caps += localized(u"settings.shortcuts.option"_s, u"Alt"_s);
    if (settings.modifiers & HotkeySettings::kShift)
        caps += localized(u"settings.shortcuts.shift"_s, u"Shift"_s);
    caps += HotkeySettingsManager::keyName(settings.keyCode);
    return caps;
}

QString HotkeyText::readable(const HotkeySettings &settings)
{
    return keyCaps(settings).join(u'+');
}
