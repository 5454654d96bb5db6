#include "platform/linux/TerminationSignals.h"

#include <QSocketNotifier>

#include <array>
#include <csignal>

#include <sys/eventfd.h>
#include <unistd.h>

namespace {

constexpr std::array kSignals{SIGTERM, SIGINT, SIGHUP};

/// A signal handler may touch little more than a number like this.
volatile std::sig_atomic_t signalEventDescriptor = -1;

void notifyEventLoop(int)
{
    const quint64 one = 1;
    [[maybe_unused]] const auto written = ::write(signalEventDescriptor, &one, sizeof one);
}

void setHandler(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int signal : kSignals)
        sigaction(signal, &action, nullptr);
}

} // namespace

TerminationSignals::TerminationSignals(std::function<void()> onTerminate)
    : m_onTerminate(std::move(onTerminate))
{
    signalEventDescriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    m_notifier = new QSocketNotifier(signalEventDescriptor, QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &TerminationSignals::handle);
    setHandler(notifyEventLoop);
}

TerminationSignals::~TerminationSignals()
{
    // The end has begun, and a second signal must not cut it off.
    setHandler(SIG_IGN);
    m_notifier->setEnabled(false);
    ::close(signalEventDescriptor);
    signalEventDescriptor = -1;
}

void TerminationSignals::handle()
{
    quint64 count = 0;
    [[maybe_unused]] const auto bytesRead = ::read(signalEventDescriptor, &count, sizeof count);
    m_onTerminate();
}
