#include "platform/linux/QtImageCodec.h"

#include "platform/linux/PlainTiff.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>
#include <QImageWriter>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

/// A panorama of 16,000 x 6,000 fits, and a screenshot of a very long page.
constexpr qint64 kMaxPixels = 100'000'000;
/// While it is decoded a picture may have 16 bits in each of its four channels.
constexpr int kDecodingMegabytes = static_cast<int>(kMaxPixels * 8 / (1 << 20)) + 1;
/// 72 dots per inch, whatever the source says.
constexpr int kDotsPerMeter = 2835;
/// In Qt's scale of 0 to 100. The program that pastes waits for a PNG, which lives for a moment.
constexpr int kFastCompression = 11;
/// For what stays. More takes half as long again, and saves next to nothing.
constexpr int kLastingCompression = 33;

bool isReadable(const QImageReader &reader, int longestSide)
{
    const QSize size = reader.size();
    const QByteArray format = reader.format();
    return !size.isEmpty() && std::max(size.width(), size.height()) <= longestSide && qint64(size.width()) * size.height() <= kMaxPixels &&
           !format.startsWith("svg");
}

bool isOpaque(const QImage &image)
{
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        const auto isFull = [](QRgb pixel) { return qAlpha(pixel) == 255; };
        if (!std::all_of(line, line + image.width(), isFull))
            return false;
    }
    return true;
}

/// The same pixels, in one of two formats and without anything beside them.
QImage normalised(QImage image)
{
    if (image.hasAlphaChannel()) {
        image.convertTo(QImage::Format_ARGB32);
        if (isOpaque(image))
            image.reinterpretAsFormat(QImage::Format_RGB32);
    }
    // Encoders take much longer to pick three bytes out of four than the conversion takes.
    image.convertTo(image.hasAlphaChannel() ? QImage::Format_RGBA8888 : QImage::Format_RGB888);
    image.setColorSpace(QColorSpace());
    image.setDotsPerMeterX(kDotsPerMeter);
    image.setDotsPerMeterY(kDotsPerMeter);
    return image;
}

QImage beforeWhite(const QImage &image)
{
    QImage flat = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < flat.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(flat.scanLine(y));
        for (QRgb *pixel = line; pixel != line + flat.width(); ++pixel) {
            // No colour is above its alpha, so that none runs over.
            const QRgb white = QRgb(255 - qAlpha(*pixel)) * 0x010101;
            *pixel = qRgb(0, 0, 0) | (*pixel + white);
        }
    }
    flat.reinterpretAsFormat(QImage::Format_RGB32);
    return flat;
}

/// Absent if \a writer, which is told everything but where to write, cannot do it.
std::optional<QByteArray> written(QImageWriter &writer, const QImage &image)
{
    QByteArray file;
    QBuffer sink(&file);
    sink.open(QIODevice::WriteOnly);
    writer.setDevice(&sink);
    if (!writer.write(image))
        return std::nullopt;
    return file;
}

std::optional<QByteArray> pngFrom(const QImage &image, int compression)
{
    QImageWriter writer;
    writer.setFormat("png");
    writer.setCompression(compression);
    return written(writer, image);
}

} // namespace

QtImageCodec::QtImageCodec()
{
    QImageReader::setAllocationLimit(kDecodingMegabytes);
}

std::optional<PasteboardImage> QtImageCodec::tiffFromPicture(const QByteArray &file) const
{
    if (const QImage own = PlainTiff::imageIn(file); !own.isNull())
        return PasteboardImage{file, own.size()};
    const std::optional<QImage> image = imageFromPicture(file);
    if (!image)
        return std::nullopt;
    return PasteboardImage{PlainTiff::fromImage(*image), image->size()};
}

std::optional<QByteArray> QtImageCodec::pngFromPicture(const QByteArray &file) const
{
    const std::optional<QImage> image = imageFromPicture(file);
    return image ? pngFrom(*image, kFastCompression) : std::nullopt;
}

std::optional<QImage> QtImageCodec::imageFromPicture(const QByteArray &file) const
{
    return imageFromSmallPicture(file, std::numeric_limits<int>::max());
}

std::optional<QImage> QtImageCodec::imageFromSmallPicture(const QByteArray &file,
                                                          int longestSide) const
{
    if (QImage image = PlainTiff::imageIn(file); !image.isNull())
        return std::max(image.width(), image.height()) <= longestSide ? std::optional(image)
                                                                      : std::nullopt;
    QBuffer source;
    source.setData(file);
    source.open(QIODevice::ReadOnly);
    QImageReader reader(&source);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    if (!isReadable(reader, longestSide))
        return std::nullopt;
    QImage image = reader.read();
    if (image.isNull())
        return std::nullopt;
    return normalised(std::move(image));
}

std::optional<QByteArray> QtImageCodec::jpegFromImage(const QImage &image, double quality) const
{
    QImageWriter writer;
    writer.setFormat("jpeg");
    writer.setQuality(qRound(quality * 100));
    return written(writer, image.hasAlphaChannel() ? beforeWhite(image) : image);
}

std::optional<QByteArray> QtImageCodec::pngFromImage(const QImage &image) const
{
    return pngFrom(image, kLastingCompression);
}
