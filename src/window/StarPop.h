#pragma once

#include "window/RowCourses.h"

#include <utility>

/// Lets the star of a row, and the circle around it, spring to their size when they are clicked.
class StarPop
{
public:
    /// Scheduler and clock must outlive the object; \a onStep is that of RowCourses.
    StarPop(Scheduler &scheduler, const Clock &clock, RowCourses::Step onStep)
        : m_courses(scheduler, clock, std::move(onStep))
    {
    }

    /// Whether stars keep still, those that pop included.
    void setMotionReduced(bool isReduced);

    /// Lets the star of an entry pop from the beginning.
    void start(const QUuid &id);
    /// Shows every star in its own size.
    void finishAll() { m_courses.finishAll(); }

    /// How large the star of an entry is to be drawn now; 1 is its own size.
    double scale(const QUuid &id) const;

private:
    RowCourses m_courses;
    bool m_isMotionReduced = false;
};
