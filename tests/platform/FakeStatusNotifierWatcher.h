#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusError>
#include <QDBusMessage>
#include <QObject>

#include <memory>

/// A watcher of status items on a connection of its own, with a host or without.
class FakeStatusNotifierWatcher : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierWatcher")
    Q_PROPERTY(bool IsStatusNotifierHostRegistered READ hasHost)

public:
    FakeStatusNotifierWatcher(const QString &busAddress, bool hasHost)
        : m_bus(QDBusConnection::connectToBus(busAddress, QStringLiteral("watcher")))
        , m_hasHost(hasHost)
    {
        m_bus.registerObject(QStringLiteral("/StatusNotifierWatcher"), this,
                             QDBusConnection::ExportAllSlots |
                                 QDBusConnection::ExportAllProperties);
        m_bus.registerService(QStringLiteral("org.kde.StatusNotifierWatcher"));
    }

    ~FakeStatusNotifierWatcher() override
    {
        // The connection itself ends only when the last user of it does.
        m_bus.unregisterService(QStringLiteral("org.kde.StatusNotifierWatcher"));
        QDBusConnection::disconnectFromBus(QStringLiteral("watcher"));
    }

    bool hasHost() const { return m_hasHost; }

    void setHost(bool hasHost)
    {
        m_hasHost = hasHost;
        m_bus.send(
            QDBusMessage::createSignal(QStringLiteral("/StatusNotifierWatcher"),
                                       QStringLiteral("org.kde.StatusNotifierWatcher"),
                                       hasHost ? QStringLiteral("StatusNotifierHostRegistered")
                                               : QStringLiteral("StatusNotifierHostUnregistered")));
    }

    QStringList items; ///< In the order in which they registered.
    bool refusesItems = false;

public slots:
    void RegisterStatusNotifierItem(const QString &service) // The name is the bus's.
    {
        items.append(service);
        if (refusesItems)
            sendErrorReply(QDBusError::AccessDenied);
    }

private:
    QDBusConnection m_bus;
    bool m_hasHost;
};
