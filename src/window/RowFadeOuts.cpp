#include "window/RowFadeOuts.h"

#include "appearance/Easing.h"

#include <QList>

#include <utility>

RowFadeOuts::RowFadeOuts(Scheduler &scheduler, const Clock &clock, std::function<void()> onStep)
    : m_scheduler(scheduler)
    , m_clock(clock)
    , m_onStep(std::move(onStep))
{
}

RowFadeOuts::~RowFadeOuts() = default;

void RowFadeOuts::start(const QUuid &id, std::chrono::milliseconds duration,
                        std::function<void()> done)
{
    Fade &fade = m_fades.try_emplace(id, m_scheduler, m_clock).first->second;
    fade.animation.start(
        {.from = fade.opacity, .to = 0, .duration = duration, .easing = easeInOut},
        [this, &fade](double opacity) {
            fade.opacity = opacity;
            m_onStep();
        },
        [this, id, done = std::move(done)] {
            done(); // The row must not be seen again before it is removed.
            m_fades.erase(id);
            m_onStep();
        });
}

void RowFadeOuts::finishAll()
{
    // Each removes itself at its end, and what is done then may begin or end others.
    QList<QUuid> ids;
    for (const auto &[id, fade] : m_fades)
        ids.append(id);
    for (const QUuid &id : std::as_const(ids)) {
        const auto fade = m_fades.find(id);
        if (fade != m_fades.end())
            fade->second.animation.finish();
    }
}

double RowFadeOuts::opacity(const QUuid &id) const
{
    const auto fade = m_fades.find(id);
    return fade == m_fades.end() ? 1 : fade->second.opacity;
}
