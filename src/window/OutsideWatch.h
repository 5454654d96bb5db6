#pragma once

#include "foundation/CallbackHook.h"
#include "window/OwnPresses.h"

#include <QList>

#include <functional>
#include <memory>

class PointerMonitor;
class QWidget;
class ScheduledWork;
class Scheduler;
class Workspace;
struct RunningApplication;

/// Notices, for as long as it lives, that the person turns from a window to something else: presses
/// the mouse beside it, or goes to another program.
class OutsideWatch
{
public:
    /// All but the last must outlive the watch; it may end while \a onTurnedAway is called.
    OutsideWatch(PointerMonitor &pointerMonitor, Workspace &workspace, Scheduler &scheduler,
                 const QWidget &window, std::function<void()> onTurnedAway);
    ~OutsideWatch();

    OutsideWatch(const OutsideWatch &) = delete;
    OutsideWatch &operator=(const OutsideWatch &) = delete;

private:
    void handleMousePress(QPoint position, quint64 timestamp);
    void handleActivation(const RunningApplication &application);
    void judgeInNextTurn();
    void judgePresses();
    bool isOwnPlace(QPoint position) const;
    void turnAway();

    PointerMonitor &m_pointerMonitor;
    Workspace &m_workspace;
    Scheduler &m_scheduler;
    const QWidget &m_window;
    std::function<void()> m_onTurnedAway;
    OwnPresses m_ownPresses;
    CallbackHook<QPoint, quint64> m_clickOutsideMonitor;
    CallbackHook<const RunningApplication &> m_appSwitchObserver;
    QList<quint64> m_pressesOutside; ///< By timestamp; each may yet turn out to be our own.
    std::unique_ptr<ScheduledWork> m_judgement;
};
