#include "platform/x11/X11Appearance.h"

#include <QGuiApplication>

#include <algorithm>
#include <utility>

X11Appearance::X11Appearance(X11Connection &connection)
    : m_settings(connection)
    , m_compositor(connection, X11AtomName::CompositorSelection)
    , m_blur(connection)
{
    m_portal.onChanged = [this] { handlePreferences(); };
    m_settings.onChanged = [this] { announceChange(); };
    m_compositor.onChanged = [this] { announceChange(); };
    m_blur.onChanged = [this] { announceChange(); };
}

bool X11Appearance::prefersHighContrast() const
{
    const PortalAppearance::Preferences &preferences = m_portal.preferences();
    return preferences.isContrastHigh || preferences.isThemeContrastHigh
        || m_settings.values().isContrastHigh;
}

/// The desktop has several switches for this. Each is on unless the person has turned it off, so one
/// that is off is a wish, and one that is on is none.
bool X11Appearance::prefersReducedMotion() const
{
    const PortalAppearance::Preferences &preferences = m_portal.preferences();
    return preferences.isMotionReduced || !preferences.isAnimated
        || m_settings.values().isAnimationOff;
}

void X11Appearance::blurBehind(QWindow *window, const QPainterPath &shape)
{
    m_blur.blurBehind(window, shape);
}

qreal X11Appearance::textScale() const
{
    // A desktop that puts the factor into the resolution of its fonts has Qt enlarge everything by it
    // already.
    return std::max(1.0, m_portal.preferences().textScale / qGuiApp->devicePixelRatio());
}

void X11Appearance::handlePreferences()
{
    const std::optional<bool> prefersDark = m_portal.preferences().isDark;
    const bool isOther = std::exchange(m_prefersDark, prefersDark) != prefersDark;
    announceChange();
    if (isOther && onPreferenceChanged)
        onPreferenceChanged();
}

void X11Appearance::announceChange()
{
    if (onChanged)
        onChanged();
}
