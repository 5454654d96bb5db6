#include "platform/linux/BusProbe.h"

#include <dbus/dbus.h>

namespace {

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

using Message = std::unique_ptr<DBusMessage, DropMessage>;

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

constexpr BusProbe::Method kGreeting{DBUS_SERVICE_DBUS, DBUS_PATH_DBUS, DBUS_INTERFACE_DBUS,
                                     "Hello"};

} // namespace

struct BusProbe::Impl
{
    Message call(const Method &method, BusError &error) const
    {
        const Message message(dbus_message_new_method_call(method.service, method.path,
                                                           method.interface, method.name));
        return Message(dbus_connection_send_with_reply_and_block(
            connection.get(), message.get(), DBUS_TIMEOUT_USE_DEFAULT, error.get()));
    }

    std::unique_ptr<DBusConnection, CloseConnection> connection;
    BusError firstError; ///< Of connecting and greeting.
};

BusProbe::BusProbe(const QByteArray &address)
    : m_impl(std::make_unique<Impl>())
{
    BusError &error = m_impl->firstError;
    m_impl->connection.reset(dbus_connection_open_private(address.constData(), error.get()));
    if (!m_impl->connection)
        return;
    dbus_connection_set_exit_on_disconnect(m_impl->connection.get(), FALSE);
    m_isWell = bool(m_impl->call(kGreeting, error));
}

BusProbe::~BusProbe() = default;

QString BusProbe::problem() const
{
    return m_isWell ? QString() : m_impl->firstError.text();
}

bool BusProbe::hasService(const char *service)
{
    BusError error;
    return dbus_bus_name_has_owner(m_impl->connection.get(), service, error.get());
}

bool BusProbe::answers(const Method &method)
{
    BusError error;
    return bool(m_impl->call(method, error));
}

QByteArray BusProbe::text(const Method &method)
{
    BusError error;
    const Message answer = m_impl->call(method, error);
    const char *text = nullptr;
    if (answer)
        dbus_message_get_args(answer.get(), error.get(), DBUS_TYPE_STRING, &text,
                              DBUS_TYPE_INVALID);
    return QByteArray(text);
}
