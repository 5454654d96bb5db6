#pragma once

#include "platform/x11/X11Requests.h"

#include <QString>

#include <optional>

/// What the server and the window manager say of other programs' windows.
///
/// Every answer may be out of date when it comes; windows that have died have no answers. Used by the
/// thread to which the connection belongs.
class X11Windows
{
public:
    /// What a window tells of its program; each part may be empty.
    struct Identity
    {
        QString gtkApplicationId;
        QString instanceName; ///< The two parts of WM_CLASS.
        QString className;
        qint64 processId = 0;

        friend bool operator==(const Identity &, const Identity &) = default;
    };

    explicit X11Windows(X11Requests &requests)
        : m_requests(requests)
    {
    }

    /// The top-level window that has the focus: as the window manager says, else as the server
    /// says. 0 if there is none.
    quint32 activeWindow();

    /// Absent if the window is not there.
    std::optional<Identity> identity(quint32 window);

    /// The desktop on which \a window is, if that is another than the one that is shown.
    std::optional<quint32> otherDesktopOf(quint32 window);

    /// Whether a window manager runs that activates windows when it is asked to.
    bool hasWindowManager();

    /// The window that keys go to; 0 if there is none.
    quint32 focusWindow();

    /// Whether \a window is \a main, lies within it, or in one of its dialogues.
    bool belongsTo(quint32 window, quint32 main);

    /// Whether \a window and all it lies in are mapped.
    bool isViewable(quint32 window);

private:
    bool isWindowManagerAlive(const std::optional<quint32> &checkWindow);
    quint32 windowUnderPointer();
    quint32 parent(quint32 window);
    quint32 topLevelOf(quint32 window);
    bool isTransientFor(quint32 window, quint32 main);

    X11Requests &m_requests;
};
