#pragma once

#include "window/RowCourses.h"

#include <optional>

class ClipboardTableView;
class QItemSelection;

/// Brings the ground of a row in when it is selected, and out when it is deselected. Each change
/// sets out from the opposite, however far an earlier one has come. Under a held key, though, nothing
/// fades: the row that a person is at would never be the one that is seen.
class RowSelectionFade
{
public:
    /// All of them must outlive the fade.
    RowSelectionFade(ClipboardTableView &view, Scheduler &scheduler, const Clock &clock);

    /// Whether the ground comes and goes in a short time and without a swing, from the next change on.
    /// If so, what is under way ends at once.
    void setMotionReduced(bool isReduced);

    /// Follows a change of the selection, the rows of which are being drawn again.
    void follow(const QItemSelection &selected, const QItemSelection &deselected);

    /// Shows the row of an entry, or all rows, as they are: selected or not.
    void finish(const QUuid &id) { m_courses.finish(id); }
    void finishAll() { m_courses.finishAll(); }

    /// How much of the ground is seen of a row that is selected by now, or is not.
    double opacity(const QUuid &id, bool isSelected) const;

private:
    bool isUnderAHeldKey();
    void fade(const QItemSelection &changed);

    ClipboardTableView &m_view;
    const Clock &m_clock;
    RowCourses m_courses;
    std::optional<Timestamp> m_lastChange;
    bool m_isMotionReduced = false;
};
