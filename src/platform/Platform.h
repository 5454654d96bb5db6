#pragma once

#include "platform/DesktopAppearance.h"
#include "platform/GlobalHotkey.h"
#include "platform/Pasteboard.h"
#include "platform/PasteKeystroke.h"
#include "platform/PointerMonitor.h"
#include "platform/StatusItem.h"
#include "platform/Workspace.h"

#include <functional>
#include <stdexcept>

/// The desktop system cannot be used at all; the text says why.
class PlatformError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Everything that one desktop system offers. The parts live as long as the platform.
class Platform
{
public:
    virtual ~Platform() = default;

    virtual Pasteboard &pasteboard() = 0;
    virtual Workspace &workspace() = 0;
    virtual GlobalHotkey &globalHotkey() = 0;
    virtual PasteKeystroke &pasteKeystroke() = 0;
    virtual PointerMonitor &pointerMonitor() = 0;
    virtual DesktopAppearance &appearance() = 0;
    virtual StatusItem &statusItem() = 0;

    /// Called once, from the event loop, after the desktop system has cut this program off: keys,
    /// clicks and the status item would not work again.
    std::function<void()> onLost;
};
