// SPDX-License-Identifier: MIT
// Everything that decides what a picture looks like, copied from the registers once per frame.
#pragma once

#include "library/simulated/TestPattern.h"

#include <array>
#include <cstdint>

namespace orvalis::simulated {

/// Part of a picture, in pixels.
struct Region {
    std::uint32_t x = 0;
    std::uint32_t y = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;

    bool operator==(const Region &) const = default;
};

/// How pixels of the sensor become pixels of the picture, from the left and from above: of every
/// `step` the mean of the first `bin`.
struct Reduction {
    std::uint32_t binX = 1;
    std::uint32_t binY = 1;
    std::uint32_t stepX = 1;
    std::uint32_t stepY = 1;
    std::uint32_t width = 0;  ///< pixels that are left of the sensor
    std::uint32_t height = 0; ///< rows

    /// False if every pixel is one of the picture.
    bool reduces() const { return stepX * stepY > 1; }
    bool operator==(const Reduction &) const = default;
};

/// Settings of one picture. Equal settings give equal pictures but for noise and motion.
struct SensorSettings {
    Region region;
    Reduction reduction;
    TestPattern pattern = TestPattern::Off;
    std::uint32_t patternShift = 0; ///< pixels that a moving pattern has moved
    std::uint32_t pixelFormat = 0;
    bool reverseX = false;
    bool reverseY = false;

    double exposure = 0; ///< microseconds
    double gain = 1;     ///< factor
    double black = 0;    ///< share of full scale
    double gamma = 1;    ///< exponent
    double contrast = 1; ///< factor about middle grey
    double hue = 0;      ///< radians
    double saturation = 1;
    double sharpness = 0;                 ///< weight of the detail that is added
    std::array<double, 3> ratio{1, 1, 1}; ///< of white balance: red, green, blue
    std::uint32_t illuminant = 0;         ///< number of SimulationIlluminant
    bool knee = false;                    ///< whether the points below count
    std::array<double, 4> kneePoints{};   ///< x1, y1, x2, y2, shares of full scale
    double shadowLift = 0;                ///< 0 to 1
    double noise = 1;                     ///< share of the noise that is left
    bool uniform = true;                  ///< false: the columns of the sensor differ

    bool operator==(const SensorSettings &) const = default;
};

/// What differs from frame to frame.
struct FrameStamp {
    std::uint32_t number = 0; ///< counts from 0 in each acquisition
    double seconds = 0;       ///< time of the scene
    bool motion = true;
    bool noise = true;
    bool overlay = false; ///< draw the number
};

} // namespace orvalis::simulated
