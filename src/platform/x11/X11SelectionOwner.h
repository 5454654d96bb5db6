#pragma once

#include "platform/x11/X11Connection.h"

#include <functional>

/// Who holds a selection that stands for an office, such as that of the compositor. Main thread
/// only.
class X11SelectionOwner : private X11EventListener
{
public:
    /// Waits for one answer of the server.
    X11SelectionOwner(X11Connection &connection, X11AtomName selection);
    ~X11SelectionOwner() override;

    /// The window of the holder; 0 if the office is vacant.
    quint32 window() const { return m_window; }

    /// Called after somebody else, or nobody, has taken over.
    std::function<void()> onChanged;

private:
    void handleX11Event(int type, const void *event) override;

    X11Connection &m_connection;
    quint32 m_selection;
    quint32 m_window = 0;
};
