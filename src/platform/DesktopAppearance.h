#pragma once

#include <QColor>

#include <functional>
#include <optional>

class QPainterPath;
class QWindow;

/// What the desktop says of its looks. Main thread only.
class DesktopAppearance
{
public:
    virtual ~DesktopAppearance() = default;

    /// The person's choice of light or dark; absent where the desktop does not tell (yet).
    virtual std::optional<bool> prefersDark() const = 0;

    /// Whether windows may be translucent now: a compositor runs.
    virtual bool isComposited() const = 0;

    virtual bool prefersHighContrast() const = 0;

    /// Whether the person wants nothing to move.
    virtual bool prefersReducedMotion() const = 0;

    /// The colour the person chose for what is selected; absent where the desktop does not tell.
    virtual std::optional<QColor> accentColor() const = 0;

    /// Whether the desktop blurs what shines through a window that asks for it.
    virtual bool offersBlur() const = 0;

    /// Asks the desktop to blur what shines through \a window within \a shape, which is in the
    /// window's own coordinates; an empty shape takes the wish back. The window must have been
    /// created. Where no blur is offered the wish is kept, in case it is offered later.
    virtual void blurBehind(QWindow *window, const QPainterPath &shape) = 0;

    /// The factor by which the person wants texts larger than usual; at least 1. What makes whole
    /// windows larger (the device pixel ratio) is not in it.
    virtual qreal textScale() const = 0;

    /// Called after one of the answers has changed.
    std::function<void()> onChanged;
};
