// SPDX-License-Identifier: MIT
// Computed images with known pixels.
#pragma once

#include <array>
#include <cstdint>

namespace orvalis::simulated {

/// Values of the node TestPattern; names and meanings as in the SFNC.
enum class TestPattern : std::uint32_t {
    Off,
    Black,
    White,
    GreyHorizontalRamp,
    GreyVerticalRamp,
    GreyHorizontalRampMoving,
    GreyVerticalRampMoving,
    HorizontalLineMoving,
    VerticalLineMoving,
    ColorBar
};

/// True for patterns that change from frame to frame.
bool moves(TestPattern pattern);

/// Red, green, blue, 0 to 255, of one pixel of an image of this size. Moving patterns are displaced
/// by `shift` pixels.
std::array<std::uint8_t, 3> patternAt(TestPattern pattern, std::uint32_t x, std::uint32_t y,
                                      std::uint32_t width, std::uint32_t height,
                                      std::uint32_t shift);

} // namespace orvalis::simulated
