#include "platform/linux/AccessibilityBus.h"

#include "foundation/Log.h"
#include "platform/linux/BoundedCalls.h"
#include "platform/linux/BusProbe.h"
#include "platform/linux/SessionBus.h"

#include <QAccessible>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Who needs it would rather wait than go without, should it be slow.
constexpr auto kPatience = 3s;

constexpr auto kAddressVariable = "AT_SPI_BUS_ADDRESS";

constexpr auto kBusService = "org.a11y.Bus";
constexpr BusProbe::Method kGetAddress{kBusService, "/org/a11y/bus", kBusService, "GetAddress"};
constexpr auto kRegistry = "org.a11y.atspi.Registry";
constexpr BusProbe::Method kPing{kRegistry, "/org/a11y/atspi/accessible/root",
                                 "org.freedesktop.DBus.Peer", "Ping"};

/// Whether all that Qt waits for answers, or there is nothing to wait for.
bool isAccessibilityBusWell(const QByteArray &sessionAddress)
{
    BusProbe session(sessionAddress);
    if (!session.isWell() || !session.hasService(kBusService))
        return true;
    BusProbe bus(session.text(kGetAddress));
    // A registry that is yet to be started is started for Qt, and may take its time.
    return bus.isWell() && (!bus.hasService(kRegistry) || bus.answers(kPing));
}

} // namespace

void leaveBrokenAccessibilityBus()
{
    const QByteArray address = sessionBusAddress();
    if (address.isEmpty() || qEnvironmentVariableIsSet(kAddressVariable))
        return;
    const bool answers = BoundedCalls(kPatience)
                             .run<bool>([address] { return isAccessibilityBusWell(address); })
                             .value_or(false);
    if (answers)
        return;
    printLine(u"The accessibility bus does not answer: screen readers are not served"_s);
    qputenv(kAddressVariable, kNoBusAddress);
}

void restoreAccessibilityBusVariable()
{
    if (qgetenv(kAddressVariable) != kNoBusAddress)
        return;
    // Qt looks at it when it is first asked, and not again.
    (void)QAccessible::isActive();
    qunsetenv(kAddressVariable);
}
