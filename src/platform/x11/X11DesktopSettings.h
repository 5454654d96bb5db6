#pragma once

#include "platform/x11/X11SelectionOwner.h"

#include <functional>
#include <optional>

/// What the settings manager of the X session publishes of its looks. Main thread only.
///
/// Settings are read once the event loop runs, and again when they change.
class X11DesktopSettings : private X11EventListener
{
public:
    struct Values
    {
        bool isAnimationOff = false;
        bool isContrastHigh = false; ///< The theme is made for people who need that.

        friend bool operator==(const Values &, const Values &) = default;
    };

    explicit X11DesktopSettings(X11Connection &connection);
    ~X11DesktopSettings() override;

    const Values &values() const { return m_values; }

    /// Called after a value has changed.
    std::function<void()> onChanged;

private:
    void handleX11Event(int type, const void *event) override;
    void follow();
    void listenToManager();
    void readSettings();

    X11Connection &m_connection;
    QObject m_context; ///< Ends the queued call with the object.
    std::optional<X11SelectionOwner> m_manager;
    Values m_values;
};
