#pragma once

#include <chrono>
#include <cstddef>

/// Ends the exchange with a program that answers each selection that we take over with one of its
/// own, and ends again: such rounds follow each other at once, people do not.
class TakeOverLimit
{
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// Whether one more round may be played with content of that hash. The same content coming back
    /// is a sign of an exchange much sooner than other content is.
    bool allowsRound(std::size_t contentHash, TimePoint now);

private:
    TimePoint m_lastAttempt;
    std::size_t m_contentHash = 0;
    int m_roundCount = 0;
    int m_sameContentCount = 0;
};
