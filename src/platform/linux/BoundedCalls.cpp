#include "platform/linux/BoundedCalls.h"

#include <system_error>
#include <thread>

BoundedCalls::BoundedCalls(std::chrono::milliseconds patience)
    : m_patience(patience)
    , m_pendingCount(std::make_shared<std::atomic<int>>(0))
{
}

bool BoundedCalls::startThread(std::function<void()> work) const
{
    if (m_pendingCount->fetch_add(1) < kMaxPending) {
        try {
            // Nobody can join a thread that hangs in the kernel; the end of the process ends it.
            std::thread(std::move(work)).detach();
            return true;
        } catch (const std::system_error &) {
            // Without a thread the call is not made.
        }
    }
    m_pendingCount->fetch_sub(1);
    return false;
}
