#include "foundation/SerialQueue.h"

#include "foundation/Log.h"
#include "foundation/ThreadName.h"

#include <exception>

using namespace Qt::StringLiterals;

SerialQueue::SerialQueue(std::string label)
    : m_label(std::move(label))
    , m_thread([this] { run(); })
{
}

SerialQueue::~SerialQueue()
{
    {
        const std::lock_guard lock(m_mutex);
        m_isEnding = true;
    }
    m_workArrived.notify_one();
    m_thread.join();
}

void SerialQueue::enqueue(Work work)
{
    {
        const std::lock_guard lock(m_mutex);
        m_pending.push_back(std::move(work));
        ++m_queuedCount;
    }
    m_workArrived.notify_one();
}

void SerialQueue::drain()
{
    std::unique_lock lock(m_mutex);
    const quint64 target = m_queuedCount;
    m_workDone.wait(lock, [this, target] { return m_finishedCount >= target; });
}

bool SerialQueue::drainFor(std::chrono::milliseconds patience)
{
    std::unique_lock lock(m_mutex);
    const quint64 target = m_queuedCount;
    return m_workDone.wait_for(lock, patience,
                               [this, target] { return m_finishedCount >= target; });
}

void SerialQueue::run()
{
    nameCurrentThread(m_label);
    std::unique_lock lock(m_mutex);
    while (true) {
        m_workArrived.wait(lock, [this] { return m_isEnding || !m_pending.empty(); });
        if (m_pending.empty())
            return;
        Work work = std::move(m_pending.front());
        m_pending.pop_front();
        lock.unlock();
        runOne(work);
        work = nullptr; // What the work holds ends before the queue says that it is done.
        lock.lock();
        ++m_finishedCount;
        m_workDone.notify_all();
    }
}

void SerialQueue::runOne(const Work &work) const
{
    try {
        work();
    } catch (const std::exception &error) {
        printLine(u"Work on queue %1 failed: %2"_s.arg(QString::fromStdString(m_label),
                                                      QString::fromUtf8(error.what())));
    }
}
