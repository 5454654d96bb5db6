#pragma once

#include "platform/Notifications.h"

#include <QObject>

/// Notifications by the desktop's service on the session bus (org.freedesktop.Notifications).
class DBusNotifications : public QObject, public Notifications
{
    Q_OBJECT

public:
    void show(const QString &title, const QString &text, std::function<void()> onShown) override;
};
