#include "window/RowCourses.h"

#include "platform/Clock.h"
#include "platform/Scheduler.h"
#include "window/ValueAnimation.h"

#include <cmath>
#include <utility>

namespace {

/// What is painted has no finer steps.
bool isSeenToDiffer(double position, double other)
{
    constexpr double kSteps = 255;
    return std::lround(position * kSteps) != std::lround(other * kSteps);
}

} // namespace

RowCourses::RowCourses(Scheduler &scheduler, const Clock &clock, Step onStep)
    : m_scheduler(scheduler)
    , m_clock(clock)
    , m_onStep(std::move(onStep))
{
}

RowCourses::~RowCourses() = default;

void RowCourses::start(const QUuid &id, const Course &course)
{
    // What is drawn now is on the screen a frame later.
    const auto start = m_clock.now() - ValueAnimation::kFrame;
    m_ways.insert(id, {course, start, course.positionAfter(ValueAnimation::kFrame)});
    if (!m_nextStep)
        scheduleStep();
}

void RowCourses::finish(const QUuid &id)
{
    if (m_ways.remove(id))
        m_onStep(id);
}

void RowCourses::finishAll()
{
    m_nextStep.reset();
    const QHash<QUuid, Way> ways = std::exchange(m_ways, {});
    for (auto way = ways.keyBegin(); way != ways.keyEnd(); ++way)
        m_onStep(*way);
}

double RowCourses::position(const QUuid &id) const
{
    const auto way = m_ways.constFind(id);
    return way == m_ways.cend() ? 1 : way->position;
}

void RowCourses::step()
{
    const Timestamp now = m_clock.now();
    for (const QUuid &id : m_ways.keys()) {
        Way &way = m_ways[id];
        const std::chrono::duration<double> elapsed = now - way.start;
        // The clock may be set back while we run.
        const bool isOver = elapsed.count() < 0 || elapsed >= way.course.duration;
        const double before = way.position;
        way.position = isOver ? 1 : way.course.positionAfter(elapsed);
        // The last step is drawn even so: roundings may leave a row a shade away from rest.
        const bool isToBeDrawn = isOver || isSeenToDiffer(before, way.position);
        const bool isWanted = !isToBeDrawn || m_onStep(id);
        if (isOver || !isWanted)
            m_ways.remove(id);
    }
    m_nextStep.reset();
    if (!m_ways.isEmpty())
        scheduleStep();
}

void RowCourses::scheduleStep()
{
    m_nextStep = m_scheduler.after(ValueAnimation::kFrame, [this] { step(); });
}
