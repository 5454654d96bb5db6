#pragma once

#include "platform/x11/X11Requests.h"

#include <QImage>
#include <QRect>

/// Pictures that go to the server and come from it.

/// How a picture for windows of \a depth lies in memory; Format_Invalid for such as we do not draw.
QImage::Format pixelFormat(quint8 depth);

/// What is seen in \a part of a window, in its own places; null if the window is not on the screen
/// or \a part not within it.
QImage readPixels(X11Requests &requests, quint32 window, const QRect &part);

/// Draws \a image, converted as the window needs it, with its top left corner at \a place. A picture
/// that is too large for one request goes in several.
void drawPixels(X11Requests &requests, quint32 window, quint8 depth, const QPoint &place,
                const QImage &image);
