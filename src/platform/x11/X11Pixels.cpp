#include "platform/x11/X11Pixels.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include <xcb/xcb.h>

namespace {

constexpr quint32 kAllPlanes = ~0u;

/// How many lines of a picture the server takes at once; the connection ends with a request that is
/// too large.
int linesPerRequest(xcb_connection_t *xcb, qsizetype bytesPerLine)
{
    constexpr qint64 kWord = 4;
    // The length of a large request takes one word more.
    constexpr qint64 kHeader = qint64(sizeof(xcb_put_image_request_t)) + kWord;
    const qint64 room = kWord * xcb_get_maximum_request_length(xcb) - kHeader;
    constexpr qint64 kMaxLines = std::numeric_limits<qint16>::max();
    return int(std::clamp<qint64>(room / bytesPerLine, 1, kMaxLines));
}

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

void drawPixels(X11Requests &requests, quint32 window, quint8 depth, const QPoint &place,
                const QImage &image)
{
    const QImage native = image.convertToFormat(pixelFormat(depth));
    if (native.isNull())
        return;
    xcb_connection_t *xcb = requests.xcb();
    const xcb_gcontext_t context = xcb_generate_id(xcb);
    xcb_create_gc(xcb, context, window, 0, nullptr);
    const int lineCount = linesPerRequest(xcb, native.bytesPerLine());
    for (int y = 0; y < native.height(); y += lineCount) {
        const int height = std::min(lineCount, native.height() - y);
        xcb_put_image(xcb, XCB_IMAGE_FORMAT_Z_PIXMAP, window, context, quint16(native.width()),
                      quint16(height), qint16(place.x()), qint16(place.y() + y), 0, depth,
                      quint32(height * native.bytesPerLine()), native.constScanLine(y));
    }
    xcb_free_gc(xcb, context);
}
