#pragma once

#include <chrono>

/// A weight that a spring draws to its place; it swings about the place before it rests there.
struct Spring
{
    double mass = 1;
    double stiffness = 1;
    double damping = 1; ///< Less than what would keep it from swinging.

    /// From 0, where it is let go, to 1, where it rests.
    double positionAfter(std::chrono::duration<double> time) const;

    /// When it is not seen to move any more.
    std::chrono::milliseconds settlingDuration() const;
};
