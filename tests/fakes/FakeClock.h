#pragma once

#include "platform/Clock.h"

#include <atomic>

/// A clock that stands still until a test moves it.
class FakeClock : public Clock
{
public:
    Timestamp now() const override { return timestampFromMicroseconds(m_microseconds.load()); }
    void advance(std::chrono::microseconds step) { m_microseconds += step.count(); }
    void set(Timestamp time) { m_microseconds = microsecondsSinceEpoch(time); }

private:
    /// Some day in the spring of 2026.
    std::atomic<qint64> m_microseconds{1'776'000'000'000'000};
};
