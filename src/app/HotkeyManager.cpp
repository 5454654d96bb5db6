#include "app/HotkeyManager.h"

#include "foundation/Log.h"
#include "platform/GlobalHotkey.h"

#include <utility>

using namespace Qt::StringLiterals;

HotkeyManager::HotkeyManager(GlobalHotkey &hotkey, std::function<void()> callback)
    : m_hotkey(hotkey)
    , m_callback(std::move(callback))
{
}

HotkeyManager::~HotkeyManager()
{
    unregisterHotkey();
    if (!m_isHandlerInstalled)
        return;
    m_hotkey.onPressed = nullptr;
    printLine(u"Event handler removed"_s);
}

void HotkeyManager::installEventHandler()
{
    m_hotkey.onPressed = [this] {
        if (m_callback)
            m_callback();
    };
    m_isHandlerInstalled = true;
    printLine(u"Event handler installed successfully"_s);
}

int HotkeyManager::registerHotkey(const HotkeySettings &settings)
{
    unregisterHotkey();
    m_hotkey.onAssignedLater = [this, settings] { noteRegistered(settings); };
    const int status = m_hotkey.assign(settings.keyCode, settings.modifiers);
    if (status == 0)
        noteRegistered(settings);
    else
        printLine(u"Failed to register hotkey: %1"_s.arg(status));
    return status;
}

void HotkeyManager::noteRegistered(const HotkeySettings &settings)
{
    m_isRegistered = true;
    printLine(u"Hotkey registered successfully: keyCode=%1, modifiers=%2"_s.arg(settings.keyCode)
                  .arg(settings.modifiers));
}

void HotkeyManager::unregisterHotkey()
{
    // What was refused is wanted no longer either.
    m_hotkey.onAssignedLater = nullptr;
    m_hotkey.release();
    if (std::exchange(m_isRegistered, false))
        printLine(u"Hotkey unregistered"_s);
}
