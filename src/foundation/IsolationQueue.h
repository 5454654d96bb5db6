#pragma once

#include "foundation/SerialQueue.h"

#include <shared_mutex>
#include <utility>

/// Guards a value: readers run in parallel, every change is a barrier block that runs alone.
///
/// Barrier blocks run in the order in which they were queued, on the queue's own thread. A read
/// runs on the caller's thread and sees every barrier block that was queued before it.
class IsolationQueue
{
public:
    explicit IsolationQueue(std::string label) : m_writer(std::move(label)) {}

    /// Queues \a change and returns at once. Any thread.
    void barrier(SerialQueue::Work change);

    /// Waits for the barrier blocks queued so far, runs \a reader, and returns its result. Any
    /// thread but the queue's own.
    template <typename Reader>
    auto read(Reader &&reader)
    {
        m_writer.drain();
        const std::shared_lock lock(m_mutex);
        return std::forward<Reader>(reader)();
    }

    /// Waits until every barrier block queued so far has run.
    void drain() { m_writer.drain(); }

private:
    std::shared_mutex m_mutex; ///< Guards whatever the blocks change and the readers read.
    SerialQueue m_writer;
};
