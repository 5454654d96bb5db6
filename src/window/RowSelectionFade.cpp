#include "window/RowSelectionFade.h"

#include "appearance/Easing.h"
#include "appearance/Spring.h"
#include "platform/Clock.h"

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

void RowSelectionFade::setMotionReduced(bool isReduced)
{
    m_isMotionReduced = isReduced;
    if (isReduced)
        finishAll();
}

bool RowSelectionFade::noteChange()
{
    const Timestamp now = m_clock.now();
    const auto last = std::exchange(m_lastChange, now);
    // The clock may be set back meanwhile.
    return !last || now < *last || now - *last >= kSlowestRepeat;
}

void RowSelectionFade::start(const QUuid &id)
{
    m_courses.start(id, course(m_isMotionReduced));
}

double RowSelectionFade::opacity(const QUuid &id, bool isSelected) const
{
    const double position = m_courses.position(id);
    return isSelected ? position : 1 - position;
}
