// SPDX-License-Identifier: MIT
// The steps that automatic exposure, gain and white balance take from frame to frame.
#pragma once

#include <array>

namespace orvalis::simulated {

/// What automatic exposure and gain know when a frame is complete.
struct BrightnessState {
    double mean = 0;      ///< of the picture, 0 to 1
    double target = 0;    ///< 0 to 1
    double steepness = 1; ///< how strongly the mean follows the light: gamma, contrast
    bool exposureAuto = false;
    bool gainAuto = false;
    double exposure = 0; ///< microseconds
    double exposureMinimum = 0;
    double exposureMaximum = 0;
    double gain = 0; ///< dB
    double gainMaximum = 0;
};

/// Exposure time in microseconds and gain in dB.
struct Brightness {
    double exposure = 0;
    double gain = 0;
};

/// The next exposure and gain. With both automatic, gain starts where exposure ends. Unchanged when
/// the picture is as bright as it should be within a hundredth.
Brightness nextBrightness(const BrightnessState &state);

/// The next ratios of white balance: half of the way to those that make the mean of the scene grey,
/// all of it with `atOnce`.
std::array<double, 3> nextBalance(const std::array<double, 3> &ratio,
                                  const std::array<double, 3> &meanLight, bool atOnce);

} // namespace orvalis::simulated
