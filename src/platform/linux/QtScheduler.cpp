#include "platform/linux/QtScheduler.h"

#include <QTimer>

namespace {

class TimerWork : public ScheduledWork
{
public:
    TimerWork(std::chrono::milliseconds interval, bool isSingleShot, Scheduler::Work work)
    {
        m_timer.setSingleShot(isSingleShot);
        m_timer.setTimerType(isSingleShot ? Qt::PreciseTimer : Qt::CoarseTimer);
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, std::move(work));
        m_timer.start(interval);
    }

private:
    QTimer m_timer;
};

} // namespace

std::unique_ptr<ScheduledWork> QtScheduler::after(std::chrono::milliseconds delay, Work work)
{
    return std::make_unique<TimerWork>(delay, true, std::move(work));
}

std::unique_ptr<ScheduledWork> QtScheduler::every(std::chrono::milliseconds period, Work work)
{
    return std::make_unique<TimerWork>(period, false, std::move(work));
}

void QtScheduler::runAfter(std::chrono::milliseconds delay, Work work)
{
    QTimer::singleShot(delay, Qt::PreciseTimer, &m_context, std::move(work));
}
