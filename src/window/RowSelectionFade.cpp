#include "window/RowSelectionFade.h"

#include "appearance/Easing.h"
#include "appearance/Spring.h"
#include "platform/Clock.h"
#include "window/ClipboardTableView.h"

#include <QItemSelection>

#include <algorithm>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr Spring kSpring{.mass = 1.2, .stiffness = 280, .damping = 18};
constexpr double kHalfAStep = 0.5 / 255; ///< Of what is painted.
/// Held keys repeat in less, and fingers take longer.
constexpr auto kSlowestRepeat = 100ms;

/// Beyond its place there is nothing more to be seen.
double swing(std::chrono::duration<double> time)
{
    return std::clamp(kSpring.positionAfter(time), 0.0, 1.0);
}

double shortFade(std::chrono::duration<double> time)
{
    return time / kReducedFade;
}

const RowCourses::Course &course(bool isMotionReduced)
{
    static const RowCourses::Course spring{swing, kSpring.settlingDuration(kHalfAStep)};
    static const RowCourses::Course reduced{shortFade, kReducedFade};
    return isMotionReduced ? reduced : spring;
}

} // namespace

RowSelectionFade::RowSelectionFade(ClipboardTableView &view, Scheduler &scheduler,
                                   const Clock &clock)
    : m_view(view)
    , m_clock(clock)
    , m_courses(scheduler, clock, [&view](const QUuid &id) { return view.updateRow(id); })
{
}

void RowSelectionFade::setMotionReduced(bool isReduced)
{
    m_isMotionReduced = isReduced;
    if (isReduced)
        finishAll();
}

void RowSelectionFade::follow(const QItemSelection &selected, const QItemSelection &deselected)
{
    if (isUnderAHeldKey()) {
        finishAll();
        return;
    }
    fade(selected);
    fade(deselected);
}

double RowSelectionFade::opacity(const QUuid &id, bool isSelected) const
{
    const double position = m_courses.position(id);
    return isSelected ? position : 1 - position;
}

/// Whether the selection changes so soon after the last time.
bool RowSelectionFade::isUnderAHeldKey()
{
    const Timestamp now = m_clock.now();
    const auto last = std::exchange(m_lastChange, now);
    // The clock may be set back meanwhile.
    return last && now >= *last && now - *last < kSlowestRepeat;
}

void RowSelectionFade::fade(const QItemSelection &changed)
{
    for (const QModelIndex &index : changed.indexes()) {
        if (index.model() != m_view.model())
            continue;
        const QUuid id = m_view.items().at(index.row())->id;
        // Of what comes in sight later nobody is to see how it was.
        if (m_view.updateRow(id))
            m_courses.start(id, course(m_isMotionReduced));
        else
            finish(id);
    }
}
