#pragma once

#include "platform/linux/SignalNotifier.h"

/// What a terminal does with its program on Ctrl+Z (SIGTSTP), so that what others would miss can be
/// given back before. SIGSTOP cannot be known. One object in the process.
class TerminalStop
{
public:
    /// Both are called on the main thread, with the time between in which nothing runs at all.
    TerminalStop(std::function<void()> onStopping, std::function<void()> onContinued);

private:
    void stop();

    std::function<void()> m_onStopping;
    std::function<void()> m_onContinued;
    SignalNotifier m_notifier;
};
