#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QSignalSpy>

/// Another program on the session bus, that calls an object of this one.
class BusCaller
{
public:
    BusCaller(const QString &busAddress, const QString &name)
        : m_bus(QDBusConnection::connectToBus(busAddress, name))
        , m_name(name)
    {
    }

    ~BusCaller() { QDBusConnection::disconnectFromBus(m_name); }

    BusCaller(const BusCaller &) = delete;
    BusCaller &operator=(const BusCaller &) = delete;

    QDBusConnection &bus() { return m_bus; }

    /// The answer, an error too; the event loop turns until it is there.
    QDBusMessage call(const QString &path, const QString &interface, const QString &method,
                      const QVariantList &arguments = {})
    {
        QDBusMessage message = QDBusMessage::createMethodCall(
            QDBusConnection::sessionBus().baseService(), path, interface, method);
        message.setArguments(arguments);
        QDBusPendingCallWatcher watcher(m_bus.asyncCall(message));
        QSignalSpy finished(&watcher, &QDBusPendingCallWatcher::finished);
        if (!watcher.isFinished())
            finished.wait();
        return watcher.reply();
    }

    QVariant property(const QString &path, const QString &interface, const QString &name)
    {
        const QDBusMessage answer = call(path, QStringLiteral("org.freedesktop.DBus.Properties"),
                                         QStringLiteral("Get"), {interface, name});
        return answer.arguments().value(0).value<QDBusVariant>().variant();
    }

private:
    QDBusConnection m_bus;
    QString m_name;
};
