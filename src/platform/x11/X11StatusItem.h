#pragma once

#include "platform/Scheduler.h"
#include "platform/linux/StatusNotifierItem.h"
#include "platform/x11/X11TrayIcon.h"

class DesktopAppearance;

/// The status item of an X11 desktop: registered over D-Bus wherever a panel takes such items, and
/// a window in the tray where there is only that. Panels may come and go in any order; there is
/// never more than one icon.
class X11StatusItem : public StatusItem, private X11EventListener
{
public:
    X11StatusItem(X11Connection &connection, const DesktopAppearance &appearance,
                  Scheduler &scheduler);
    ~X11StatusItem() override;

    [[nodiscard]] bool create() override;
    void setIcon(IconPainter painter, const QString &description) override;
    void setMenu(const QList<StatusMenuEntry> &entries) override;

    /// Whether a place on the screen, in its own pixels, is known to be within the icon.
    bool contains(const QPoint &place) { return m_trayIcon.contains(place); }

    /// To be called when panels may have got other colours.
    void refreshColorSoon();

private:
    void handleX11Event(int type, const void *event) override;
    void forwardCalls();
    void chooseTray();
    void refreshColor();
    std::optional<QColor> colorForPanels();

    X11Connection &m_connection;
    const DesktopAppearance &m_appearance;
    Scheduler &m_scheduler;
    X11PanelGround m_panelGround;
    StatusNotifierItem m_notifierItem;
    X11TrayIcon m_trayIcon;
    bool m_isCreated = false;
    bool m_hasSeenPanel = false;
    bool m_isSettling = false;
    std::unique_ptr<ScheduledWork> m_patience; ///< Ends the waiting for an answer over D-Bus.
    std::unique_ptr<ScheduledWork> m_settling; ///< Lets a panel draw itself before it is looked at.
};
