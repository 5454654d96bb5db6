#include "platform/linux/SignalNotifier.h"

#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <utility>

#include <sys/eventfd.h>
#include <unistd.h>

namespace {

/// By signal. A signal handler may touch little more than numbers like these.
std::array<volatile std::sig_atomic_t, NSIG> eventDescriptors;

void notifyEventLoop(int signal)
{
    const quint64 one = 1;
    [[maybe_unused]] const auto written
        = ::write(eventDescriptors[size_t(signal)], &one, sizeof one);
}

} // namespace

SignalNotifier::SignalNotifier(std::vector<int> numbers, Afterwards afterwards,
                               std::function<void()> onSignal)
    : m_signals(std::move(numbers))
    , m_afterwards(afterwards)
    , m_onSignal(std::move(onSignal))
    , m_descriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    , m_notifier(new QSocketNotifier(m_descriptor, QSocketNotifier::Read, this))
{
    connect(m_notifier, &QSocketNotifier::activated, this, &SignalNotifier::handle);
    for (const int signal : m_signals)
        eventDescriptors[size_t(signal)] = m_descriptor;
    setHandler(notifyEventLoop);
}

SignalNotifier::~SignalNotifier()
{
    setHandler(m_afterwards == Afterwards::Nothing ? SIG_IGN : SIG_DFL);
    m_notifier->setEnabled(false);
    ::close(m_descriptor);
}

void SignalNotifier::setIgnorant(bool isIgnorant)
{
    setHandler(isIgnorant ? SIG_DFL : notifyEventLoop);
}

void SignalNotifier::setHandler(void (*handler)(int))
{
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int signal : m_signals)
        sigaction(signal, &action, nullptr);
}

void SignalNotifier::handle()
{
    quint64 count = 0;
    [[maybe_unused]] const auto bytesRead = ::read(m_descriptor, &count, sizeof count);
    m_onSignal();
}
