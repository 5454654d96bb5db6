#pragma once

#include <QtGlobal>

#include <chrono>

/// How long fades take where the person wants nothing to move.
inline constexpr std::chrono::milliseconds kReducedFade{100};

/// How a value moves from 0 to 1 while \a progress does.
qreal steady(qreal progress);
qreal easeIn(qreal progress);
qreal easeOut(qreal progress);
qreal easeInOut(qreal progress);
