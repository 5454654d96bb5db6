#include "window/WindowMotion.h"

#include "appearance/Easing.h"
#include "appearance/Spring.h"

#include <algorithm>
#include <cmath>

using namespace std::chrono_literals;

namespace {

constexpr qreal kEntranceScale = 0.975;
constexpr Spring kEntranceSpring{.mass = 0.8, .stiffness = 560, .damping = 40};
constexpr auto kShortestEntrance = 200ms;
constexpr auto kLongestEntrance = 280ms;
constexpr qreal kExitScale = 0.988;
constexpr auto kShrinkDuration = 150ms;
constexpr auto kFadeDuration = 160ms;

double share(std::chrono::duration<double> elapsed, std::chrono::duration<double> duration)
{
    return std::min(elapsed / duration, 1.0);
}

} // namespace

WindowMotion::WindowMotion(PresentationLayer &layer, Kind kind, Scheduler &scheduler,
                           const Clock &clock)
    : m_layer(layer)
    , m_kind(kind)
    , m_animation(scheduler, clock)
{
}

void WindowMotion::enter(Start start, std::function<void()> onFinished)
{
    const Presentation from = start == Start::WhereItStands
        ? m_layer.presentation()
        : Presentation{.opacity = 0, .scale = scaleOrNone(kEntranceScale)};
    const auto springDuration
        = std::clamp(kEntranceSpring.settlingDuration(), kShortestEntrance, kLongestEntrance);
    const auto frameAfter = [from, springDuration](Seconds elapsed) {
        const double fading = easeOut(share(elapsed, kFadeDuration));
        // The spring is cut short; what it still had to go is not to be seen.
        const double growing
            = elapsed < springDuration ? kEntranceSpring.positionAfter(elapsed) : 1;
        return Presentation{.opacity = std::lerp(from.opacity, 1.0, fading),
                            .scale = std::lerp(from.scale, 1.0, growing)};
    };
    run(std::max(springDuration, kFadeDuration), frameAfter, std::move(onFinished));
}

void WindowMotion::leave(std::function<void()> onFinished)
{
    const auto frameAfter = [from = m_layer.presentation(),
                             scale = scaleOrNone(kExitScale)](Seconds elapsed) {
        const double fading = easeIn(share(elapsed, kFadeDuration));
        const double shrinking = easeIn(share(elapsed, kShrinkDuration));
        return Presentation{.opacity = std::lerp(from.opacity, 0.0, fading),
                            .scale = std::lerp(from.scale, scale, shrinking)};
    };
    run(std::max(kShrinkDuration, kFadeDuration), frameAfter, std::move(onFinished));
}

void WindowMotion::settle()
{
    m_animation.stop();
    m_layer.setPresentation({});
}

void WindowMotion::run(std::chrono::milliseconds duration, Frames frameAfter,
                       std::function<void()> onFinished)
{
    const ValueAnimation::Course course{.from = 0,
                                        .to = Seconds(duration).count(),
                                        .duration = duration,
                                        .easing = steady};
    m_animation.start(
        course,
        [this, frameAfter = std::move(frameAfter)](double elapsed) {
            m_layer.setPresentation(frameAfter(Seconds(elapsed)));
        },
        std::move(onFinished));
}

qreal WindowMotion::scaleOrNone(qreal scale) const
{
    return m_kind == Kind::FadeAndScale ? scale : 1;
}
