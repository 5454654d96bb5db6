#include "platform/Workspace.h"

#include <QScreen>

namespace {

/// No desktop gives more than this share of its width or height to panels.
constexpr qreal kMostForPanels = 0.75;

} // namespace

QRect Workspace::availableGeometry(const QScreen &screen) const
{
    const QRect whole = screen.geometry();
    const QRect claimed = claimedGeometry(screen);
    const QSizeF least = whole.size() * (1 - kMostForPanels);
    const bool isBelieved = claimed.width() >= least.width() && claimed.height() >= least.height();
    return isBelieved ? claimed : whole;
}

QRect Workspace::claimedGeometry(const QScreen &screen) const
{
    return screen.availableGeometry();
}
