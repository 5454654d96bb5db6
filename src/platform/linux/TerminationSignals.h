#pragma once

#include "platform/linux/SignalNotifier.h"

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the main thread, so that a session that ends
/// does not cut the program off in the middle. Once the object has ended, they are ignored until
/// the process ends. One object in the process.
class TerminationSignals
{
public:
    explicit TerminationSignals(std::function<void()> onTerminate);

private:
    SignalNotifier m_notifier;
};
