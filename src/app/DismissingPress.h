#pragma once

#include <memory>

class ScheduledWork;
class Scheduler;

/// Knows the click that begins outside the history window and ends on the status item.
///
/// The press is a press outside, for which the window hides; that it is a click on the icon turns
/// out only when the button is let go. Such a click must leave the window hidden, though it finds
/// none that is there to stay. Main thread only.
class DismissingPress
{
public:
    /// \a scheduler must outlive the object.
    explicit DismissingPress(Scheduler &scheduler);
    ~DismissingPress();

    /// The window begins to hide because the person turned to something else.
    void note();

    /// True if the click that arrives now is the end of what made the window hide. A second click
    /// is one of its own, and so is one that comes later than a button is held for a click.
    bool takeClick();

private:
    Scheduler &m_scheduler;
    std::unique_ptr<ScheduledWork> m_expiry; ///< There while a click may still belong to the press.
};
