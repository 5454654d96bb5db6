#pragma once

#include <QString>

/// Tells the person something outside the program's windows. Main thread only; never waits.
class Notifications
{
public:
    virtual ~Notifications() = default;

    /// Shows a notification with a title and a few sentences of plain text. Where the desktop shows
    /// none, nothing happens.
    virtual void show(const QString &title, const QString &text) = 0;
};
