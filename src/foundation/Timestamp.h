#pragma once

#include <QtGlobal>

#include <chrono>

/// A moment in UTC, to the microsecond: the resolution that the history keeps on disk.
using Timestamp = std::chrono::sys_time<std::chrono::microseconds>;

/// Microseconds since the Unix epoch.
constexpr qint64 microsecondsSinceEpoch(Timestamp time)
{
    return time.time_since_epoch().count();
}

constexpr Timestamp timestampFromMicroseconds(qint64 microseconds)
{
    return Timestamp(std::chrono::microseconds(microseconds));
}
