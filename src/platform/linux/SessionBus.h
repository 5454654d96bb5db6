#pragma once

#include <QDBusConnection>

#include <optional>

/// The bus of the session; absent if the session has none or it cannot be reached.
///
/// The bus is never started on the way: a program that starts its own bus would be alone on it.
std::optional<QDBusConnection> findSessionBus();
