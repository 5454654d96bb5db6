#pragma once

#include "platform/x11/X11Connection.h"

#include <functional>

class QPainterPath;
class QWindow;

/// The blur that some compositors put behind the windows that ask for it. Main thread only.
class X11Blur : private X11EventListener
{
public:
    /// Waits for one answer of the server.
    explicit X11Blur(X11Connection &connection);
    ~X11Blur() override;

    /// Whether the compositor of this moment says that it blurs.
    bool isOffered() const { return m_isOffered; }

    /// See DesktopAppearance::blurBehind().
    void blurBehind(QWindow *window, const QPainterPath &shape) const;

    /// Called after it was offered or is no longer.
    std::function<void()> onChanged;

private:
    void handleX11Event(int type, const void *event) override;

    X11Connection &m_connection;
    quint32 m_property; ///< On the root window the offer, on another window the wish.
    bool m_isOffered = false;
};
