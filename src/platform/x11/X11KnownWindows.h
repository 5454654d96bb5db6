#pragma once

#include "platform/Workspace.h"
#include "platform/x11/X11Connection.h"
#include "platform/x11/X11Windows.h"

#include <QHash>

/// The windows that others were told of, each for as long as it lives.
///
/// The server gives the number of a window that is gone to a later one, which may belong to
/// anybody. Main thread only.
class X11KnownWindows : private X11EventListener
{
public:
    struct Window
    {
        quint64 serial = 0; ///< Never given to a second window.
        X11Windows::Identity identity;
    };

    explicit X11KnownWindows(X11Connection &connection);
    ~X11KnownWindows() override;

    /// Follows the life of \a window from now on. Absent if it is not there.
    std::optional<Window> note(quint32 window);

    /// The window of \a application; 0 if it is gone, or was never noted.
    quint32 find(const RunningApplication &application);

private:
    void handleX11Event(int type, const void *event) override;

    X11Connection &m_connection;
    X11Windows m_windows;
    QHash<quint32, Window> m_known;
    quint64 m_lastSerial = 0;
};
