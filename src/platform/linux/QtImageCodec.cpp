#include "platform/linux/QtImageCodec.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>
#include <QImageWriter>

using namespace Qt::StringLiterals;

namespace {

/// A panorama of 16,000 x 6,000 fits, and a screenshot of a very long page.
constexpr qint64 kMaxPixels = 100'000'000;
/// While it is decoded a picture may have 16 bits in each of its four channels.
constexpr int kDecodingMegabytes = static_cast<int>(kMaxPixels * 8 / (1 << 20)) + 1;
/// 72 dots per inch; what the source says would make two files of one picture.
constexpr int kDotsPerMeter = 2835;
/// In Qt's scale of 0 to 100. The program that pastes waits for a PNG, which lives for a moment.
constexpr int kNoCompression = 0;
constexpr int kFastCompression = 11;

bool isReadable(const QImageReader &reader)
{
    const QSize size = reader.size();
    const QByteArray format = reader.format();
    return !size.isEmpty() && qint64(size.width()) * size.height() <= kMaxPixels &&
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
    } else {
        image.convertTo(QImage::Format_RGB32);
    }
    image.setColorSpace(QColorSpace());
    image.setDotsPerMeterX(kDotsPerMeter);
    image.setDotsPerMeterY(kDotsPerMeter);
    return image;
}

/// Absent if it is no picture, or one that is refused.
std::optional<QImage> decoded(const QByteArray &file)
{
    QBuffer source;
    source.setData(file);
    source.open(QIODevice::ReadOnly);
    QImageReader reader(&source);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    if (!isReadable(reader))
        return std::nullopt;
    QImage image = reader.read();
    if (image.isNull())
        return std::nullopt;
    return normalised(std::move(image));
}

std::optional<QByteArray> encoded(const QImage &image, const QByteArray &format, int compression)
{
    QByteArray file;
    QBuffer sink(&file);
    sink.open(QIODevice::WriteOnly);
    QImageWriter writer(&sink, format);
    writer.setCompression(compression);
    if (!writer.write(image))
        return std::nullopt;
    return file;
}

} // namespace

QtImageCodec::QtImageCodec()
{
    QImageReader::setAllocationLimit(kDecodingMegabytes);
}

std::optional<PasteboardImage> QtImageCodec::tiffFromPicture(const QByteArray &file) const
{
    const std::optional<QImage> image = decoded(file);
    if (!image)
        return std::nullopt;
    std::optional<QByteArray> tiff = encoded(*image, "tiff", kNoCompression);
    if (!tiff)
        return std::nullopt;
    return PasteboardImage{std::move(*tiff), image->size()};
}

std::optional<QByteArray> QtImageCodec::pngFromPicture(const QByteArray &file) const
{
    const std::optional<QImage> image = decoded(file);
    return image ? encoded(*image, "png", kFastCompression) : std::nullopt;
}
