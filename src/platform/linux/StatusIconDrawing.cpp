#include "platform/linux/StatusIconDrawing.h"

#include <QHash>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace {

constexpr QColor kDarkInk(28, 29, 32);
constexpr QColor kLightInk(235, 236, 239);
/// Has the same contrast with black as with white.
constexpr QColor kMiddleInk(118, 118, 118);

/// What small drawings are asked to have, at the least, to be made out.
constexpr double kLegibleContrast = 3.0;

/// Fainter than this counts as empty: the soft edge of a drawing.
constexpr int kFaintAlpha = 48;

double linear(double component)
{
    return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF());
}

double contrast(const QColor &one, const QColor &other)
{
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

bool isColumnEmpty(const QImage &image, int x)
{
    for (int y = 0; y < image.height(); ++y) {
        if (qAlpha(image.pixel(x, y)) > kFaintAlpha)
            return false;
    }
    return true;
}

struct InkColumns
{
    int left = 0;
    int right = 0; ///< The first empty one behind the ink.
};

InkColumns inkColumns(const QImage &image)
{
    InkColumns ink{0, image.width()};
    while (ink.left < ink.right && isColumnEmpty(image, ink.left))
        ++ink.left;
    while (ink.right > ink.left && isColumnEmpty(image, ink.right - 1))
        --ink.right;
    return ink;
}

} // namespace

QColor iconColorOn(const QColor &ground)
{
    return contrast(kDarkInk, ground) >= contrast(kLightInk, ground) ? kDarkInk : kLightInk;
}

QColor iconColorOnUnknownGround()
{
    return kMiddleInk;
}

bool isLegible(const QColor &color, const QColor &ground)
{
    return contrast(color, ground) >= kLegibleContrast;
}

std::optional<QColor> prevailingColor(const QList<QRgb> &pixels)
{
    struct Sum
    {
        int count = 0;
        int red = 0;
        int green = 0;
        int blue = 0;
    };
    constexpr QRgb kCoarse = 0xf0f0f0;
    QHash<QRgb, Sum> sums;
    for (const QRgb pixel : pixels) {
        Sum &sum = sums[pixel & kCoarse];
        ++sum.count;
        sum.red += qRed(pixel);
        sum.green += qGreen(pixel);
        sum.blue += qBlue(pixel);
    }
    const auto most = std::ranges::max_element(sums, {}, &Sum::count);
    if (most == sums.end())
        return std::nullopt;
    return QColor(most->red / most->count, most->green / most->count, most->blue / most->count);
}

QImage drawIconInto(const QSize &size, const StatusItem::IconPainter &painter, const QColor &color)
{
    QImage canvas(size, QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::transparent);
    int side = std::min(size.width(), size.height());
    if (side <= 0)
        return canvas;
    QImage drawing = painter(side, color);
    InkColumns ink = inkColumns(drawing);
    if (ink.right - ink.left > size.width()) {
        side = side * size.width() / (ink.right - ink.left);
        drawing = painter(side, color);
        ink = inkColumns(drawing);
    }
    // In the middle, but for ink that would be cut off.
    int left = (size.width() - drawing.width()) / 2;
    left = std::min(left, size.width() - ink.right);
    left = std::max(left, -ink.left);
    QPainter(&canvas).drawImage(left, (size.height() - drawing.height()) / 2, drawing);
    return canvas;
}
