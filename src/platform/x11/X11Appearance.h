#pragma once

#include "platform/DesktopAppearance.h"
#include "platform/linux/PortalAppearance.h"
#include "platform/x11/X11Blur.h"
#include "platform/x11/X11SelectionOwner.h"
#include "platform/x11/X11DesktopSettings.h"

/// Asks the portal and the settings manager what the person prefers, and the server what the
/// compositor can do.
class X11Appearance : public DesktopAppearance
{
public:
    explicit X11Appearance(X11Connection &connection);

    std::optional<bool> prefersDark() const override { return m_portal.preferences().isDark; }
    bool isComposited() const override { return m_compositor.window() != 0; }
    bool prefersHighContrast() const override;
    bool prefersReducedMotion() const override;
    std::optional<QColor> accentColor() const override { return m_portal.preferences().accent; }
    bool offersBlur() const override { return isComposited() && m_blur.isOffered(); }
    void blurBehind(QWindow *window, const QPainterPath &shape) override;
    qreal textScale() const override;

    /// Called besides onChanged, and only for prefersDark().
    std::function<void()> onPreferenceChanged;

private:
    void handlePreferences();
    void announceChange();

    PortalAppearance m_portal;
    X11DesktopSettings m_settings;
    X11SelectionOwner m_compositor;
    X11Blur m_blur;
    std::optional<bool> m_prefersDark; ///< As it was last told.
};
