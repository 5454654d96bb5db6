#include "appearance/Spring.h"

#include <cmath>

namespace {

constexpr double kUnseen = 0.001;

struct Swing
{
    explicit Swing(const Spring &spring)
        : decay(spring.damping / (2 * spring.mass))
        , frequency(std::sqrt(spring.stiffness / spring.mass - decay * decay))
    {
    }

    double decay;
    double frequency;
};

} // namespace

double Spring::positionAfter(std::chrono::duration<double> time) const
{
    const Swing swing(*this);
    const double angle = swing.frequency * time.count();
    return 1
        - std::exp(-swing.decay * time.count())
        * (std::cos(angle) + swing.decay / swing.frequency * std::sin(angle));
}

std::chrono::milliseconds Spring::settlingDuration() const
{
    const Swing swing(*this);
    const double reach = std::hypot(1, swing.decay / swing.frequency);
    const std::chrono::duration<double> duration(std::log(reach / kUnseen) / swing.decay);
    return std::chrono::ceil<std::chrono::milliseconds>(duration);
}
