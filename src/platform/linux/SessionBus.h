#pragma once

#include <QDBusConnection>

#include <optional>

/// To be called once, before the application object is made. If the session has no bus, or one that
/// does not answer at once, that is printed, and the process lives without: whoever asks for the
/// bus, here or in Qt, is then told so at once, in place of waiting for it or starting another one.
void leaveBrokenSessionBus();

/// To be called once, before the application object is made and after leaveBrokenSessionBus(). If the
/// bus of assistive programs is there and does not answer at once, that is printed, and Qt is kept
/// from it: it would wait for it, with our windows, for minutes.
///
/// What keeps Qt away is in the environment until forgetAccessibilityBusChoice() is called, after the
/// application object was made; the programs that we start shall not inherit it.
void leaveBrokenAccessibilityBus();
void forgetAccessibilityBusChoice();

/// The bus of the session; absent if the session has none or it cannot be reached.
///
/// The bus is never started on the way: a program that starts its own bus would be alone on it.
std::optional<QDBusConnection> findSessionBus();

/// Lets others call the slots of \a object at \a path, hear its signals and read its properties,
/// for as long as it lives. False without a session bus.
[[nodiscard]] bool offerOnSessionBus(const QString &path, QObject &object);
