#include "window/WindowFrame.h"

#include <QRegularExpression>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace {

/// \a position, so that \a length from there on lies between \a start and \a start + \a room.
int clampedPosition(int position, int length, int start, int room)
{
    return std::max(start, std::min(position, start + room - length));
}

QPoint clampedPosition(QPoint position, QSize size, const QRect &available)
{
    return {clampedPosition(position.x(), size.width(), available.x(), available.width()),
            clampedPosition(position.y(), size.height(), available.y(), available.height())};
}

std::optional<int> pixels(const QString &number)
{
    constexpr double kMost = 1'000'000;
    const double value = number.toDouble();
    if (!(std::abs(value) <= kMost))
        return std::nullopt;
    return int(std::lround(value));
}

} // namespace

QString WindowFrame::toString(const QRect &frame)
{
    return u"{{%1, %2}, {%3, %4}}"_s.arg(frame.x())
        .arg(frame.y())
        .arg(frame.width())
        .arg(frame.height());
}

std::optional<QRect> WindowFrame::fromString(const QString &text)
{
    static const QString number = u"(-?[0-9]+(?:\\.[0-9]+)?)"_s;
    static const QRegularExpression form(
        u"^\\s*\\{\\s*\\{\\s*%1\\s*,\\s*%1\\s*\\}\\s*,\\s*\\{\\s*%1\\s*,\\s*%1\\s*\\}\\s*\\}\\s*$"_s
            .arg(number));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const auto x = pixels(match.captured(1));
    const auto y = pixels(match.captured(2));
    const auto height = pixels(match.captured(4));
    if (!x || !y || !height || *height <= 0)
        return std::nullopt;
    return QRect(*x, *y, kWindowWidth, *height);
}

QRect WindowFrame::centred(const QRect &available)
{
    return {available.x() + (available.width() - kWindowWidth) / 2,
            available.y() + (available.height() - kWindowDefaultHeight) / 2, kWindowWidth,
            kWindowDefaultHeight};
}

QRect WindowFrame::clamped(const QRect &frame, const QRect &available)
{
    const QSize size(std::min(kWindowWidth, available.width()),
                     std::min(std::max(frame.height(), kWindowMinHeight), available.height()));
    return {clampedPosition(frame.topLeft(), size, available), size};
}

QRect WindowFrame::moved(const QRect &frame, QPoint travel, const QRect &available)
{
    return {clampedPosition(frame.topLeft() + travel, frame.size(), available), frame.size()};
}

QRect WindowFrame::resized(const QRect &frame, Edge edge, int travel, const QRect &available)
{
    const int end = frame.y() + frame.height();
    const int availableEnd = available.y() + available.height();
    const bool isTop = edge == Edge::Top;
    const int wanted = isTop ? frame.height() - travel : frame.height() + travel;
    const int room = isTop ? end - available.y() : availableEnd - frame.y();
    // There may be no room at all, where the window stands on another screen.
    const int height = std::max(std::min({wanted, room, available.height()}), kWindowMinHeight);
    return {frame.x(), isTop ? end - height : frame.y(), frame.width(), height};
}
