#pragma once

#include <QtGlobal>

/// Measures that all controls share, in device-independent pixels.
namespace ControlMetrics {
inline constexpr int kControlHeight = 28;
inline constexpr qreal kControlRadius = 7;
inline constexpr int kControlFontSize = 13;
} // namespace ControlMetrics
