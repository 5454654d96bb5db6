#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

/// Slows the reading of an owner that takes the selection anew because it was asked for its data.
///
/// Asking such an owner at each change would keep both of us busy for ever. A person, or a program
/// that copies in a burst, is not slowed: those do not wait for our questions, nor do they repeat
/// themselves for long.
class SelectionPace
{
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    /// \a owner, a number of the desktop's, has taken the selection.
    void taken(std::uint32_t owner, bool isBeingAsked, TimePoint now);

    /// It was left in peace until it had given all that was asked for. \a contentHash is 0 for what
    /// is like nothing else.
    void gave(std::size_t contentHash, TimePoint now);

    /// From now on the owner is to be asked only after pause(), and to be asked to the end.
    bool isRestless() const;
    std::chrono::milliseconds pause() const;

private:
    void repeat(TimePoint now);

    std::uint32_t m_owner = 0;
    std::size_t m_contentHash = 0;
    int m_repetitions = 0;
    TimePoint m_lastRepetition;
};
