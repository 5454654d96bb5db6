#include "window/StarPop.h"

#include "appearance/Spring.h"

namespace {

constexpr Spring kSpring{.mass = 1, .stiffness = 260, .damping = 20};
constexpr double kStartScale = 0.95;

double swing(std::chrono::duration<double> time)
{
    return kSpring.positionAfter(time);
}

} // namespace

void StarPop::setMotionReduced(bool isReduced)
{
    m_isMotionReduced = isReduced;
    if (isReduced)
        finishAll();
}

void StarPop::start(const QUuid &id)
{
    static const RowCourses::Course pop{swing, kSpring.settlingDuration()};
    if (!m_isMotionReduced)
        m_courses.start(id, pop);
}

double StarPop::scale(const QUuid &id) const
{
    return kStartScale + (1 - kStartScale) * m_courses.position(id);
}
