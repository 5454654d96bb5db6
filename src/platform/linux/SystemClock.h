#pragma once

#include "platform/Clock.h"

/// The machine's clock.
class SystemClock : public Clock
{
public:
    Timestamp now() const override
    {
        return std::chrono::time_point_cast<Timestamp::duration>(std::chrono::system_clock::now());
    }
};
