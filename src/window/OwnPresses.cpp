#include "window/OwnPresses.h"

#include <QCoreApplication>
#include <QMouseEvent>

namespace {

/// More than a hand makes while the program does something else.
constexpr qsizetype kMaxRemembered = 16;

} // namespace

OwnPresses::OwnPresses(std::function<bool(QPoint)> isOwnPlace)
    : m_isOwnPlace(std::move(isOwnPlace))
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool OwnPresses::eventFilter(QObject *watched, QEvent *event)
{
    // The window gets it before any of its widgets, which may close it.
    if (event->type() != QEvent::MouseButtonPress || !watched->isWindowType())
        return false;
    const auto *press = static_cast<QMouseEvent *>(event);
    if (!m_isOwnPlace(press->globalPosition().toPoint()))
        return false;
    m_timestamps.append(press->timestamp());
    if (m_timestamps.size() > kMaxRemembered)
        m_timestamps.removeFirst();
    return false;
}
