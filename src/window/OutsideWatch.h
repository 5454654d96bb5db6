#pragma once

#include "foundation/CallbackHook.h"
#include "window/OwnPresses.h"

#include <functional>

class PointerMonitor;
class QWidget;
class Workspace;
struct RunningApplication;

/// Notices, for as long as it lives, that the person turns from a window to something else: presses
/// the mouse beside it, or goes to another program.
class OutsideWatch
{
public:
    /// The first three must outlive the watch; it may end while \a onTurnedAway is called.
    OutsideWatch(PointerMonitor &pointerMonitor, Workspace &workspace, const QWidget &window,
                 std::function<void()> onTurnedAway);
    ~OutsideWatch();

    OutsideWatch(const OutsideWatch &) = delete;
    OutsideWatch &operator=(const OutsideWatch &) = delete;

private:
    void handleMousePress(QPoint position, quint64 timestamp);
    void handleActivation(const RunningApplication &application);
    bool isOwnPlace(QPoint position) const;
    void turnAway();

    PointerMonitor &m_pointerMonitor;
    Workspace &m_workspace;
    const QWidget &m_window;
    std::function<void()> m_onTurnedAway;
    OwnPresses m_ownPresses;
    CallbackHook<QPoint, quint64> m_clickOutsideMonitor;
    CallbackHook<const RunningApplication &> m_appSwitchObserver;
};
