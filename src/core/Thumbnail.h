#pragma once

#include <QImage>

/// \a image made to fit into a square of \a longestSide pixels. What fits stays as it is.
QImage thumbnailOf(const QImage &image, int longestSide);
