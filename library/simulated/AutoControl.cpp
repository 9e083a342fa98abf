// SPDX-License-Identifier: MIT
// Control loops of the simulated cameras.
#include "library/simulated/AutoControl.h"

#include <algorithm>
#include <cmath>

namespace orvalis::simulated {
namespace {

constexpr double kTolerance = 0.01;
constexpr double kLargestStep = 5;
constexpr double kDamping = 0.8;
constexpr double kRatioMinimum = 0.0625, kRatioMaximum = 3.999;
constexpr double kRatioTolerance = 0.004;

} // namespace

Brightness nextBrightness(const BrightnessState &state)
{
    Brightness next{.exposure = state.exposure, .gain = state.gain};
    const double target = std::clamp(state.target, 0.02, 0.98);
    if (std::abs(state.mean - target) < kTolerance)
        return next;
    const double error = target / std::max(state.mean, 0.001);
    const double step =
        std::clamp(std::pow(error, kDamping / state.steepness), 1 / kLargestStep, kLargestStep);
    const double light = state.exposure * step; // at the present gain
    if (!state.gainAuto) {
        next.exposure = std::clamp(light, state.exposureMinimum, state.exposureMaximum);
        return next;
    }
    const double total = light * std::pow(10, state.gain / 20);
    if (state.exposureAuto)
        next.exposure = std::clamp(total, state.exposureMinimum, state.exposureMaximum);
    next.gain = std::clamp(20 * std::log10(total / next.exposure), 0.0, state.gainMaximum);
    return next;
}

std::array<double, 3> nextBalance(const std::array<double, 3> &ratio,
                                  const std::array<double, 3> &meanLight, bool atOnce)
{
    std::array<double, 3> next = ratio;
    for (std::size_t c = 0; c < 3; ++c) {
        const double goal =
            std::clamp(meanLight[1] / std::max(meanLight[c], 1e-9), kRatioMinimum, kRatioMaximum);
        if (atOnce)
            next[c] = goal;
        else if (std::abs(goal - ratio[c]) > kRatioTolerance)
            next[c] += (goal - ratio[c]) / 2;
    }
    return next;
}

} // namespace orvalis::simulated
