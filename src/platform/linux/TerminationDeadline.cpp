#include "platform/linux/TerminationDeadline.h"

#include "foundation/Log.h"

#include <condition_variable>
#include <cstdlib>
#include <mutex>

using namespace Qt::StringLiterals;

void TerminationDeadline::start()
{
    m_thread = std::jthread([patience = m_patience](const std::stop_token &stop) {
        std::mutex mutex; // Guards nothing; waiting needs one.
        std::condition_variable_any wakeUp;
        std::unique_lock lock(mutex);
        wakeUp.wait_for(lock, stop, patience, [] { return false; });
        if (stop.stop_requested())
            return;
        printLine(u"The end takes too long; what is not on disk by now is lost"_s);
        // Nothing is cleaned up, since that is what hangs.
        std::_Exit(EXIT_FAILURE);
    });
}
