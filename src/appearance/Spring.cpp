#include "appearance/Spring.h"

#include <algorithm>
#include <cmath>

namespace {

using Seconds = std::chrono::duration<double>;

/// The way that is left of x'' + 2 decay x' + (decay² + square) x = 0, let go at 1.
class Swing
{
public:
    explicit Swing(const Spring &spring)
        : m_decay(spring.damping / (2 * spring.mass))
        , m_square(spring.stiffness / spring.mass - m_decay * m_decay)
        , m_frequency(std::sqrt(std::abs(m_square)))
    {
    }

    double wayLeft(double time) const
    {
        if (isCreeping())
            return creepingWayLeft(time);
        const double angle = m_frequency * time;
        // Where there is next to no swing, the quotient is what it tends to.
        const double sine = angle > kTiny ? std::sin(angle) / m_frequency : time;
        return std::exp(-m_decay * time) * (std::cos(angle) + m_decay * sine);
    }

    /// Never grows, and wayLeft() never goes beyond it, nor below its negative.
    double reach(double time) const
    {
        if (isCreeping())
            return creepingWayLeft(time);
        const double swinging
            = m_frequency > 0 ? std::hypot(1, m_decay / m_frequency) : 1 + m_decay * time;
        return std::exp(-m_decay * time) * std::min(swinging, 1 + m_decay * time);
    }

private:
    static constexpr double kTiny = 1e-6;

    bool isCreeping() const { return m_square < 0 && m_frequency > kTiny * m_decay; }

    double creepingWayLeft(double time) const
    {
        const double slow = m_decay - m_frequency;
        const double fast = m_decay + m_frequency;
        return (fast * std::exp(-slow * time) - slow * std::exp(-fast * time)) / (fast - slow);
    }

    double m_decay;
    double m_square; ///< Of the frequency; below zero there is no swing.
    double m_frequency;
};

} // namespace

double Spring::positionAfter(Seconds time) const
{
    return 1 - Swing(*this).wayLeft(time.count());
}

std::chrono::milliseconds Spring::settlingDuration(double distance) const
{
    using std::chrono::milliseconds;
    const Swing swing(*this);
    const auto isSettledAfter = [&](milliseconds time) {
        return swing.reach(Seconds(time).count()) <= distance;
    };
    milliseconds tooEarly{0};
    milliseconds lateEnough{1};
    while (!isSettledAfter(lateEnough)) {
        tooEarly = lateEnough;
        lateEnough *= 2;
    }
    while (lateEnough - tooEarly > milliseconds(1)) {
        const milliseconds middle = (tooEarly + lateEnough) / 2;
        (isSettledAfter(middle) ? lateEnough : tooEarly) = middle;
    }
    return lateEnough;
}
