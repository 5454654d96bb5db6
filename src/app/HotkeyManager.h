#pragma once

#include "settings/HotkeySettings.h"

#include <functional>

class GlobalHotkey;

/// Keeps the global key combination registered, and tells what becomes of it. Main thread only.
class HotkeyManager
{
public:
    /// \a callback is called at each press. \a hotkey must outlive the manager.
    HotkeyManager(GlobalHotkey &hotkey, std::function<void()> callback);
    ~HotkeyManager();
    HotkeyManager(const HotkeyManager &) = delete;
    HotkeyManager &operator=(const HotkeyManager &) = delete;

    void installEventHandler();

    /// Gives up the combination that is in force and asks for \a settings. If that is refused no
    /// combination is in force, until the one that is refused becomes free. Returns the answer of
    /// GlobalHotkey::assign().
    int registerHotkey(const HotkeySettings &settings);

private:
    void unregisterHotkey();
    void noteRegistered(const HotkeySettings &settings);

    GlobalHotkey &m_hotkey;
    std::function<void()> m_callback;
    bool m_isRegistered = false;
    bool m_isHandlerInstalled = false;
};
