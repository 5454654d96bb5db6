#include "platform/linux/TerminationSignals.h"

#include <csignal>
#include <utility>

// With its end the end of the program has begun, and a second signal must not cut that off.
TerminationSignals::TerminationSignals(std::function<void()> onTerminate)
    : m_notifier({SIGTERM, SIGINT, SIGHUP}, SignalNotifier::Afterwards::Nothing,
                 std::move(onTerminate))
{
}
