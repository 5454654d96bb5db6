#include "appearance/AccentColors.h"

#include "appearance/Contrast.h"
#include "appearance/Oklch.h"

#include <algorithm>
#include <functional>

namespace {

constexpr double kReadable = 4.5;
constexpr double kWellReadable = 7;
/// A ground in the colour of the window would be none.
constexpr double kDiscernible = 1.7;

using Condition = std::function<bool(const QColor &)>;

/// \a color itself if \a isEnough for it; else moved towards black or white until it is.
QColor moved(const QColor &color, double direction, const Condition &isEnough)
{
    constexpr int kSteps = 256;
    Oklch moving = Oklch::from(color);
    QColor result = color;
    for (int step = 0; step < kSteps && !isEnough(result); ++step) {
        moving.lightness = std::clamp(moving.lightness + direction / kSteps, 0.0, 1.0);
        result = moving.toColor();
    }
    return result;
}

/// The window with that behind it which is worst for what is drawn on it.
QColor worstGround(const SystemColors &colors, ColorScheme scheme)
{
    const QColor &window = colors.windowBackgroundColor;
    if (colors.isHighContrast)
        return window;
    const QColor backdrop = scheme == ColorScheme::Dark ? Qt::white : Qt::black;
    return composed(withAlpha(window, kBlurredWindowAlpha), backdrop);
}

} // namespace

SystemColors withAccent(SystemColors colors, const QColor &accent, ColorScheme scheme)
{
    constexpr double kDarker = -1;
    constexpr double kLighter = 1;
    const double least = colors.isHighContrast ? kWellReadable : kReadable;
    const QColor window = colors.windowBackgroundColor;
    const QColor worst = worstGround(colors, scheme);
    const QColor faded = colors.onSelection().secondaryLabelColor;
    const QColor discernible = moved(accent, kLighter, [&](const QColor &color) {
        return scheme == ColorScheme::Light || contrastRatio(color, window) >= kDiscernible;
    });

    colors.controlAccentColor =
        moved(accent, scheme == ColorScheme::Dark ? kLighter : kDarker,
              [&](const QColor &color) { return contrastRatio(color, worst) >= least; });
    colors.accentFillColor = moved(discernible, kDarker, [&](const QColor &color) {
        return contrastRatio(Qt::white, color) >= least;
    });
    colors.selectionColor = moved(discernible, kDarker, [&](const QColor &color) {
        return contrastRatio(composed(faded, color), color) >= least;
    });
    return colors;
}
