#include "core/Thumbnail.h"

#include <algorithm>
#include <vector>

namespace {

/// So many times larger than the result a picture may be when it comes to the smooth scaling.
constexpr int kSmoothReserve = 2;

/// With fewer pixels at its shorter side a reduced picture would show that its rest was dropped.
constexpr int kMinReducedSide = 32;

/// Each pixel is the mean of \a factor by \a factor pixels; what is left over at the right and at
/// the bottom is dropped. Smooth scaling does the same, but first makes a copy of the whole picture
/// with four bytes a pixel.
QImage reduced(const QImage &image, int factor)
{
    constexpr int kChannels = 3;
    QImage result(image.width() / factor, image.height() / factor, QImage::Format_RGB888);
    std::vector<quint32> sums(std::size_t(result.width()) * factor * kChannels);
    const quint32 count = quint32(factor) * quint32(factor);
    for (int y = 0; y < result.height(); ++y) {
        std::ranges::fill(sums, 0);
        for (int line = y * factor; line < (y + 1) * factor; ++line) {
            const uchar *pixels = image.constScanLine(line);
            for (std::size_t i = 0; i < sums.size(); ++i)
                sums[i] += pixels[i];
        }
        uchar *pixel = result.scanLine(y);
        const quint32 *block = sums.data();
        for (int x = 0; x < result.width(); ++x, block += factor * kChannels) {
            for (int channel = 0; channel < kChannels; ++channel) {
                quint32 sum = 0;
                for (int i = channel; i < factor * kChannels; i += kChannels)
                    sum += block[i];
                *pixel++ = uchar((sum + count / 2) / count);
            }
        }
    }
    return result;
}

} // namespace

QImage thumbnailOf(const QImage &image, int longestSide)
{
    const int side = std::max(image.width(), image.height());
    if (side <= longestSide)
        return image;
    const QSizeF exact = QSizeF(image.size()) * longestSide / side;
    const QSize size = exact.toSize().expandedTo(QSize(1, 1));
    const int factor = side / (longestSide * kSmoothReserve);
    const bool isReducible = image.format() == QImage::Format_RGB888 && factor > 1
        && std::min(image.width(), image.height()) >= factor * kMinReducedSide;
    return (isReducible ? reduced(image, factor) : image)
        .scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}
