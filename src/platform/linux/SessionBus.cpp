#include "platform/linux/SessionBus.h"

#include "foundation/Log.h"
#include "platform/linux/BoundedCalls.h"
#include "platform/linux/BusProbe.h"

#include <QFile>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Nobody notices that at a start, and a bus that is well needs a hundredth of it.
constexpr auto kPatience = 500ms;

constexpr auto kAddressVariable = "DBUS_SESSION_BUS_ADDRESS";

} // namespace

QByteArray sessionBusAddress()
{
    const QByteArray address = qgetenv(kAddressVariable);
    const QByteArray runtimeFolder = qgetenv("XDG_RUNTIME_DIR");
    if (!address.isEmpty() || runtimeFolder.isEmpty())
        return address;
    const QByteArray path = runtimeFolder + "/bus";
    return QFile::exists(QFile::decodeName(path)) ? "unix:path=" + path : QByteArray();
}

void leaveBrokenSessionBus()
{
    const QByteArray address = sessionBusAddress();
    QString problem = u"there is none"_s;
    if (!address.isEmpty()) {
        problem = BoundedCalls(kPatience)
                      .run<QString>([address] { return BusProbe(address).problem(); })
                      .value_or(u"it does not answer"_s);
    }
    if (problem.isEmpty())
        return;
    printLine("No session bus: "_L1 + problem);
    qputenv(kAddressVariable, kNoBusAddress);
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
