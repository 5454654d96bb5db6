#pragma once

#include "window/RowCourses.h"

#include <optional>
#include <utility>

/// Brings the ground of a row in when it is selected, and out when it is deselected. Each change
/// sets out from the opposite, however far an earlier one has come. Under a held key, though, nothing
/// fades: the row that a person is at would never be the one that is seen.
class RowSelectionFade
{
public:
    /// As RowCourses has them.
    RowSelectionFade(Scheduler &scheduler, const Clock &clock, RowCourses::Step onStep)
        : m_clock(clock)
        , m_courses(scheduler, clock, std::move(onStep))
    {
    }

    /// Without a swing and short, from the next start() on. What is under way then ends at once.
    void setMotionReduced(bool isReduced);

    /// Takes note of a change of the selection. False if it follows on the last one so soon that
    /// neither is to fade.
    bool noteChange();

    void start(const QUuid &id);
    void finish(const QUuid &id) { m_courses.finish(id); }
    void finishAll() { m_courses.finishAll(); }

    /// How much of the ground is seen of a row that is selected by now, or is not.
    double opacity(const QUuid &id, bool isSelected) const;

private:
    const Clock &m_clock;
    RowCourses m_courses;
    std::optional<Timestamp> m_lastChange;
    bool m_isMotionReduced = false;
};
