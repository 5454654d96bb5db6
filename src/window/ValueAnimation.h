#pragma once

#include "foundation/Timestamp.h"

#include <functional>
#include <memory>

class Clock;
class ScheduledWork;
class Scheduler;

/// Brings a value from one place to another over a time, a step each frame. Main thread.
class ValueAnimation
{
public:
    using Easing = double (*)(double progress);

    struct Course
    {
        double from = 0;
        double to = 1;
        std::chrono::milliseconds duration;
        Easing easing;
    };

    static constexpr std::chrono::milliseconds kFrame{16};

    /// Both must outlive the animation.
    ValueAnimation(Scheduler &scheduler, const Clock &clock);
    ~ValueAnimation();

    /// \a onStep gets the value of the first frame at once, of every frame that follows, and last
    /// of all the end of the course; then \a onFinished is called. What ran before is dropped.
    void start(const Course &course, std::function<void(double)> onStep,
               std::function<void()> onFinished);

    /// Leaves the value where it stands; nothing is called any more.
    void stop();

    /// Brings the value to the end of the course at once, if it is under way. The animation may be
    /// gone by the return: its owner may go at the end of the course.
    void finish();

private:
    void step();

    Scheduler &m_scheduler;
    const Clock &m_clock;
    Course m_course;
    Timestamp m_start;
    std::function<void(double)> m_onStep;
    std::function<void()> m_onFinished;
    std::unique_ptr<ScheduledWork> m_nextStep;
    std::unique_ptr<ScheduledWork> m_end;
};
