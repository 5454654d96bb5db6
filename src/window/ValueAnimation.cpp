#include "window/ValueAnimation.h"

#include "platform/Clock.h"
#include "platform/Scheduler.h"

#include <algorithm>

ValueAnimation::ValueAnimation(Scheduler &scheduler, const Clock &clock)
    : m_scheduler(scheduler)
    , m_clock(clock)
{
}

ValueAnimation::~ValueAnimation() = default;

void ValueAnimation::start(const Course &course, std::function<void(double)> onStep,
                           std::function<void()> onFinished)
{
    m_course = course;
    m_onStep = std::move(onStep);
    m_onFinished = std::move(onFinished);
    // What is drawn now is on the screen a frame later; it shows the course as it is then.
    m_start = m_clock.now() - kFrame;
    m_end = m_scheduler.after(course.duration, [this] { finish(); });
    step();
}

void ValueAnimation::stop()
{
    m_nextStep.reset();
    m_end.reset();
}

void ValueAnimation::finish()
{
    if (!m_end)
        return;
    stop();
    m_onStep(m_course.to);
    // The callback may start the next course.
    const std::function<void()> onFinished = m_onFinished;
    onFinished();
}

void ValueAnimation::step()
{
    const std::chrono::duration<double> elapsed = m_clock.now() - m_start;
    const std::chrono::duration<double> duration = m_course.duration;
    // The clock may be set while we run.
    const double progress = std::clamp(elapsed / duration, 0.0, 1.0);
    m_onStep(m_course.from + (m_course.to - m_course.from) * m_course.easing(progress));
    m_nextStep = m_scheduler.after(kFrame, [this] { step(); });
}
