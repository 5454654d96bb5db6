#pragma once

#include <QString>

#include <functional>

/// Tells the person something outside the program's windows. Main thread only; never waits.
class Notifications
{
public:
    virtual ~Notifications() = default;

    /// Shows a notification with a title and a few sentences of plain text. \a onShown is called
    /// later, once the desktop has taken it; never where the desktop shows none.
    virtual void show(const QString &title, const QString &text, std::function<void()> onShown) = 0;
};
