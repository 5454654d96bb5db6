#pragma once

#include "tests/fakes/FakeDesktopAppearance.h"
#include "tests/fakes/FakeGlobalHotkey.h"
#include "tests/fakes/FakeWorkspace.h"

#include "foundation/UserDefaults.h"
#include "language/LanguageManager.h"
#include "settings/HotkeySettingsManager.h"
#include "settings/SettingsWindow.h"

#include <QTemporaryDir>

/// A desktop with the settings of a person who has just installed the program. A change of the hot
/// key reaches the desktop as it does in the program.
struct SettingsStage
{
    SettingsStage()
    {
        languages.install();
        QObject::connect(&hotkeySettings, &HotkeySettingsManager::hotkeySettingsChanged,
                         &hotkeySettings, [this](const HotkeySettings &settings) {
                             changes.append(settings);
                             hotkey.release();
                             status = hotkey.assign(settings.keyCode, settings.modifiers);
                         });
        status = hotkey.assign(HotkeySettings().keyCode, HotkeySettings().modifiers);
    }

    SettingsCollaborators collaborators()
    {
        return {workspace, appearance, hotkey, defaults, languages, hotkeySettings};
    }

    QTemporaryDir directory;
    UserDefaults defaults{directory.filePath(QStringLiteral("settings.conf"))};
    LanguageManager languages{defaults};
    HotkeySettingsManager hotkeySettings{defaults};
    FakeWorkspace workspace;
    FakeDesktopAppearance appearance;
    FakeGlobalHotkey hotkey;
    QList<HotkeySettings> changes; ///< That were announced.
    int status = 0;                ///< What the desktop said to the last combination.
};
