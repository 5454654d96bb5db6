#pragma once

#include "platform/Workspace.h"

/// Types the paste command into the program that has the focus. Main thread only.
class PasteKeystroke
{
public:
    enum class KeyDown : quint8
    {
        Posted,
        TargetNotFocused,
        Failed
    };

    virtual ~PasteKeystroke() = default;

    /// Whether this session lets a program send keys.
    virtual bool isPermitted() const = 0;

    /// Lets the desktop ask the person for the permission, where it has a way to ask.
    virtual void requestPermission() = 0;

    /// Tells which program will be pasted into, some time before the keys are sent. What the
    /// program needs besides the keys (terminals paste another selection) is made ready now.
    virtual void prepare(const RunningApplication &target) = 0;

    /// Lifts what the person still holds and presses the chord, both only if the window that
    /// prepare() was called for has the focus at that very moment.
    [[nodiscard]] virtual KeyDown postKeyDown() = 0;

    /// Releases the chord and puts back the modifiers that are still held. False if it failed.
    [[nodiscard]] virtual bool postKeyUp() = 0;
};
