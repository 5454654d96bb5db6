#pragma once

#include <chrono>
#include <thread>

/// Ends the process if it takes too long to end by itself, as it does when its data lie on a disk
/// that has gone: a session that ends is not to be held up for ever.
class TerminationDeadline
{
public:
    explicit TerminationDeadline(std::chrono::milliseconds patience)
        : m_patience(patience)
    {
    }

    /// The time runs from now on, and until the object is destroyed.
    void start();

private:
    std::chrono::milliseconds m_patience;
    std::jthread m_thread;
};
