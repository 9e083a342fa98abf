// SPDX-License-Identifier: MIT
// The steps of the automatic controls.
#include "library/simulated/AutoControl.h"

#include <gtest/gtest.h>

namespace orvalis::simulated {
namespace {

BrightnessState state(double mean, bool exposure, bool gain)
{
    return {.mean = mean,
            .target = 0.5,
            .steepness = 1,
            .exposureAuto = exposure,
            .gainAuto = gain,
            .exposure = 1000,
            .exposureMinimum = 100,
            .exposureMaximum = 10000,
            .gain = 0,
            .gainMaximum = 24};
}

TEST(AutoControl, keepsAGoodExposure)
{
    const Brightness next = nextBrightness(state(0.505, true, true));
    EXPECT_EQ(next.exposure, 1000);
    EXPECT_EQ(next.gain, 0);
}

TEST(AutoControl, exposesLongerWhenItIsDark)
{
    EXPECT_GT(nextBrightness(state(0.2, true, false)).exposure, 1500);
    EXPECT_LT(nextBrightness(state(0.9, true, false)).exposure, 700);
}

TEST(AutoControl, keepsItsLimits)
{
    BrightnessState dark = state(0.0, true, false);
    dark.exposure = 9000;
    EXPECT_EQ(nextBrightness(dark).exposure, 10000);
    BrightnessState bright = state(1.0, true, false);
    bright.exposure = 110;
    EXPECT_EQ(nextBrightness(bright).exposure, 100);
}

TEST(AutoControl, changesGainOnlyAtTheLimitOfTheExposure)
{
    BrightnessState dark = state(0.1, true, true);
    EXPECT_EQ(nextBrightness(dark).gain, 0);
    dark.exposure = 9000;
    const Brightness next = nextBrightness(dark);
    EXPECT_EQ(next.exposure, 10000);
    EXPECT_GT(next.gain, 3);
}

TEST(AutoControl, leavesExposureToTheUserWhenOnlyGainIsAutomatic)
{
    const Brightness next = nextBrightness(state(0.25, false, true));
    EXPECT_EQ(next.exposure, 1000);
    EXPECT_GT(next.gain, 3);
    EXPECT_EQ(nextBrightness(state(1.0, false, true)).gain, 0);
}

TEST(AutoControl, balancesToGray)
{
    const std::array<double, 3> ones{1, 1, 1}, light{2, 1, 0.5};
    const auto once = nextBalance(ones, light, true);
    EXPECT_DOUBLE_EQ(once[0], 0.5);
    EXPECT_DOUBLE_EQ(once[1], 1);
    EXPECT_DOUBLE_EQ(once[2], 2);
    const auto step = nextBalance(ones, light, false);
    EXPECT_DOUBLE_EQ(step[0], 0.75);
    EXPECT_EQ(nextBalance(once, light, false), once);
}

TEST(AutoControl, boundsTheRatiosInTheDark)
{
    const auto ratios = nextBalance({1, 1, 1}, {0, 1, 1000}, true);
    EXPECT_DOUBLE_EQ(ratios[0], 3.999);
    EXPECT_DOUBLE_EQ(ratios[2], 0.0625);
}

} // namespace
} // namespace orvalis::simulated
