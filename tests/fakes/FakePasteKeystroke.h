#pragma once

#include "platform/PasteKeystroke.h"

#include <QList>

/// Counts the keys that would have been sent.
class FakePasteKeystroke : public PasteKeystroke
{
public:
    bool isPermitted() const override { return permitted; }
    void requestPermission() override { ++permissionRequestCount; }
    void prepare(const RunningApplication &target) override { prepared.append(target); }

    KeyDown postKeyDown() override
    {
        if (!targetFocused)
            return KeyDown::TargetNotFocused;
        if (!keyDownWorks)
            return KeyDown::Failed;
        ++keyDownCount;
        return KeyDown::Posted;
    }

    bool postKeyUp() override
    {
        if (!keyUpWorks)
            return false;
        ++keyUpCount;
        return true;
    }

    bool permitted = true;
    bool targetFocused = true;
    bool keyDownWorks = true;
    bool keyUpWorks = true;
    int permissionRequestCount = 0;
    int keyDownCount = 0;
    int keyUpCount = 0;
    QList<RunningApplication> prepared;
};
