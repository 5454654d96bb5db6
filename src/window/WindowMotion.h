#pragma once

#include "window/PresentationLayer.h"
#include "window/ValueAnimation.h"

#include <functional>

/// How a window comes and goes: what is seen of it changes for a moment, while the window itself is
/// there from the first frame and as it is going to be. Each motion takes over from the one before.
class WindowMotion
{
public:
    enum class Kind { FadeAndScale, Fade };
    enum class Start { Unseen, WhereItStands };

    /// All of these must outlive the motion.
    WindowMotion(PresentationLayer &layer, Kind kind, Scheduler &scheduler, const Clock &clock);

    /// A motion that is overtaken does not call \a onFinished.
    void enter(Start start, std::function<void()> onFinished);
    void leave(std::function<void()> onFinished);

    /// Ends what is going on and shows the window as it is.
    void settle();

    /// Brings what is going on to its end at once, as for whoever wants no motion any more, and calls
    /// its onFinished, after which the motion may be gone. Nothing if nothing is going on.
    void finish() { m_animation.finish(); }

private:
    using Seconds = std::chrono::duration<double>;
    using Frames = std::function<Presentation(Seconds elapsed)>;

    void run(std::chrono::milliseconds duration, Frames frameAfter,
             std::function<void()> onFinished);
    qreal scaleOrNone(qreal scale) const;

    PresentationLayer &m_layer;
    Kind m_kind;
    ValueAnimation m_animation;
};
