#pragma once

#include <chrono>
#include <cstddef>

/// Ends the exchange with a program that answers each selection that we take over with one of its
/// own, and ends again: such rounds follow each other at once, people do not.
class TakeOverLimit
{
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// Counts a round with content of that fingerprint; false if it is one too many. Refused rounds
    /// count as well. The same content coming back is a sign of an exchange much sooner than other
    /// content is.
    [[nodiscard]] bool beginRound(std::size_t fingerprint, TimePoint now);

private:
    TimePoint m_lastAttempt;
    std::size_t m_fingerprint = 0;
    int m_roundCount = 0;
    int m_sameContentCount = 0;
};
