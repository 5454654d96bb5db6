#pragma once

#include "platform/DesktopAppearance.h"
#include "platform/linux/PortalAppearance.h"
#include "platform/x11/X11Connection.h"

/// Asks the portal for light or dark, and the server whether a compositor runs.
class X11Appearance : public DesktopAppearance, private X11EventListener
{
public:
    explicit X11Appearance(X11Connection &connection);
    ~X11Appearance() override;

    std::optional<bool> prefersDark() const override { return m_portal.prefersDark(); }
    bool isComposited() const override { return m_isComposited; }
    bool prefersHighContrast() const override { return false; }
    bool prefersReducedMotion() const override { return false; }
    std::optional<QColor> accentColor() const override { return std::nullopt; }
    bool offersBlur() const override { return false; }
    qreal textScale() const override { return 1; }

    /// Called besides onChanged, and only for prefersDark().
    std::function<void()> onPreferenceChanged;

private:
    void handleX11Event(int type, const void *event) override;
    void watchCompositor();
    void announceChange();

    X11Connection &m_connection;
    PortalAppearance m_portal;
    bool m_isComposited = false;
};
