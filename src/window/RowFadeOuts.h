#pragma once

#include "window/ValueAnimation.h"

#include <QUuid>

#include <functional>
#include <map>

/// Rows that are to be removed from the list, each fading in its place before it is.
class RowFadeOuts
{
public:
    /// Scheduler and clock must outlive the object. \a onStep has the rows drawn again.
    RowFadeOuts(Scheduler &scheduler, const Clock &clock, std::function<void()> onStep);
    ~RowFadeOuts();

    /// Fades the row of an entry from what is seen of it, and then calls \a done; an earlier \a done
    /// of the same row is dropped. Never calls it once the object is gone.
    void start(const QUuid &id, std::chrono::milliseconds duration, std::function<void()> done);

    /// Ends all that are under way at once.
    void finishAll();

    /// How much is seen of the row of an entry; 1 if it does not fade.
    double opacity(const QUuid &id) const;

private:
    struct Fade
    {
        Fade(Scheduler &scheduler, const Clock &clock) : animation(scheduler, clock) {}

        double opacity = 1;
        ValueAnimation animation;
    };

    Scheduler &m_scheduler;
    const Clock &m_clock;
    std::function<void()> m_onStep;
    std::map<QUuid, Fade> m_fades;
};
