#include "widgets/DesktopLook.h"

#include "platform/DesktopAppearance.h"

#include <QApplication>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

/// What Qt selects with where no desktop tells it another colour.
QColor defaultHighlight()
{
    const std::unique_ptr<QStyle> style(QStyleFactory::create(u"fusion"_s));
    return style->standardPalette().color(QPalette::Active, QPalette::Highlight);
}

/// Absent where nobody has chosen it.
std::optional<QColor> chosenHighlight()
{
    static const QColor nobodysChoice = defaultHighlight();
    const QColor highlight = QApplication::palette().color(QPalette::Active, QPalette::Highlight);
    return highlight == nobodysChoice ? std::nullopt : std::optional(highlight);
}

bool isAnimationOff()
{
    return QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration) <= 0;
}

} // namespace

Look desktopLook(const DesktopAppearance &appearance)
{
    return {.scheme = desktopColorScheme(appearance.prefersDark()),
            .isTranslucent = appearance.isComposited(),
            .isBlurred = appearance.isComposited() && appearance.offersBlur(),
            .isHighContrast = appearance.prefersHighContrast(),
            .isMotionReduced = appearance.prefersReducedMotion() || isAnimationOff(),
            .accent = appearance.accentColor() ? appearance.accentColor() : chosenHighlight(),
            .textScale = appearance.textScale()};
}
