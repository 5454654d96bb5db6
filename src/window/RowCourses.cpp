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
    if (m_ways.isEmpty())
        m_nextStep.reset();
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
    m_nextStep.reset();
    const Timestamp now = m_clock.now();
    for (const QUuid &id : m_ways.keys()) {
        if (advance(id, now) && !m_onStep(id))
            m_ways.remove(id);
    }
    if (!m_ways.isEmpty() && !m_nextStep)
        scheduleStep();
}

/// Whether the row is to be drawn for that. One that has come to its end is under way no more.
bool RowCourses::advance(const QUuid &id, Timestamp now)
{
    const auto way = m_ways.find(id);
    if (way == m_ways.end())
        return false; // The step of another row has finished it.
    const std::chrono::duration<double> elapsed = now - way->start;
    // The clock may be set back while we run.
    if (elapsed.count() < 0 || elapsed >= way->course.duration) {
        m_ways.erase(way);
        return true; // Roundings may have left it a shade away from rest.
    }
    const double before = std::exchange(way->position, way->course.positionAfter(elapsed));
    return isSeenToDiffer(before, way->position);
}

void RowCourses::scheduleStep()
{
    m_nextStep = m_scheduler.after(ValueAnimation::kFrame, [this] { step(); });
}
