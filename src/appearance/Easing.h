#pragma once

#include <QtGlobal>

/// How a value moves from 0 to 1 while \a progress does.
qreal easeIn(qreal progress);
qreal easeOut(qreal progress);
qreal easeInOut(qreal progress);
