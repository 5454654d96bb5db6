#include "platform/x11/X11Pixels.h"

#include <cstring>

#include <xcb/xcb.h>

namespace {

constexpr quint32 kAllPlanes = ~0u;

} // namespace

QImage::Format pixelFormat(quint8 depth)
{
    switch (depth) {
    case 32: return QImage::Format_ARGB32_Premultiplied;
    case 24: return QImage::Format_RGB32;
    case 16: return QImage::Format_RGB16;
    default: return QImage::Format_Invalid;
    }
}

QImage readPixels(X11Requests &requests, quint32 window, const QRect &part)
{
    if (part.isEmpty())
        return {};
    const auto pixels = requests.reply(
        xcb_get_image_reply,
        xcb_get_image(requests.xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, window, qint16(part.x()),
                      qint16(part.y()), quint16(part.width()), quint16(part.height()), kAllPlanes));
    if (!pixels)
        return {};
    QImage image(part.size(), pixelFormat(pixels->depth));
    // The lines of both are made of whole words of 32 bits.
    if (image.isNull() || xcb_get_image_data_length(pixels.get()) < image.sizeInBytes())
        return {};
    std::memcpy(image.bits(), xcb_get_image_data(pixels.get()), size_t(image.sizeInBytes()));
    return image;
}

void drawPixels(X11Requests &requests, quint32 window, quint8 depth, const QImage &image)
{
    const QImage native = image.convertToFormat(pixelFormat(depth));
    if (native.isNull())
        return;
    const xcb_gcontext_t context = xcb_generate_id(requests.xcb());
    xcb_create_gc(requests.xcb(), context, window, 0, nullptr);
    xcb_put_image(requests.xcb(), XCB_IMAGE_FORMAT_Z_PIXMAP, window, context,
                  quint16(native.width()), quint16(native.height()), 0, 0, 0, depth,
                  quint32(native.sizeInBytes()), native.constBits());
    xcb_free_gc(requests.xcb(), context);
}
