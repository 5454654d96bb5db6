#pragma once

#include <QRect>
#include <QString>

#include <optional>

/// Where the history window may stand. Rectangles are in global device-independent pixels from the
/// top left; \a available is what a screen leaves to windows.
namespace WindowFrame {

inline constexpr int kWindowWidth = 680;
inline constexpr int kWindowDefaultHeight = 500;
inline constexpr int kWindowMinHeight = 244;

/// As it is stored: "{{x, y}, {width, height}}".
QString toString(const QRect &frame);

/// The stored frame with the window's width; absent if \a text is no frame or an empty one.
std::optional<QRect> fromString(const QString &text);

/// A window of the default size in the middle.
QRect centred(const QRect &available);

/// \a frame with the window's width and at least its least height, but no larger than \a available
/// and wholly on it.
QRect clamped(const QRect &frame, const QRect &available);

/// \a frame moved by \a travel, but not off \a available.
QRect moved(const QRect &frame, QPoint travel, const QRect &available);

enum class Edge { Top, Bottom };

/// \a frame with one edge dragged by \a travel downwards while the other one stays. It does not go
/// beyond \a available, unless for the least height.
QRect resized(const QRect &frame, Edge edge, int travel, const QRect &available);

} // namespace WindowFrame
