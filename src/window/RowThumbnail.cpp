#include "window/RowThumbnail.h"

#include "appearance/DevicePixels.h"
#include "appearance/RoundCorners.h"
#include "appearance/RoundedBox.h"
#include "core/Thumbnail.h"

#include <QPainter>

#include <algorithm>

namespace {

constexpr qreal kRadius = 6;
constexpr qreal kRadiusShare = 0.25; ///< Of the shorter side, at most.

qreal cornerRadius(const QSizeF &size)
{
    return std::min(kRadius, kRadiusShare * std::min(size.width(), size.height()));
}

} // namespace

QImage makeRowThumbnail(const QImage &picture, int side, qreal devicePixelRatio)
{
    const QSize size = fittedSize(picture.size(), side);
    // What is very large is made smaller in a way that takes little memory; the rest of the way is
    // short, or goes up.
    const QImage fitted = thumbnailOf(picture, side)
                              .scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const qreal radius = cornerRadius(QSizeF(size) / devicePixelRatio) * devicePixelRatio;
    QImage thumbnail = withRoundCorners(fitted, radius);
    thumbnail.setDevicePixelRatio(devicePixelRatio);
    return thumbnail;
}

void drawRowThumbnail(QPainter &painter, const QRectF &box, const QImage &thumbnail,
                      const QColor &lineColor)
{
    const QSizeF size = thumbnail.deviceIndependentSize();
    const QPointF corner = centredOnDevice(painter, box, size);
    painter.drawImage(corner, thumbnail);
    lineRoundedBox(painter, QRectF(corner, size), cornerRadius(size), lineColor, kThinnestLine);
}
