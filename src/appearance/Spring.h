#pragma once

#include <chrono>

/// A weight that a spring draws to its place. With little damping it swings about the place before
/// it rests there, with much it creeps to it.
struct Spring
{
    double mass = 1;
    double stiffness = 1;
    double damping = 1; ///< More than nothing, or it never rests.

    /// From 0, where it is let go, to 1, where it rests.
    double positionAfter(std::chrono::duration<double> time) const;

    /// When it has come within \a distance of its place for good. Of a spring that swings, its reach
    /// counts and not where it happens to be.
    std::chrono::milliseconds settlingDuration(double distance = 0.001) const;
};
