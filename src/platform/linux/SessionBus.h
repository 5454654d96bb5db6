#pragma once

#include <QDBusConnection>

#include <optional>

/// To be called once, before the application object is made. If the session has no bus, or one that
/// does not answer within half a second, that is printed, and the process lives without: whoever
/// asks for the bus, here or in Qt, is then told so at once, in place of waiting for it or starting
/// another one.
void leaveBrokenSessionBus();

/// Where the bus of the session is; empty if there is none. Nobody is asked whether it answers.
QByteArray sessionBusAddress();

/// The bus of the session; absent if the session has none or it cannot be reached.
///
/// The bus is never started on the way: a program that starts its own bus would be alone on it.
std::optional<QDBusConnection> findSessionBus();

/// Lets others call the slots of \a object at \a path, hear its signals and read its properties,
/// for as long as it lives. False without a session bus.
[[nodiscard]] bool offerOnSessionBus(const QString &path, QObject &object);
