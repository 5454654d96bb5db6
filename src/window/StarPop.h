#pragma once

#include "window/RowCourses.h"

#include <utility>

/// Lets the star of a row, and the circle around it, spring to their size when they are clicked.
class StarPop
{
public:
    /// As RowCourses has them.
    StarPop(Scheduler &scheduler, const Clock &clock, RowCourses::Step onStep)
        : m_courses(scheduler, clock, std::move(onStep))
    {
    }

    /// Not at all, from the next start() on.
    void setMotionReduced(bool isReduced) { m_isMotionReduced = isReduced; }

    void start(const QUuid &id);
    void finishAll() { m_courses.finishAll(); }

    double scale(const QUuid &id) const;

private:
    RowCourses m_courses;
    bool m_isMotionReduced = false;
};
