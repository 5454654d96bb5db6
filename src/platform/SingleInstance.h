#pragma once

#include <QString>

#include <functional>

/// Sees to it that the program runs once for each person's history. Main thread only.
class SingleInstance
{
public:
    enum class Role
    {
        First,   ///< This process is the one that runs.
        Second,  ///< Another process runs already.
        Unknown, ///< There is no way to tell; the program runs.
    };

    enum class Answer
    {
        Shown, ///< The other process shows its window.
        Ended, ///< The other process has ended meanwhile; claim() may now give another role.
        None,  ///< The other process did not answer in time.
    };

    virtual ~SingleInstance() = default;

    /// Needs no application object.
    virtual Role claim() = 0;

    /// Asks the first process to show itself; to be called by a second one, and without an
    /// application object too. \a activationToken is what the launcher gave this process along; it
    /// may be empty.
    [[nodiscard]] virtual Answer activateFirst(const QString &activationToken) = 0;

    /// Lets the first process hear of second ones, also of those that came since it has its role.
    /// Needs the application object, which must outlive this one's last call of onActivated.
    virtual void listen() = 0;

    /// Called in the first process when a second one was started, with that one's token. While
    /// there is nobody to call, second ones wait.
    std::function<void(const QString &activationToken)> onActivated;
};
