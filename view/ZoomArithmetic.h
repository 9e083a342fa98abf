// SPDX-License-Identifier: MIT
// The arithmetic of the animated zoom.
#pragma once

/// Wheel units of one zoom step.
constexpr int wheelUnitsPerStep = 120;

/// Whole steps of a wheel movement; smaller ones are 0 steps.
constexpr int zoomSteps(int delta) { return delta / wheelUnitsPerStep; }

/// Adds `steps` to the pending ones. If the pending ones have the opposite direction and are more,
/// `steps` replaces them.
constexpr double addedScalings(double pending, int steps)
{
    const double sum = pending + steps;
    return sum * steps < 0 ? steps : sum;
}

/// Pending steps after a time line has ended. Deliberate: 0 becomes 1.
constexpr double scalingsAfterAnimation(double pending)
{
    return pending > 0 ? pending - 1 : pending + 1;
}

/// The scale factor of one tick of a time line.
constexpr double tickFactor(double pending) { return 1.0 + pending / 300.0; }

/// False if `factor` would mirror the image, or take `scale` to where coordinates overflow or
/// nothing is visible.
constexpr bool isUsefulZoom(double scale, double factor)
{
    constexpr double smallest = 1e-3;
    constexpr double largest = 1e3;
    if (!(factor > 0))
        return false;
    const double next = scale * factor;
    return (next >= smallest || factor >= 1) && (next <= largest || factor <= 1);
}
