#include "platform/linux/SessionBus.h"

#include "foundation/Log.h"
#include "platform/linux/BoundedCalls.h"

#include <QAccessible>
#include <QFile>

#include <memory>

#include <dbus/dbus.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Nobody notices that at a start, and a bus that is well needs a hundredth of it.
constexpr auto kPatience = 500ms;

/// Who needs it would rather wait than go without, should it be slow.
constexpr auto kAccessibilityPatience = 3s;

constexpr auto kAddressVariable = "DBUS_SESSION_BUS_ADDRESS";
constexpr auto kAccessibilityAddressVariable = "AT_SPI_BUS_ADDRESS";

// No transport has this name, so that connecting fails at once.
constexpr auto kNoBus = "disabled:";

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

/// All of these wait as long as the library does; the caller bounds them.
Connection openBus(const QByteArray &address, BusError &error)
{
    Connection connection(dbus_connection_open_private(address.constData(), error.get()));
    if (connection)
        dbus_connection_set_exit_on_disconnect(connection.get(), FALSE);
    return connection;
}

Message call(DBusConnection &connection, const char *service, const char *path,
             const char *interface, const char *method, BusError &error)
{
    const Message message(dbus_message_new_method_call(service, path, interface, method));
    return Message(dbus_connection_send_with_reply_and_block(
        &connection, message.get(), DBUS_TIMEOUT_USE_DEFAULT, error.get()));
}

Message greet(DBusConnection &connection, BusError &error)
{
    return call(connection, DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS, "Hello", error);
}

/// What is wrong with the bus; null if it answers.
QString problemOfBus(const QByteArray &address)
{
    BusError error;
    const Connection connection = openBus(address, error);
    return connection && greet(*connection, error) ? QString() : error.text();
}

/// Where the bus of assistive programs is; absent if the session has none, and empty if whoever
/// should know does not.
std::optional<QByteArray> accessibilityBusAddress(DBusConnection &session)
{
    constexpr auto kService = "org.a11y.Bus";
    BusError error;
    if (!dbus_bus_name_has_owner(&session, kService, error.get()))
        return std::nullopt;
    const Message answer
        = call(session, kService, "/org/a11y/bus", kService, "GetAddress", error);
    const char *address = nullptr;
    if (answer)
        dbus_message_get_args(answer.get(), error.get(), DBUS_TYPE_STRING, &address,
                              DBUS_TYPE_INVALID);
    return QByteArray(address);
}

/// Whether all that Qt waits for answers, or there is nothing to wait for.
bool isAccessibilityBusWell(const QByteArray &sessionAddress)
{
    BusError error;
    const Connection session = openBus(sessionAddress, error);
    if (!session || !greet(*session, error))
        return true;
    const auto address = accessibilityBusAddress(*session);
    if (!address)
        return true;
    const Connection bus = openBus(*address, error);
    if (!bus || !greet(*bus, error))
        return false;
    constexpr auto kRegistry = "org.a11y.atspi.Registry";
    // One that is yet to be started is started for Qt, and may take its time.
    return !dbus_bus_name_has_owner(bus.get(), kRegistry, error.get())
        || call(*bus, kRegistry, "/org/a11y/atspi/accessible/root", DBUS_INTERFACE_PEER, "Ping",
                error);
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
    qputenv(kAddressVariable, kNoBus);
}

void leaveBrokenAccessibilityBus()
{
    const QByteArray address = sessionBusAddress();
    if (address.isEmpty() || qEnvironmentVariableIsSet(kAccessibilityAddressVariable))
        return;
    const bool answers = BoundedCalls(kAccessibilityPatience)
                             .run<bool>([address] { return isAccessibilityBusWell(address); })
                             .value_or(false);
    if (answers)
        return;
    printLine(u"The accessibility bus does not answer: screen readers are not served"_s);
    qputenv(kAccessibilityAddressVariable, kNoBus);
}

void forgetAccessibilityBusChoice()
{
    if (qgetenv(kAccessibilityAddressVariable) != kNoBus)
        return;
    // Qt looks at it when it is first asked, and not again.
    (void)QAccessible::isActive();
    qunsetenv(kAccessibilityAddressVariable);
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
