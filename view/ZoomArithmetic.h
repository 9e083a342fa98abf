// SPDX-License-Identifier: MIT
// The numbers behind the animated zoom.
#pragma once

/// Wheel units of one zoom step.
constexpr int wheelUnitsPerStep = 120;

/// Whole steps of a wheel movement; smaller ones are 0 steps.
constexpr int zoomSteps(int delta) { return delta / wheelUnitsPerStep; }

/// Adds steps to those that are pending; a change of direction that leaves a rest drops
/// the pending ones.
constexpr double addedScalings(double pending, int steps)
{
    const double sum = pending + steps;
    return sum * steps < 0 ? steps : sum;
}

/// Pending steps after the end of one time line. 0 becomes 1; kept.
constexpr double scalingsAfterAnimation(double pending)
{
    return pending > 0 ? pending - 1 : pending + 1;
}

/// What one tick of a time line scales by.
constexpr double tickFactor(double pending) { return 1.0 + pending / 300.0; }

/// False where `factor` would turn the picture over, or take `scale` to where coordinates overflow
/// and nothing can be seen any more.
constexpr bool isUsefulZoom(double scale, double factor)
{
    constexpr double smallest = 1e-3;
    constexpr double largest = 1e3;
    if (!(factor > 0))
        return false;
    const double next = scale * factor;
    return (next >= smallest || factor >= 1) && (next <= largest || factor <= 1);
}
