// SPDX-License-Identifier: MIT
// The test patterns, pixel by pixel.
#include "library/simulated/TestPattern.h"

namespace orvalis::simulated {
namespace {

using Color = std::array<std::uint8_t, 3>;

Color gray(std::uint32_t level)
{
    const auto value = static_cast<std::uint8_t>(level);
    return {value, value, value};
}

/// White, yellow, cyan, green, magenta, red, blue, black.
constexpr std::array<Color, 8> kBars{{{255, 255, 255},
                                      {255, 255, 0},
                                      {0, 255, 255},
                                      {0, 255, 0},
                                      {255, 0, 255},
                                      {255, 0, 0},
                                      {0, 0, 255},
                                      {0, 0, 0}}};

} // namespace

bool moves(TestPattern pattern)
{
    return pattern >= TestPattern::GreyHorizontalRampMoving &&
           pattern <= TestPattern::VerticalLineMoving;
}

Color patternAt(TestPattern pattern, std::uint32_t x, std::uint32_t y, std::uint32_t width,
                std::uint32_t height, std::uint32_t shift)
{
    switch (pattern) {
    case TestPattern::White:
        return gray(255);
    case TestPattern::GreyHorizontalRamp:
        return gray(x);
    case TestPattern::GreyVerticalRamp:
        return gray(y);
    case TestPattern::GreyHorizontalRampMoving:
        return gray(x + shift);
    case TestPattern::GreyVerticalRampMoving:
        return gray(y + shift);
    case TestPattern::HorizontalLineMoving:
        return gray(y == shift % height ? 255 : 0);
    case TestPattern::VerticalLineMoving:
        return gray(x == shift % width ? 255 : 0);
    case TestPattern::ColorBar:
        return kBars[x * kBars.size() / width];
    default:
        return gray(0);
    }
}

} // namespace orvalis::simulated
