#pragma once

#include "platform/ImageCodec.h"

/// Pictures by Qt's image plug-ins.
///
/// The picture's own statement of its size is looked at first: what claims to have more than 100
/// million pixels is refused before any memory is taken, and so is what does not tell, and drawings
/// (SVG), which are programs rather than pictures. The results stand upright, have 8 bits a colour,
/// an alpha channel only if something shines through, and carry neither texts nor resolution nor
/// colour profile.
class QtImageCodec : public ImageCodec
{
public:
    /// Sets the limit of memory that Qt grants to one picture, for the whole program.
    QtImageCodec();

    std::optional<PasteboardImage> tiffFromPicture(const QByteArray &file) const override;
    std::optional<QByteArray> pngFromPicture(const QByteArray &file) const override;
    std::optional<QImage> imageFromPicture(const QByteArray &file) const override;
    std::optional<QImage> imageFromSmallPicture(const QByteArray &file,
                                                int longestSide) const override;
    std::optional<QByteArray> jpegFromImage(const QImage &image, double quality) const override;
    std::optional<QByteArray> pngFromImage(const QImage &image) const override;
};
