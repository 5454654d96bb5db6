#include "platform/linux/SessionBus.h"

#include "foundation/Log.h"
#include "platform/linux/BoundedCalls.h"

#include <QFile>

#include <memory>

#include <dbus/dbus.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Nobody notices that at a start, and a bus that is well needs a hundredth of it.
constexpr auto kPatience = 500ms;

constexpr auto kAddressVariable = "DBUS_SESSION_BUS_ADDRESS";

/// Empty if there is no bus.
QByteArray sessionBusAddress()
{
    const QByteArray address = qgetenv(kAddressVariable);
    const QByteArray runtimeFolder = qgetenv("XDG_RUNTIME_DIR");
    if (!address.isEmpty() || runtimeFolder.isEmpty())
        return address;
    const QByteArray path = runtimeFolder + "/bus";
    return QFile::exists(QFile::decodeName(path)) ? "unix:path=" + path : QByteArray();
}

class BusError
{
public:
    BusError() { dbus_error_init(&m_error); }
    ~BusError() { dbus_error_free(&m_error); }
    BusError(const BusError &) = delete;
    BusError &operator=(const BusError &) = delete;

    DBusError *get() { return &m_error; }
    QString text() const { return QString::fromUtf8(m_error.message); }

private:
    DBusError m_error;
};

struct CloseConnection
{
    void operator()(DBusConnection *connection) const
    {
        dbus_connection_close(connection);
        dbus_connection_unref(connection);
    }
};

struct DropMessage
{
    void operator()(DBusMessage *message) const { dbus_message_unref(message); }
};

using Connection = std::unique_ptr<DBusConnection, CloseConnection>;
using Message = std::unique_ptr<DBusMessage, DropMessage>;

/// Says hello to the bus, and waits as long as the library does; the caller bounds it. Returns what
/// is wrong with the bus; null if it answers.
QString problemOfBus(const QByteArray &address)
{
    BusError error;
    const Connection connection(dbus_connection_open_private(address.constData(), error.get()));
    if (!connection)
        return error.text();
    dbus_connection_set_exit_on_disconnect(connection.get(), FALSE);
    const Message hello(dbus_message_new_method_call(DBUS_SERVICE_DBUS, DBUS_PATH_DBUS,
                                                     DBUS_INTERFACE_DBUS, "Hello"));
    const Message answer(dbus_connection_send_with_reply_and_block(
        connection.get(), hello.get(), DBUS_TIMEOUT_USE_DEFAULT, error.get()));
    return answer ? QString() : error.text();
}

} // namespace

void leaveBrokenSessionBus()
{
    const QByteArray address = sessionBusAddress();
    QString problem = u"there is none"_s;
    if (!address.isEmpty()) {
        problem = BoundedCalls(kPatience)
                      .run<QString>([address] { return problemOfBus(address); })
                      .value_or(u"it does not answer"_s);
    }
    if (problem.isEmpty())
        return;
    printLine("No session bus: "_L1 + problem);
    // No transport has this name, so that connecting fails at once.
    qputenv(kAddressVariable, "disabled:");
}

std::optional<QDBusConnection> findSessionBus()
{
    if (sessionBusAddress().isEmpty())
        return std::nullopt;
    const QDBusConnection bus = QDBusConnection::sessionBus();
    return bus.isConnected() ? std::optional(bus) : std::nullopt;
}

bool offerOnSessionBus(const QString &path, QObject &object)
{
    std::optional<QDBusConnection> bus = findSessionBus();
    constexpr auto kEverything = QDBusConnection::ExportAllSlots |
                                 QDBusConnection::ExportAllSignals |
                                 QDBusConnection::ExportAllProperties;
    return bus && bus->registerObject(path, &object, kEverything);
}
