#pragma once

#include "platform/Notifications.h"

#include <QList>

#include <utility>

/// Remembers what it was to show.
class FakeNotifications : public Notifications
{
public:
    void show(const QString &title, const QString &text, std::function<void()> onShown) override
    {
        shown.append({title, text});
        if (isDesktopShowing)
            onShown();
    }

    QList<std::pair<QString, QString>> shown; ///< Title and text.
    bool isDesktopShowing = true;
};
