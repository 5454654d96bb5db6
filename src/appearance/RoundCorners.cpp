#include "appearance/RoundCorners.h"

#include <QPainter>

QImage withRoundCorners(const QImage &picture, qreal radius)
{
    QImage rounded(picture.size(), QImage::Format_ARGB32_Premultiplied);
    rounded.fill(Qt::transparent);
    QPainter painter(&rounded);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(picture);
    painter.drawRoundedRect(QRectF(rounded.rect()), radius, radius);
    return rounded;
}
