#include "appearance/Contrast.h"

#include "appearance/LinearLight.h"

#include <algorithm>

namespace {

double luminance(const QColor &color)
{
    return 0.2126 * toLinear(color.redF()) + 0.7152 * toLinear(color.greenF())
        + 0.0722 * toLinear(color.blueF());
}

} // namespace

double contrastRatio(const QColor &one, const QColor &other)
{
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

QColor composed(const QColor &top, const QColor &below)
{
    const float alpha = top.alphaF();
    const auto mix = [alpha](float a, float b) { return a * alpha + b * (1 - alpha); };
    return QColor::fromRgbF(mix(top.redF(), below.redF()), mix(top.greenF(), below.greenF()),
                            mix(top.blueF(), below.blueF()));
}
