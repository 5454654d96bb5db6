#include "appearance/SoftShadow.h"

#include <cmath>
#include <vector>

namespace {

/// What is left of a wide step edge at each pixel of \a length, after a Gaussian blur.
std::vector<float> blurredProfile(qreal length, qreal start, qreal end, qreal sigma,
                                  qreal devicePixelRatio)
{
    std::vector<float> profile(size_t(std::lround(length * devicePixelRatio)));
    const auto covered = [sigma](qreal distance) {
        return std::erf(distance / (sigma * std::sqrt(2.0)));
    };
    for (size_t i = 0; i < profile.size(); ++i) {
        const qreal at = (qreal(i) + 0.5) / devicePixelRatio;
        profile[i] = float((covered(at - start) - covered(at - end)) / 2);
    }
    return profile;
}

} // namespace

QImage shadowImage(const SoftShadow &shadow, const QSize &cardSize, qreal devicePixelRatio)
{
    const QMargins margins = shadow.margins();
    const QSize size = cardSize.grownBy(margins);
    const qreal sigma = shadow.blur / 2.0;
    const std::vector<float> across = blurredProfile(
        size.width(), margins.left(), margins.left() + cardSize.width(), sigma, devicePixelRatio);
    const qreal top = margins.top() + shadow.drop;
    const std::vector<float> down =
        blurredProfile(size.height(), top, top + cardSize.height(), sigma, devicePixelRatio);

    QImage image(int(across.size()), int(down.size()), QImage::Format_Alpha8);
    constexpr float kOpaque = 255;
    for (int y = 0; y < image.height(); ++y) {
        uchar *line = image.scanLine(y);
        const float strength = kOpaque * float(shadow.strength) * down[size_t(y)];
        for (size_t x = 0; x < across.size(); ++x)
            line[x] = uchar(std::lround(strength * across[x]));
    }
    image = std::move(image).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(devicePixelRatio);
    return image;
}
