#pragma once

#include "platform/Workspace.h"
#include "platform/linux/DesktopEntries.h"
#include "platform/x11/X11Applications.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11KnownWindows.h"
#include "platform/x11/X11Panels.h"
#include "platform/x11/X11Windows.h"

#include <array>

/// The programs on an X11 desktop, with any window manager or none.
class X11Workspace : public Workspace, private X11EventListener
{
public:
    X11Workspace(X11Connection &connection, X11KnownWindows &knownWindows,
                 const DesktopEntries &entries, Scheduler &scheduler);
    ~X11Workspace() override;

    std::optional<RunningApplication> frontmostApplication() const override;
    bool isOwnApplication(const RunningApplication &application) const override;
    void activate(const RunningApplication &application) override;
    void activateOwnWindow(QWindow *window) override;
    void prepareOwnWindow(QWindow *window) override;
    bool isWithdrawn(QWindow *window) override;
    void noteUserAction(const QString &activationToken) override;
    QString newActivationToken() const override;
    std::optional<QString> applicationName(const QString &bundleIdentifier) const override;

    /// Called when the focus has been asked for one of our windows.
    std::function<void(quint32 window)> onOwnWindowActivated;

private:
    class UserTimeFilter;

    QRect claimedGeometry(const QScreen &screen) const override;
    void handleX11Event(int type, const void *event) override;
    void selectEvents(quint32 window, quint32 eventMask);
    void announceActivation(quint32 time);
    void noteArrival(quint32 activeWindow);
    bool isBelated(quint32 time) const;
    void writeUserTime(xcb_connection_t *xcb, quint32 window);
    void keepOutOfLists(xcb_connection_t *xcb, quint32 window);
    void askWindowManagerToActivate(xcb_connection_t *xcb, quint32 window);
    void askWindowManager(xcb_connection_t *xcb, quint32 window, X11AtomName wish,
                          std::array<quint32, 2> details);
    void focusWhenViewable(quint32 window);
    void focus(quint32 window);

    X11Connection &m_connection;
    X11KnownWindows &m_knownWindows;
    const DesktopEntries &m_entries;
    mutable X11Windows m_windows;
    mutable X11Applications m_applications;
    X11Panels m_panels;
    mutable quint32 m_announcedWindow = 0;
    mutable quint32 m_tokenCount = 0;
    quint32 m_awaitedWindow = 0; ///< Ours, from the asking for the focus until it has it.
    quint32 m_awaitedSince = 0; ///< The server's time.
    quint32 m_windowToFocus = 0; ///< Gets the focus as soon as it can be seen.
    std::unique_ptr<UserTimeFilter> m_userTimeFilter;
};
