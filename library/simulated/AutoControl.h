// SPDX-License-Identifier: MIT
// One control step of automatic exposure, gain and white balance for each frame.
#pragma once

#include <array>

namespace orvalis::simulated {

/// The input of automatic exposure and gain after a frame.
struct BrightnessState {
    double mean = 0;      ///< of the image, 0 to 1
    double target = 0;    ///< 0 to 1
    double steepness = 1; ///< slope of the mean over the light: gamma, contrast
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

/// The next exposure and gain. If both are automatic, gain covers only what exposure cannot.
/// Unchanged if the mean is within a hundredth of the target.
Brightness nextBrightness(const BrightnessState &state);

/// The next ratios of white balance: half of the way to those that make the mean of the scene grey,
/// or all of it if `atOnce`.
std::array<double, 3> nextBalance(const std::array<double, 3> &ratio,
                                  const std::array<double, 3> &meanLight, bool atOnce);

} // namespace orvalis::simulated
