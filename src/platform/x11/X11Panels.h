#pragma once

#include "platform/x11/PanelStrut.h"
#include "platform/x11/X11Connection.h"

#include <QHash>

#include <functional>
#include <memory>

class Scheduler;
class ScheduledWork;

/// The panels of the desktop, and what they keep for themselves. It is followed from their own word,
/// since what window managers make of it is one rectangle for all monitors together.
///
/// News is read a moment later and all at once: windows come and go just when there is something
/// better to do than to wait for the server. Main thread only.
class X11Panels : private X11EventListener
{
public:
    X11Panels(X11Connection &connection, Scheduler &scheduler);
    ~X11Panels() override;

    /// What the panels leave of \a monitor, in the screen's own pixels. Asks nobody.
    QRect available(const QRect &monitor) const;

    /// Called when that may have become something else.
    std::function<void()> onChanged;

private:
    void handleX11Event(int type, const void *event) override;
    void refreshSoon();
    void refresh();
    QList<quint32> panels();

    X11Connection &m_connection;
    Scheduler &m_scheduler;
    QHash<quint32, bool> m_windows; ///< All windows, and whether they are panels.
    QList<PanelStrut> m_struts;
    QSize m_screen;
    std::unique_ptr<ScheduledWork> m_refresh;
};
