#pragma once

#include <QString>

#include <functional>

/// Sees to it that the program runs once for each person and session. Main thread only.
class SingleInstance
{
public:
    enum class Role {
        First, ///< This process is the one that runs.
        Second, ///< Another process runs already.
        Unknown, ///< The session offers no way to tell; the program runs.
    };

    virtual ~SingleInstance() = default;

    virtual Role claim() = 0;

    /// Asks the first process to show itself. False if it did not answer in time.
    /// \a activationToken is what the launcher gave this process along; it may be empty.
    [[nodiscard]] virtual bool activateFirst(const QString &activationToken) = 0;

    /// Called in the first process when a second one was started, with that one's token.
    std::function<void(const QString &activationToken)> onActivated;
};
