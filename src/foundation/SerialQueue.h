#pragma once

#include <QtGlobal>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

/// Runs queued work in order, one piece at a time, on a thread of its own.
///
/// The destructor runs everything that is queued, then joins the thread. Work that throws is
/// reported by one printed line; the queue goes on with the next piece.
class SerialQueue
{
public:
    using Work = std::function<void()>;

    explicit SerialQueue(std::string label);
    ~SerialQueue();
    SerialQueue(const SerialQueue &) = delete;
    SerialQueue &operator=(const SerialQueue &) = delete;

    /// Returns at once. Any thread.
    void enqueue(Work work);

    /// Waits until everything queued before the call has run. Not to be called from the queue.
    void drain();

    /// The same, but for a while only. False if something is still to be run.
    [[nodiscard]] bool drainFor(std::chrono::milliseconds patience);

private:
    void run();
    void runOne(const Work &work) const;

    std::string m_label;
    std::mutex m_mutex; ///< Guards the fields below.
    std::condition_variable m_workArrived;
    std::condition_variable m_workDone;
    std::deque<Work> m_pending;
    quint64 m_queuedCount = 0;
    quint64 m_finishedCount = 0;
    bool m_isEnding = false;
    std::thread m_thread;
};
