#include "widgets/DesktopLook.h"

#include "platform/DesktopAppearance.h"

Look desktopLook(const DesktopAppearance &appearance)
{
    return {.scheme = desktopColorScheme(appearance.prefersDark()),
            .isTranslucent = appearance.isComposited(),
            .isHighContrast = appearance.prefersHighContrast(),
            .isMotionReduced = appearance.prefersReducedMotion(),
            .accent = appearance.accentColor()};
}
