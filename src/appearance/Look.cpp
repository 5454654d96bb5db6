#include "appearance/Look.h"

#include "appearance/AccentColors.h"

#include <tuple>

namespace {

SystemColors computedColors(const Look &look)
{
    const SystemColors colors =
        look.isHighContrast ? highContrastColors(look.scheme) : systemColors(look.scheme);
    return look.accent ? withAccent(colors, *look.accent, look.scheme) : colors;
}

} // namespace

SystemColors Look::colors() const
{
    using Wish = std::tuple<ColorScheme, bool, std::optional<QColor>>;
    static std::optional<Wish> known;
    static SystemColors colors;

    const Wish wish(scheme, isHighContrast, accent);
    if (known != wish) {
        colors = computedColors(*this);
        known = wish;
    }
    return colors;
}

qreal Look::windowAlpha() const
{
    if (!isTranslucent || isHighContrast)
        return 1;
    return wantsBlur() ? kBlurredWindowAlpha : kPlainWindowAlpha;
}

bool Look::wantsBlur() const
{
    return isTranslucent && isBlurred && !isHighContrast;
}
