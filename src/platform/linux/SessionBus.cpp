#include "platform/linux/SessionBus.h"

#include <QFile>

using namespace Qt::StringLiterals;

std::optional<QDBusConnection> findSessionBus()
{
    const QString runtimeFolder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const bool hasUserBus = !runtimeFolder.isEmpty() && QFile::exists(runtimeFolder + "/bus"_L1);
    if (qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") && !hasUserBus)
        return std::nullopt;

    const QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() ? std::optional(bus) : std::nullopt;
}
