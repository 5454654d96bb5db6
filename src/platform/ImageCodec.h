#pragma once

#include "platform/Pasteboard.h"

/// Reads and writes picture files. Any thread.
class ImageCodec
{
public:
    virtual ~ImageCodec() = default;

    /// Decodes \a file, a picture of any known format, and writes it as a TIFF: the same pixels
    /// always give the same bytes. Absent if the bytes are no picture, if it has no extent, or if
    /// it would take an unreasonable amount of memory.
    virtual std::optional<PasteboardImage> tiffFromPicture(const QByteArray &file) const = 0;

    /// Decodes \a file and writes it as a PNG. Absent like above.
    virtual std::optional<QByteArray> pngFromPicture(const QByteArray &file) const = 0;
};
