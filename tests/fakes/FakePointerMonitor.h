#pragma once

#include "platform/PointerMonitor.h"

/// A mouse that a test presses by calling onMousePressed.
class FakePointerMonitor : public PointerMonitor
{
public:
    void start() override { isRunning = true; }
    void stop() override { isRunning = false; }

    bool isRunning = false;
};
