#pragma once

#include <QImage>

class QColor;

/// The icon of the status item in \a color on a transparent ground, \a side pixels high.
///
/// The board alone is as wide as it is high; while recording is \a isPaused, the pause mark stands
/// out from it on the right. Main thread only.
QImage statusItemImage(int side, const QColor &color, bool isPaused);
