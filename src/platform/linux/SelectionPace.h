#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>

/// Slows the reading of an owner that takes the selection anew because it was asked for its data,
/// and in the end gives it up.
///
/// Asking such an owner at each change would keep both of us busy for ever. A person, or a program
/// that copies in a burst, is not slowed: those do not wait for our questions, nor do they repeat
/// themselves for long.
class SelectionPace
{
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// The program with that number of the desktop's has taken the selection.
    void noteTaken(std::uint32_t owner, bool isBeingAsked, TimePoint now);

    /// It was left in peace until it had given all that was asked for. \a fingerprint is 0 for what
    /// is like nothing else.
    void noteGiven(std::size_t fingerprint);

    /// From now on the owner is to be asked only after pause().
    bool isRestless() const;

    /// The next pause is the last one, and is to begin anew whenever the selection is taken, so that
    /// what lies there when all is quiet is read after all.
    bool isLastPause() const;

    /// Absent when the owner is not to be asked any more, until another one comes, or it has kept
    /// quiet for a while.
    std::optional<std::chrono::milliseconds> pause() const;

private:
    std::uint32_t m_owner = 0;
    std::size_t m_fingerprint = 0;
    int m_repetitions = 0;
    TimePoint m_lastTaken;
};
