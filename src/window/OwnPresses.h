#pragma once

#include <QList>
#include <QObject>
#include <QPoint>

#include <functional>

/// Remembers for a while which presses of the mouse were meant for our own windows. Whoever is told
/// of a press later may find another window at its place, or none.
class OwnPresses : public QObject
{
    Q_OBJECT

public:
    /// \a isOwnPlace says of a place on the screen, at the time of the press, whether it is ours:
    /// an open menu gets the presses beside it too.
    explicit OwnPresses(std::function<bool(QPoint)> isOwnPlace);

    /// By the timestamp of the press's event.
    bool contains(quint64 timestamp) const { return m_timestamps.contains(timestamp); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    std::function<bool(QPoint)> m_isOwnPlace;
    QList<quint64> m_timestamps; ///< The latest comes last.
};
