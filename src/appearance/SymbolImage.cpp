#include "appearance/SymbolImage.h"

#include "appearance/DevicePixels.h"

#include <QCache>
#include <QFile>
#include <QPainter>
#include <QSvgRenderer>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

constexpr int kCachedPixmaps = 256;
constexpr qreal kSidePerPoint = 1.2;

struct PixmapKey
{
    Symbol symbol;
    QRgb color;
    int devicePixels;
    qreal devicePixelRatio;

    friend bool operator==(const PixmapKey &, const PixmapKey &) = default;
};

size_t qHash(const PixmapKey &key, size_t seed)
{
    return qHashMulti(seed, key.symbol.name, key.symbol.pointSize, int(key.symbol.weight),
                      key.color, key.devicePixels);
}

QByteArrayView strokeWidth(SymbolWeight weight)
{
    switch (weight) {
    case SymbolWeight::Regular: return "stroke-width=\"17\"";
    case SymbolWeight::Medium: return "stroke-width=\"19\"";
    case SymbolWeight::Semibold: return "stroke-width=\"21\"";
    case SymbolWeight::Bold: return "stroke-width=\"23\"";
    }
    return {};
}

QByteArray drawing(const Symbol &symbol)
{
    QFile file(u":/symbols/"_s + symbol.name + u".svg"_s);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QByteArray svg = file.readAll();
    if (symbol.weight != SymbolWeight::Regular)
        svg.replace(strokeWidth(SymbolWeight::Regular), strokeWidth(symbol.weight));
    return svg;
}

QPixmap rasterise(const PixmapKey &key)
{
    QSvgRenderer renderer(drawing(key.symbol));
    if (!renderer.isValid())
        return {};
    QImage image(key.devicePixels, key.devicePixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    renderer.render(&painter);
    // The drawings are black; only their coverage counts.
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), QColor::fromRgba(key.color));
    painter.end();
    QPixmap pixmap = QPixmap::fromImage(std::move(image));
    pixmap.setDevicePixelRatio(key.devicePixelRatio);
    return pixmap;
}

} // namespace

QPixmap symbolPixmap(const Symbol &symbol, const QColor &color, qreal devicePixelRatio)
{
    static QCache<PixmapKey, QPixmap> cache(kCachedPixmaps);

    const int side = int(std::lround(kSidePerPoint * symbol.pointSize * devicePixelRatio));
    const PixmapKey key{symbol, color.rgba(), side, devicePixelRatio};
    if (const QPixmap *known = cache.object(key))
        return *known;
    const QPixmap pixmap = rasterise(key);
    cache.insert(key, new QPixmap(pixmap));
    return pixmap;
}

void drawSymbol(QPainter &painter, const QRectF &box, const Symbol &symbol, const QColor &color)
{
    const QPixmap pixmap = symbolPixmap(symbol, color, deviceScale(painter));
    painter.drawPixmap(centredOnDevice(painter, box, pixmap.deviceIndependentSize()), pixmap);
}
