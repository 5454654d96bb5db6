#pragma once

#include "platform/Pasteboard.h"

#include <QImage>

/// Reads and writes picture files. Any thread.
class ImageCodec
{
public:
    virtual ~ImageCodec() = default;

    /// Decodes \a file, a picture of any known format, and writes it as a TIFF: the same pixels
    /// always give the same bytes. Absent if the bytes are no picture, if it has no extent, or if
    /// it would take an unreasonable amount of memory. What this function has made itself it
    /// returns as it is, which costs nothing. The digest is left to the caller.
    virtual std::optional<PasteboardImage> tiffFromPicture(const QByteArray &file) const = 0;

    /// Decodes \a file and writes it as a PNG. Absent like above.
    virtual std::optional<QByteArray> pngFromPicture(const QByteArray &file) const = 0;

    /// The pixels of \a file, upright. Absent like above.
    virtual std::optional<QImage> imageFromPicture(const QByteArray &file) const = 0;

    /// The same of a picture of no more than \a longestSide pixels at either side, and absent for a
    /// larger one, which is not decoded: a small file may hold a huge picture.
    virtual std::optional<QImage> imageFromSmallPicture(const QByteArray &file,
                                                        int longestSide) const = 0;

    /// A JPEG; \a quality goes from 0 to 1. What shines through stands before white.
    virtual std::optional<QByteArray> jpegFromImage(const QImage &image, double quality) const = 0;

    /// A PNG that is to be kept, and therefore small.
    virtual std::optional<QByteArray> pngFromImage(const QImage &image) const = 0;
};
