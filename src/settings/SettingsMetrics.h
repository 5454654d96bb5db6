#pragma once

#include <QtGlobal>

/// Measures that several views of the settings share, in device-independent pixels.
namespace SettingsMetrics {
inline constexpr int kRowHeight = 42;
inline constexpr int kRowInset = 14; ///< Of texts and lines from the edges of a card.
inline constexpr int kRowEnd = 12;   ///< Of controls from the right edge of a card.
inline constexpr qreal kCardRadius = 10;
} // namespace SettingsMetrics
