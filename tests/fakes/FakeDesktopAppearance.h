#pragma once

#include "platform/DesktopAppearance.h"

/// A desktop whose looks a test chooses; the test calls onChanged itself.
class FakeDesktopAppearance : public DesktopAppearance
{
public:
    std::optional<bool> prefersDark() const override { return dark; }
    bool isComposited() const override { return composited; }

    std::optional<bool> dark;
    bool composited = true;
};
