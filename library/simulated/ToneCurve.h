// SPDX-License-Identifier: MIT
// From light to sample values: black level, gamma, contrast, and the noise at each brightness.
#pragma once

#include "library/simulated/SensorSettings.h"

#include <array>
#include <cstdint>
#include <vector>

namespace orvalis::simulated {

/// Steps of light that a curve distinguishes; the last one is full scale.
constexpr std::uint32_t kLightSteps = 16384;

/// Tables from light to sample.
struct ToneCurve {
    std::vector<std::uint16_t> value; ///< sample
    std::vector<std::uint16_t> sigma; ///< standard deviation of its noise, see kSigmaSteps
};

/// Makes the tables for samples up to `maximum` with sigmas up to `sigmaMaximum`.
ToneCurve makeToneCurve(const SensorSettings &settings, int maximum, int sigmaMaximum);

/// The tables that take light as it is: step 0 to 0, the last one to `maximum`, without noise.
ToneCurve makeStraightCurve(int maximum);

/// What the sensor's colours are multiplied by, rows and columns red, green, blue: exposure, gain,
/// light, white balance, saturation, hue. Light of value kWhite at the default exposure becomes
/// 0.85 of full scale, in steps of light.
using ColorMatrix = std::array<std::array<float, 3>, 3>;
ColorMatrix makeColorMatrix(const SensorSettings &settings, double exposureDefault);

/// The ratios that balance the sensor in daylight.
constexpr std::array<double, 3> kNeutralRatio{1.4, 1.0, 1.6};

/// Brightness of a colour: what a monochrome format of a colour camera shows.
std::array<float, 3> brightnessRow(const ColorMatrix &matrix);

/// What one step of white light from the scene is to the sensor, without any balance.
std::array<double, 3> sensorResponse(std::uint32_t illuminant);

} // namespace orvalis::simulated
