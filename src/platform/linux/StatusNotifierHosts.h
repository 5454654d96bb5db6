#pragma once

#include <QString>

#include <functional>
#include <memory>

/// Whether somebody shows status items that register over D-Bus. Main thread only.
///
/// Items register with a watcher, and hosts, which are panels, take them from there. Both may come
/// late, go, and come back.
class StatusNotifierHosts
{
public:
    enum class Presence
    {
        Pending, ///< Asked, not answered yet.
        Present,
        Absent, ///< Also if the item that was handed over is refused.
    };

    /// Asks at once.
    StatusNotifierHosts();
    ~StatusNotifierHosts();

    /// Never waits. Counts an answer as soon as it has arrived, even if the event loop has not
    /// delivered it.
    Presence presence() const;

    /// Whether there is a watcher to register with.
    bool hasWatcher() const;

    /// Of the watcher, which is mostly the panel itself; 0 while it is not known.
    qint64 processId() const;

    /// Hands an item over to the watcher; to be repeated for each new one.
    void registerItem();

    /// Called when a watcher has come, also in place of another.
    std::function<void()> onWatcherStarted;

    /// Called after presence() or processId() may have changed.
    std::function<void()> onChanged;

private:
    class Watch;
    std::unique_ptr<Watch> m_watch; ///< Null without a session bus.
};
