#include "window/OutsideWatch.h"

#include "platform/PointerMonitor.h"
#include "platform/Scheduler.h"
#include "platform/Workspace.h"

#include <QApplication>

#include <algorithm>
#include <utility>

using namespace std::chrono_literals;

namespace {

/// Our own event of a press is there by then, and nobody notices.
constexpr auto kOwnEventDelay = 16ms;

/// The shadow of a menu is part of its window, but not for those who see it.
bool isOnOwnWindow(QPoint position)
{
    const QWidget *window = QApplication::topLevelAt(position);
    return window
        && window->geometry().marginsRemoved(window->contentsMargins()).contains(position);
}

} // namespace

OutsideWatch::OutsideWatch(PointerMonitor &pointerMonitor, Workspace &workspace,
                           Scheduler &scheduler, const QWidget &window,
                           std::function<void()> onTurnedAway)
    : m_pointerMonitor(pointerMonitor)
    , m_workspace(workspace)
    , m_scheduler(scheduler)
    , m_window(window)
    , m_onTurnedAway(std::move(onTurnedAway))
    , m_ownPresses([this](QPoint position) { return isOwnPlace(position); })
    , m_clickOutsideMonitor(
          pointerMonitor.onMousePressed,
          [this](QPoint position, quint64 timestamp) { handleMousePress(position, timestamp); })
    , m_appSwitchObserver(
          workspace.onApplicationActivated,
          [this](const RunningApplication &application) { handleActivation(application); })
{
    pointerMonitor.start();
}

OutsideWatch::~OutsideWatch()
{
    m_pointerMonitor.stop();
}

void OutsideWatch::handleMousePress(QPoint position, quint64 timestamp)
{
    if (isOwnPlace(position))
        return;
    // Presses on our own windows and menus reach them as events; they are no turning away. A menu
    // may have done its work and be gone by now, and a window that is dragged be left behind by the
    // pointer.
    m_pressesOutside.append(timestamp);
    m_judgement = m_scheduler.after(kOwnEventDelay, [this] { judgeInNextTurn(); });
}

/// On a busy machine the event of our own may be read only together with the end of the waiting.
void OutsideWatch::judgeInNextTurn()
{
    m_judgement = m_scheduler.after(0ms, [this] { judgePresses(); });
}

void OutsideWatch::judgePresses()
{
    const QList<quint64> presses = std::exchange(m_pressesOutside, {});
    const bool areAllOurs = std::ranges::all_of(
        presses, [this](quint64 timestamp) { return m_ownPresses.contains(timestamp); });
    if (!areAllOurs)
        turnAway();
}

void OutsideWatch::handleActivation(const RunningApplication &application)
{
    if (!m_workspace.isOwnApplication(application))
        turnAway();
}

bool OutsideWatch::isOwnPlace(QPoint position) const
{
    return m_window.geometry().contains(position) || isOnOwnWindow(position);
}

void OutsideWatch::turnAway()
{
    // The watch, and what it holds, may be gone before the call returns.
    const auto onTurnedAway = m_onTurnedAway;
    onTurnedAway();
}
