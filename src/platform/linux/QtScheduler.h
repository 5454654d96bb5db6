#pragma once

#include "platform/Scheduler.h"

#include <QObject>

/// Schedules on the event loop of the thread that made it.
class QtScheduler : public Scheduler
{
public:
    std::unique_ptr<ScheduledWork> after(std::chrono::milliseconds delay, Work work) override;
    std::unique_ptr<ScheduledWork> every(std::chrono::milliseconds period, Work work) override;
    void runAfter(std::chrono::milliseconds delay, Work work) override;

private:
    QObject m_context; ///< Ends the detached work with the scheduler.
};
