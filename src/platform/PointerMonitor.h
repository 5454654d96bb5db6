#pragma once

#include <QPoint>

#include <functional>

/// Tells of mouse presses anywhere on the screen, without taking them from anyone. Main thread.
///
/// Presses on the program's own status item are left out where it can be known that they are.
class PointerMonitor
{
public:
    virtual ~PointerMonitor() = default;

    /// Begins to call onMousePressed. Does nothing where the desktop offers no such thing.
    virtual void start() = 0;
    virtual void stop() = 0;

    /// Left or right button; the position in global device-independent pixels. One of our own
    /// windows gets the same press as an event with the same timestamp, earlier or later.
    std::function<void(QPoint position, quint64 timestamp)> onMousePressed;
};
