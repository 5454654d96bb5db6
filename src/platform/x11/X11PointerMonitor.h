#pragma once

#include "platform/PointerMonitor.h"
#include "platform/x11/X11Connection.h"

/// Raw button presses, which come whatever window or grab takes the events themselves.
class X11PointerMonitor : public PointerMonitor, private X11EventListener
{
public:
    explicit X11PointerMonitor(X11Connection &connection);
    ~X11PointerMonitor() override;

    void start() override;
    void stop() override;

    /// Says of a place on the screen, in the screen's own pixels, that presses there are for this
    /// program and are not to be told of.
    std::function<bool(const QPoint &place)> isOwnPlace;

private:
    void handleX11Event(int type, const void *event) override;
    void selectPresses(bool isWanted);

    X11Connection &m_connection;
    bool m_isRunning = false;
};
