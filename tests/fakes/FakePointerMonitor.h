#pragma once

#include "platform/PointerMonitor.h"

/// A mouse that a test presses.
class FakePointerMonitor : public PointerMonitor
{
public:
    void start() override { isRunning = true; }
    void stop() override { isRunning = false; }

    void press(QPoint position, quint64 timestamp = 0) { onMousePressed(position, timestamp); }

    bool isRunning = false;
};
