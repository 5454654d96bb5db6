#pragma once

#include "platform/DesktopAppearance.h"

#include <QPainterPath>

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
    void blurBehind(QWindow *window, const QPainterPath &shape) override
    {
        blurredWindow = window;
        blurredShape = shape;
    }
    qreal textScale() const override { return scale; }

    std::optional<bool> dark;
    bool composited = true;
    bool highContrast = false;
    bool reducedMotion = false;
    std::optional<QColor> accent;
    bool blur = false;
    QWindow *blurredWindow = nullptr; ///< For which blur was last asked or no longer asked.
    QPainterPath blurredShape;
    qreal scale = 1;
};
