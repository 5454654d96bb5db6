#pragma once

#include "platform/ImageCodec.h"

#include <functional>

/// Takes the bytes that a test calls pictures for such, and writes files that tell what they are.
class FakeImageCodec : public ImageCodec
{
public:
    std::optional<PasteboardImage> tiffFromPicture(const QByteArray &file) const override
    {
        if (!isPicture(file))
            return std::nullopt;
        return PasteboardImage{"tiff of " + file, QSize(2, 1)};
    }

    std::optional<QByteArray> pngFromPicture(const QByteArray &file) const override
    {
        return isPicture(file) ? std::optional("png of " + file) : std::nullopt;
    }

    std::optional<QImage> imageFromPicture(const QByteArray &file) const override
    {
        if (onImageWanted)
            onImageWanted();
        if (!isPicture(file))
            return std::nullopt;
        QImage image(2, 1, QImage::Format_RGB888);
        image.fill(Qt::white);
        return image;
    }

    std::optional<QImage> imageFromSmallPicture(const QByteArray &file,
                                                int longestSide) const override
    {
        std::optional<QImage> image = imageFromPicture(file);
        const bool isSmall = !file.startsWith("pixels, huge") && longestSide >= 2;
        return isSmall ? image : std::nullopt;
    }

    std::optional<QByteArray> jpegFromImage(const QImage &, double quality) const override
    {
        if (quality < 0.9 && onThumbnailWanted)
            onThumbnailWanted();
        return "jpeg " + QByteArray::number(quality);
    }

    std::optional<QByteArray> pngFromImage(const QImage &) const override { return "png"; }

    /// Called on the thread that wants to store a picture.
    std::function<void()> onImageWanted;
    /// The same, when the picture has its file.
    std::function<void()> onThumbnailWanted;

private:
    static bool isPicture(const QByteArray &file) { return file.startsWith("pixels"); }
};
