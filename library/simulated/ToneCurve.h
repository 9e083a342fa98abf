// SPDX-License-Identifier: MIT
// Converts light to sample values: black level, gamma, contrast, and the noise at each level.
#pragma once

#include "library/simulated/SensorSettings.h"

#include <array>
#include <cstdint>
#include <vector>

namespace orvalis::simulated {

/// The number of light steps; the last one is full scale.
constexpr std::uint32_t kLightSteps = 16384;

/// Tables indexed by light step.
struct ToneCurve {
    std::vector<std::uint16_t> value; ///< sample
    std::vector<std::uint16_t> sigma; ///< standard deviation of its noise, see kSigmaSteps
};

/// Computes the tables for samples up to `maximum` and standard deviations up to `sigmaMaximum`.
ToneCurve makeToneCurve(const SensorSettings &settings, int maximum, int sigmaMaximum);

/// Linear tables: step 0 gives 0, the last one `maximum`, without noise.
ToneCurve makeStraightCurve(int maximum);

/// Factors for the sensor's colours, rows and columns red, green, blue: exposure, gain, light,
/// white balance, saturation, hue. Light of value kWhite at the default exposure becomes 0.85 of
/// full scale, in light steps.
using ColorMatrix = std::array<std::array<float, 3>, 3>;
ColorMatrix makeColorMatrix(const SensorSettings &settings, double exposureDefault);

/// The white balance ratios for daylight.
constexpr std::array<double, 3> kNeutralRatio{1.4, 1.0, 1.6};

/// The luminance of a colour: the value in a monochrome format of a colour camera.
std::array<float, 3> brightnessRow(const ColorMatrix &matrix);

/// The sensor's response to one step of white light from the scene, before white balance.
std::array<double, 3> sensorResponse(std::uint32_t illuminant);

} // namespace orvalis::simulated
