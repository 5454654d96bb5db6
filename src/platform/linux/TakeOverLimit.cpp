#include "platform/linux/TakeOverLimit.h"

using namespace std::chrono_literals;

namespace {

/// After so long without an attempt nobody is answering us.
constexpr auto kQuiet = 2s;
/// A person may well copy from short-lived programs several times in a row.
constexpr int kMaxSameContentRounds = 4;
constexpr int kMaxRounds = 256;

} // namespace

bool TakeOverLimit::beginRound(std::size_t fingerprint, TimePoint now)
{
    if (now - m_lastAttempt >= kQuiet) {
        m_roundCount = 0;
        m_sameContentCount = 0;
    }
    m_lastAttempt = now;
    if (fingerprint != m_fingerprint)
        m_sameContentCount = 0;
    m_fingerprint = fingerprint;
    return ++m_roundCount <= kMaxRounds && ++m_sameContentCount <= kMaxSameContentRounds;
}
