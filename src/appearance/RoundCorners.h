#pragma once

#include <QImage>

/// \a picture with round corners of \a radius, in its own pixels. Any thread.
QImage withRoundCorners(const QImage &picture, qreal radius);
