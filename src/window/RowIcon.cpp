#include "window/RowIcon.h"

#include "appearance/DevicePixels.h"
#include "appearance/RoundedBox.h"
#include "platform/ImageCodec.h"

#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <optional>

namespace {

constexpr qreal kBadgeRadius = 4;
/// No icon is larger.
constexpr int kLongestSide = 1024;
/// A drawing names itself within its first lines, after its licence as the case may be.
constexpr qsizetype kHeadBytes = 4096;

bool isDrawing(const QByteArray &file)
{
    const bool isCompressed = file.startsWith("\x1f\x8b");
    return isCompressed || file.first(std::min(kHeadBytes, file.size())).contains("<svg");
}

QImage rasterised(const QByteArray &drawing, int side)
{
    QSvgRenderer renderer(drawing);
    if (!renderer.isValid() || renderer.defaultSize().isEmpty())
        return {};
    QImage image(fittedSize(renderer.defaultSize(), side), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter);
    return image;
}

QImage scaled(const std::optional<QImage> &picture, int side)
{
    if (!picture)
        return {};
    return picture->convertToFormat(QImage::Format_ARGB32_Premultiplied)
        .scaled(fittedSize(picture->size(), side), Qt::IgnoreAspectRatio,
                Qt::SmoothTransformation);
}

} // namespace

QImage makeRowIcon(const QByteArray &file, int side, qreal devicePixelRatio,
                   const ImageCodec &codec)
{
    QImage icon = isDrawing(file) ? rasterised(file, side)
                                  : scaled(codec.imageFromSmallPicture(file, kLongestSide), side);
    icon.setDevicePixelRatio(devicePixelRatio);
    return icon;
}

void drawRowIcon(QPainter &painter, const QRectF &box, const QImage &picture)
{
    painter.drawImage(centredOnDevice(painter, box, picture.deviceIndependentSize()), picture);
}

void drawSourceBadge(QPainter &painter, const QRectF &box, const QImage &icon,
                     const QColor &groundColor)
{
    const QRectF place = snappedToDevice(painter, box);
    const qreal scale = deviceScale(painter);
    QImage badge((place.size() * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    badge.setDevicePixelRatio(scale);
    badge.fill(Qt::transparent);
    QPainter inside(&badge);
    inside.translate(-place.topLeft());
    fillRoundedBox(inside, place, kBadgeRadius, groundColor);
    // The corners of the icon end where the ground does; a clip would have steps there.
    inside.setCompositionMode(QPainter::CompositionMode_SourceAtop);
    drawRowIcon(inside, box, icon);
    inside.end();
    painter.drawImage(place.topLeft(), badge);
}
