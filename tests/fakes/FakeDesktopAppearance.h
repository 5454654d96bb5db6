#pragma once

#include "platform/DesktopAppearance.h"

/// A desktop whose looks a test chooses; the test calls onChanged itself.
class FakeDesktopAppearance : public DesktopAppearance
{
public:
    std::optional<bool> prefersDark() const override { return dark; }
    bool isComposited() const override { return composited; }
    bool prefersHighContrast() const override { return highContrast; }
    bool prefersReducedMotion() const override { return reducedMotion; }
    std::optional<QColor> accentColor() const override { return accent; }
    bool offersBlur() const override { return blur; }
    qreal textScale() const override { return scale; }

    std::optional<bool> dark;
    bool composited = true;
    bool highContrast = false;
    bool reducedMotion = false;
    std::optional<QColor> accent;
    bool blur = false;
    qreal scale = 1;
};
