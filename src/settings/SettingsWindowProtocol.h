#pragma once

#include <functional>

/// What the application knows of the settings window. Main thread only.
class SettingsWindowProtocol
{
public:
    virtual ~SettingsWindowProtocol() = default;

    virtual bool isVisible() const = 0;

    /// Shows the window, in front of the others and with the focus.
    virtual void show() = 0;

    /// Ends in onClosed.
    virtual void close() = 0;

    /// Makes all texts anew; the title then is that of the window and no longer the pane's.
    virtual void refreshLanguage() = 0;

    /// The person has chosen whether the history window shows its pin button.
    std::function<void()> onPinButtonVisibilityChanged;

    /// The window is closed and its owner may drop it, though not inside the call.
    std::function<void()> onClosed;
};
