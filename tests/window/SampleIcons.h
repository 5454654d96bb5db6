#pragma once

#include <QByteArray>
#include <QImage>
#include <QLinearGradient>
#include <QMap>
#include <QPainter>
#include <QPainterPath>
#include <QString>

/// Coloured bars on white, as a screenshot of a chart has them.
inline QImage sampleChart(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.scale(size.width() / 32.0, size.height() / 32.0);
    painter.fillRect(QRectF(4, 3, 12, 1.4), QColor(0x50, 0x53, 0x5A));
    painter.fillRect(QRectF(6, 19.5, 3.6, 8.5), QColor(0x7B, 0xA4, 0xF7));
    painter.fillRect(QRectF(11.5, 15, 3.6, 13), QColor(0x24, 0x59, 0xC7));
    painter.fillRect(QRectF(17.5, 9.5, 3.6, 18.5), QColor(0x24, 0x59, 0xC7));
    painter.fillRect(QRectF(23.5, 12, 3.6, 16), QColor(0xE0, 0x8A, 0x35));
    return image;
}

inline QImage sampleEvening(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient sky(0, 0, 0, size.height());
    sky.setColorAt(0, QColor(0xF2, 0xC9, 0xA5));
    sky.setColorAt(0.6, QColor(0xF6, 0xDD, 0xC4));
    painter.fillRect(image.rect(), sky);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.scale(size.width() / 32.0, size.height() / 32.0);
    QPainterPath mountains(QPointF(0, 17));
    for (const QPointF point : {QPointF(9, 9), QPointF(14, 15), QPointF(20, 10), QPointF(32, 18)})
        mountains.lineTo(point);
    mountains.lineTo(32, 22);
    mountains.lineTo(0, 22);
    painter.fillPath(mountains, QColor(0x6F, 0x86, 0x98));
    painter.fillRect(QRectF(0, 20, 32, 12), QColor(0x3F, 0x5F, 0x74));
    painter.setBrush(QColor(0xFF, 0xF0, 0xC8));
    painter.drawEllipse(QPointF(26, 8), 2, 2);
    return image;
}

/// Pictures of several shapes, by the beginnings of their files' names.
inline QMap<QString, QImage> sampleThumbnails()
{
    return {{QStringLiteral("chart"), sampleChart({200, 200})},
            {QStringLiteral("evening"), sampleEvening({200, 200})},
            {QStringLiteral("wide"), sampleEvening({200, 112})},
            {QStringLiteral("tall"), sampleEvening({60, 200})},
            {QStringLiteral("flat"), sampleChart({200, 20})},
            {QStringLiteral("small"), sampleChart({16, 16})}};
}

/// A shape drawn in white lines on a ground of one colour.
inline QByteArray sampleApplicationIcon(const char *ground, const char *shape)
{
    return QByteArray("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"48\" height=\"48\">"
                      "<rect width=\"48\" height=\"48\" rx=\"12\" fill=\"")
        + ground + "\"/><path d=\"" + shape
        + "\" fill=\"none\" stroke=\"#fff\" stroke-width=\"5\"/></svg>";
}

/// A page with a band of \a color.
inline QByteArray sampleDocumentIcon(const char *color)
{
    return QByteArray("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"48\" height=\"48\">"
                      "<path d=\"M8 3h20l9 9v33H8z\" fill=\"#fff\" stroke=\"#888\"/>"
                      "<rect x=\"4\" y=\"21\" width=\"29\" height=\"13\" rx=\"2\" fill=\"")
        + color + "\"/></svg>";
}

/// By the ends of the names of their files.
inline QMap<QString, QByteArray> sampleFileIcons()
{
    return {{QStringLiteral(".pdf"), sampleDocumentIcon("#c62f2f")},
            {QStringLiteral(".csv"), sampleDocumentIcon("#2f8a57")},
            {QStringLiteral(".zip"), sampleDocumentIcon("#b8860b")}};
}

/// By the ends of the identifiers of their programs.
inline QMap<QString, QByteArray> sampleApplicationIcons()
{
    const auto icon = sampleApplicationIcon;
    return {
        {QStringLiteral("terminal"), icon("#4a4f57", "M12 16l8 8l-8 8M24 32h12")},
        {QStringLiteral("web"), icon("#2f6fd0", "M24 10a14 14 0 1 0 .1 0M10 24h28")},
        {QStringLiteral("screenshot"), icon("#c8437b", "M12 20v-8h8M36 28v8h-8")},
        {QStringLiteral("mail"), icon("#e08a35", "M10 15h28v18h-28zl14 11l14-11")},
        {QStringLiteral("Files"), icon("#5596d8", "M10 34v-20h10l4 4h14v16z")},
        {QStringLiteral("chat"), icon("#3aa35b", "M11 14h26v16h-16l-6 6v-6h-4z")},
        {QStringLiteral("text-editor"), icon("#7a5fc8", "M12 16h24M12 24h24M12 32h14")},
        {QStringLiteral("maps"), icon("#2f8a57", "M24 38l-9-14a10 10 0 1 1 18 0z")},
    };
}
