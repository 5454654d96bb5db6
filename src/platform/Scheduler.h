#pragma once

#include <chrono>
#include <functional>
#include <memory>

/// Work that a scheduler has still to do; ending the object cancels what has not run yet.
class ScheduledWork
{
public:
    virtual ~ScheduledWork() = default;
};

/// Runs work later on the main thread. Main thread only.
///
/// Work that falls due at the same moment runs in the order in which it was scheduled. Work with a
/// delay of zero runs on the next turn of the event loop, never inside the call.
class Scheduler
{
public:
    using Work = std::function<void()>;

    virtual ~Scheduler() = default;

    /// Once, after \a delay.
    [[nodiscard]] virtual std::unique_ptr<ScheduledWork> after(std::chrono::milliseconds delay,
                                                               Work work)
        = 0;

    /// Again and again, the first time after one \a period. The period may stretch by some
    /// milliseconds so that the processor wakes less often.
    [[nodiscard]] virtual std::unique_ptr<ScheduledWork> every(std::chrono::milliseconds period,
                                                               Work work)
        = 0;

    /// Once, after \a delay, and not to be cancelled: the work must look for itself whether what
    /// it needs is still there.
    virtual void runAfter(std::chrono::milliseconds delay, Work work) = 0;
};
