// SPDX-License-Identifier: MIT
// All settings that affect an image, copied from the registers once for each frame.
#pragma once

#include "library/simulated/TestPattern.h"

#include <array>
#include <cstdint>

namespace orvalis::simulated {

/// A part of an image, in pixels.
struct Region {
    std::uint32_t x = 0;
    std::uint32_t y = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;

    bool operator==(const Region &) const = default;
};

/// How sensor pixels become image pixels, from the left and from the top: each `step` pixels become
/// the mean of the first `bin`.
struct Reduction {
    std::uint32_t binX = 1;
    std::uint32_t binY = 1;
    std::uint32_t stepX = 1;
    std::uint32_t stepY = 1;
    std::uint32_t width = 0;  ///< pixels in a row after reduction
    std::uint32_t height = 0; ///< rows after reduction

    /// False if every sensor pixel is an image pixel.
    bool reduces() const { return stepX * stepY > 1; }
    bool operator==(const Reduction &) const = default;
};

/// The settings of one image. Equal settings give equal images except for noise and motion.
struct SensorSettings {
    Region region;
    Reduction reduction;
    TestPattern pattern = TestPattern::Off;
    std::uint32_t patternShift = 0; ///< displacement of a moving pattern in pixels
    std::uint32_t pixelFormat = 0;
    bool reverseX = false;
    bool reverseY = false;

    double exposure = 0; ///< microseconds
    double gain = 1;     ///< factor
    double black = 0;    ///< fraction of full scale
    double gamma = 1;    ///< exponent
    double contrast = 1; ///< factor about middle grey
    double hue = 0;      ///< radians
    double saturation = 1;
    double sharpness = 0;                 ///< weight of the added detail
    std::array<double, 3> ratio{1, 1, 1}; ///< of white balance: red, green, blue
    std::uint32_t illuminant = 0;         ///< number of SimulationIlluminant
    bool knee = false;                    ///< whether the points below apply
    std::array<double, 4> kneePoints{};   ///< x1, y1, x2, y2, fractions of full scale
    double shadowLift = 0;                ///< 0 to 1
    double noise = 1;                     ///< fraction of the noise that remains
    bool uniform = true;                  ///< false: the columns of the sensor have offsets

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
