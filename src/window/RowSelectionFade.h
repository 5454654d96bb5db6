#pragma once

#include "window/RowCourses.h"

#include <utility>

/// Brings the ground of a row in when it is selected, and out when it is deselected. Each change
/// sets out from the opposite, however far an earlier one has come.
class RowSelectionFade
{
public:
    /// As RowCourses has them.
    RowSelectionFade(Scheduler &scheduler, const Clock &clock, RowCourses::Step onStep)
        : m_courses(scheduler, clock, std::move(onStep))
    {
    }

    /// Without a swing and short, from the next start() on.
    void setMotionReduced(bool isReduced) { m_isMotionReduced = isReduced; }

    void start(const QUuid &id);
    void finish(const QUuid &id) { m_courses.finish(id); }
    void finishAll() { m_courses.finishAll(); }

    /// How much of the ground is seen of a row that is selected by now, or is not.
    double opacity(const QUuid &id, bool isSelected) const;

private:
    RowCourses m_courses;
    bool m_isMotionReduced = false;
};
