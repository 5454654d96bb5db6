#pragma once

#include "foundation/Timestamp.h"

/// Tells the hour. Any thread.
class Clock
{
public:
    virtual ~Clock() = default;

    virtual Timestamp now() const = 0;
};
