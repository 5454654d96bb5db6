#pragma once

#include "foundation/Timestamp.h"

#include <QHash>
#include <QUuid>

#include <functional>
#include <memory>

class Clock;
class ScheduledWork;
class Scheduler;

/// Rows on courses of their own, all of them drawn in the same frames. Main thread.
///
/// There is a frame only while a row is under way.
class RowCourses
{
public:
    struct Course
    {
        double (*positionAfter)(std::chrono::duration<double> time); ///< From 0; 1 at the end.
        std::chrono::milliseconds duration;
    };

    using Step = std::function<bool(const QUuid &id)>;

    /// Scheduler and clock must outlive the courses. \a onStep is called for each row that is to be
    /// drawn at another position; its false ends the course. It may start and finish rows.
    RowCourses(Scheduler &scheduler, const Clock &clock, Step onStep);
    ~RowCourses();

    /// Sends the row of an entry off, from the beginning even if it is under way.
    void start(const QUuid &id, const Course &course);

    /// Brings the row of an entry, or all rows, to the end at once. What was under way is drawn once
    /// more.
    void finish(const QUuid &id);
    void finishAll();

    /// What is drawn in this frame; 1 for a row that is not under way.
    double position(const QUuid &id) const;

private:
    struct Way
    {
        Course course;
        Timestamp start;
        double position;
    };

    void step();
    bool advance(const QUuid &id, Timestamp now);
    void scheduleStep();

    Scheduler &m_scheduler;
    const Clock &m_clock;
    Step m_onStep;
    QHash<QUuid, Way> m_ways;
    std::unique_ptr<ScheduledWork> m_nextStep;
};
