#include "platform/linux/SelectionPace.h"

#include <algorithm>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr int kToleratedRepetitions = 16;
constexpr int kMaxRepetitions = 32;
constexpr auto kFirstPause = 2ms;
constexpr auto kLongestPause = 512ms;
constexpr auto kLastPause = 2s;
/// After so long a quiet nothing is held against an owner.
constexpr auto kForgiveness = 10s;

} // namespace

void SelectionPace::noteTaken(std::uint32_t owner, bool isBeingAsked, TimePoint now)
{
    const bool isAnother = std::exchange(m_owner, owner) != owner;
    const bool isForgiven = now - std::exchange(m_lastTaken, now) > kForgiveness;
    if (isAnother)
        m_fingerprint = 0;
    if (isAnother || isForgiven)
        m_repetitions = 0;
    if (isBeingAsked)
        ++m_repetitions;
}

void SelectionPace::noteGiven(std::size_t fingerprint)
{
    const bool isTheSame = fingerprint != 0 && fingerprint == m_fingerprint;
    m_fingerprint = fingerprint;
    m_repetitions = isTheSame ? m_repetitions + 1 : 0;
}

bool SelectionPace::isRestless() const
{
    return m_repetitions > kToleratedRepetitions;
}

bool SelectionPace::isLastPause() const
{
    return m_repetitions == kMaxRepetitions;
}

std::optional<std::chrono::milliseconds> SelectionPace::pause() const
{
    if (m_repetitions > kMaxRepetitions)
        return std::nullopt;
    if (isLastPause())
        return kLastPause;
    const int doublings = std::max(0, m_repetitions - kToleratedRepetitions - 1);
    return std::min<std::chrono::milliseconds>(kFirstPause * (1 << doublings), kLongestPause);
}
