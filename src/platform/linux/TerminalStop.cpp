#include "platform/linux/TerminalStop.h"

#include <csignal>
#include <utility>

TerminalStop::TerminalStop(std::function<void()> onStopping, std::function<void()> onContinued)
    : m_onStopping(std::move(onStopping))
    , m_onContinued(std::move(onContinued))
    , m_notifier({SIGTSTP}, SignalNotifier::Afterwards::AsUsual, [this] { stop(); })
{
}

void TerminalStop::stop()
{
    m_onStopping();
    m_notifier.setIgnorant(true);
    std::raise(SIGTSTP); // Returns when the process has been continued.
    m_notifier.setIgnorant(false);
    m_onContinued();
}
