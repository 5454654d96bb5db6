#include "platform/linux/SelectionPace.h"

#include <algorithm>
#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr int kTolerated = 16;
constexpr int kMaxDoublings = 9;
constexpr auto kFirstPause = 1ms;
/// After so long without a repetition nothing is held against an owner.
constexpr auto kForgiveness = 2s;

} // namespace

void SelectionPace::taken(std::uint32_t owner, bool isBeingAsked, TimePoint now)
{
    if (std::exchange(m_owner, owner) != owner) {
        m_repetitions = 0;
        m_contentHash = 0;
    } else if (now - m_lastRepetition > kForgiveness) {
        m_repetitions = 0;
    }
    if (isBeingAsked)
        repeat(now);
}

void SelectionPace::gave(std::size_t contentHash, TimePoint now)
{
    const bool isTheSame = contentHash != 0 && contentHash == m_contentHash;
    m_contentHash = contentHash;
    if (isTheSame)
        repeat(now);
    else
        m_repetitions = 0;
}

void SelectionPace::repeat(TimePoint now)
{
    ++m_repetitions;
    m_lastRepetition = now;
}

bool SelectionPace::isRestless() const
{
    return m_repetitions > kTolerated;
}

std::chrono::milliseconds SelectionPace::pause() const
{
    return kFirstPause * (1 << std::clamp(m_repetitions - kTolerated, 0, kMaxDoublings));
}
