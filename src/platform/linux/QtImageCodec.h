#pragma once

#include "platform/ImageCodec.h"

/// Pictures by Qt's image plug-ins.
class QtImageCodec : public ImageCodec
{
public:
    /// Sets the limit of memory that Qt grants to one picture, for the whole program.
    QtImageCodec();

    /// Looks at the picture's own statement of its size first: what claims to have more than 100
    /// million pixels is refused before any memory is taken, and so is what does not tell, and
    /// drawings (SVG), which are programs rather than pictures. The result stands upright, has 8
    /// bits a colour, an alpha channel only if something shines through, and carries neither texts
    /// nor resolution nor colour profile.
    std::optional<PasteboardImage> tiffFromPicture(const QByteArray &file) const override;
};
