// SPDX-License-Identifier: MIT
// The measured effect of each setting on the image.
#include "tests/library/simulated/Bench.h"

#include <array>
#include <cmath>
#include <cstring>
#include <numbers>
#include <vector>

namespace orvalis::test {
namespace {

/// A rectangle on the sensor, as fractions of its width and height.
struct Patch {
    double u0, v0, u1, v1;
};
constexpr Patch kRed{0.045, 0.07, 0.105, 0.15};
constexpr Patch kGreen{0.205, 0.07, 0.265, 0.15};
constexpr Patch kGray{0.37, 0.385, 0.425, 0.46};
constexpr Patch kDarkGray{0.13, 0.385, 0.185, 0.46};
constexpr Patch kChart{0.0, 0.0, 0.52, 0.6};

using Color = std::array<double, 3>;

class Pictures : public Bench {
protected:
    /// The colour camera with RGB8, without noise and motion.
    void openRgb()
    {
        openStill(kColor);
        set("PixelFormat", "RGB8");
    }
    /// The mono camera without noise and motion.
    void openMono() { openStill(kMono); }

    template <class Visit> void visit(const RawImage &image, const Patch &p, Visit visitPixel)
    {
        const auto x0 = std::uint32_t(p.u0 * image.width), x1 = std::uint32_t(p.u1 * image.width);
        const auto y0 = std::uint32_t(p.v0 * image.height), y1 = std::uint32_t(p.v1 * image.height);
        for (std::uint32_t y = y0; y < y1; ++y)
            for (std::uint32_t x = x0; x < x1; ++x)
                visitPixel(std::size_t(y) * image.width + x);
    }
    Color rgb(const Patch &patch)
    {
        const RawImage image = take();
        Color sum{};
        double count = 0;
        visit(image, patch, [&](std::size_t i) {
            for (std::size_t c = 0; c < 3; ++c)
                sum[c] += image.data[i * 3 + c];
            ++count;
        });
        return {sum[0] / count, sum[1] / count, sum[2] / count};
    }
    double mean(const RawImage &image, const Patch &patch)
    {
        double sum = 0, count = 0;
        visit(image, patch, [&](std::size_t i) {
            sum += image.data[i];
            ++count;
        });
        return sum / count;
    }
    double mean(const Patch &patch) { return mean(take(), patch); }
    double deviation(const Patch &patch)
    {
        const RawImage image = take();
        const double middle = mean(image, patch);
        double sum = 0, count = 0;
        visit(image, patch, [&](std::size_t i) {
            sum += (image.data[i] - middle) * (image.data[i] - middle);
            ++count;
        });
        return std::sqrt(sum / count);
    }
    /// Mean square of the differences between neighbours.
    double edges(const Patch &patch)
    {
        const RawImage image = take();
        double sum = 0, count = 0;
        visit(image, patch, [&](std::size_t i) {
            const double step = image.data[i + 1] - image.data[i];
            sum += step * step;
            ++count;
        });
        return sum / count;
    }
};

double saturationOf(const Color &c)
{
    const double high = std::max({c[0], c[1], c[2]}), low = std::min({c[0], c[1], c[2]});
    return (high - low) / high;
}

/// Angle in the plane of colour differences, in degrees.
double hueOf(const Color &c)
{
    const double y = 0.299 * c[0] + 0.587 * c[1] + 0.114 * c[2];
    return std::atan2((c[0] - y) / 1.402, (c[2] - y) / 1.772) * 180 / std::numbers::pi;
}

TEST_F(Pictures, becomeTwiceAsBrightWithTwiceTheExposure)
{
    openMono();
    set("BlackLevel", 0);
    set("ExposureTime", 4000.0);
    const double dark = mean(kGray);
    set("ExposureTime", 8000.0);
    EXPECT_NEAR(mean(kGray) / dark, 2.0, 0.03);
}

TEST_F(Pictures, becomeTwiceAsBrightWithSixDecibels)
{
    openMono();
    set("BlackLevel", 0);
    set("ExposureTime", 4000.0);
    const double dark = mean(kGray);
    set("Gain", 6.0206);
    EXPECT_NEAR(mean(kGray) / dark, 2.0, 0.03);
}

TEST_F(Pictures, becomeWhiteWhenThereIsTooMuchLight)
{
    openRgb();
    set("ExposureTime", 500000.0);
    for (const double value : rgb(kRed))
        EXPECT_GT(value, 250.0);
}

TEST_F(Pictures, haveTheirBlackAtTheBlackLevel)
{
    openMono();
    set("ExposureTime", 50.0);
    for (const int level : {0, 160, 512, 1023}) {
        set("BlackLevel", level);
        EXPECT_NEAR(mean(kDarkGray), level / 16.06, 1.0) << level;
    }
}

TEST_F(Pictures, becomeBrighterInTheDarkPartsWithLowGamma)
{
    openMono();
    set("BlackLevel", 0);
    const double before = mean(kGray) / 255;
    set("Gamma", 0.5);
    EXPECT_NEAR(mean(kGray) / 255, std::pow(before, 0.5), 0.01);
    set("GammaEnable", false);
    EXPECT_NEAR(mean(kGray) / 255, before, 0.01);
}

TEST_F(Pictures, gainContrastAboutMiddleGray)
{
    openMono();
    const double bright = mean(kGray) - 127.5, dark = mean(kDarkGray) - 127.5;
    set("Contrast", 762);
    EXPECT_NEAR(mean(kGray) - 127.5, 1.5 * bright, 1.5);
    set("Contrast", 254);
    EXPECT_NEAR(mean(kDarkGray) - 127.5, 0.5 * dark, 1.5);
    set("Contrast", 0);
    EXPECT_NEAR(mean(kDarkGray), 127.5, 1.0);
}

TEST_F(Pictures, gainEdgesWithSharpness)
{
    openMono();
    const double soft = edges(kChart);
    set("Sharpness", 15);
    const double sharper = edges(kChart);
    set("Sharpness", 20);
    EXPECT_GT(sharper, 1.1 * soft);
    EXPECT_GT(edges(kChart), 1.05 * sharper);
}

TEST_F(Pictures, areGrayWhereTheSceneIsGray)
{
    openRgb();
    const Color color = rgb(kGray);
    EXPECT_NEAR(color[0], color[1], 1.5);
    EXPECT_NEAR(color[2], color[1], 1.5);
}

TEST_F(Pictures, showRedAsRed)
{
    openRgb();
    const Color red = rgb(kRed), green = rgb(kGreen);
    EXPECT_GT(red[0], 3 * red[1]);
    EXPECT_GT(green[1], 3 * green[0]);
}

TEST_F(Pictures, followTheColorGains)
{
    openRgb();
    set("BlackLevel", 0);
    const Color before = rgb(kGray);
    const char *const channels[] = {"Red", "Green", "Blue"};
    for (std::size_t c = 0; c < 3; ++c) {
        set("BalanceRatioSelector", channels[c]);
        const double ratio = real("BalanceRatio");
        set("BalanceRatio", ratio / 2);
        const Color after = rgb(kGray);
        EXPECT_NEAR(after[c] / before[c], 0.5, 0.02) << channels[c];
        EXPECT_NEAR(after[(c + 1) % 3] / before[(c + 1) % 3], 1.0, 0.02) << channels[c];
        set("BalanceRatio", ratio);
    }
}

TEST_F(Pictures, loseTheirColorsWithoutSaturation)
{
    openRgb();
    set("BlackLevel", 0);
    const double plain = saturationOf(rgb(kRed));
    set("Saturation", 256);
    const double pale = saturationOf(rgb(kRed));
    set("Saturation", 0);
    const double gray = saturationOf(rgb(kRed));
    EXPECT_LT(pale, 0.9 * plain);
    EXPECT_LT(gray, 0.03);
}

TEST_F(Pictures, rotateTheirColorsWithHue)
{
    openRgb();
    set("BlackLevel", 0);
    set("Saturation", 200); // so that no colour saturates
    const double before = hueOf(rgb(kRed));
    set("Hue", 508 + 254);
    const double turned = hueOf(rgb(kRed)) - before;
    EXPECT_NEAR(std::remainder(turned - 45.0, 360.0), 0.0, 3.0);
    set("Hue", 0);
    EXPECT_NEAR(std::remainder(hueOf(rgb(kRed)) - before + 90.0, 360.0), 0.0, 3.0);
}

TEST_F(Pictures, balanceWhiteOnceAndAtOnce)
{
    openRgb();
    set("SimulationIlluminant", "Tungsten");
    const Color warm = rgb(kGray);
    EXPECT_GT(warm[0], 1.5 * warm[2]);
    set("BalanceWhiteAuto", "Once");
    EXPECT_EQ(entry("BalanceWhiteAuto"), "Off");
    const Color balanced = rgb(kGray);
    EXPECT_NEAR(balanced[0] / balanced[1], 1.0, 0.08);
    EXPECT_NEAR(balanced[2] / balanced[1], 1.0, 0.08);
}

TEST_F(Pictures, balanceWhiteContinuouslyWithinTwentyFrames)
{
    openStill(kColor);
    region(0, 0, 1224, 1024);
    set("PixelFormat", "RGB8");
    set("SimulationIlluminant", "Shade");
    set("BalanceWhiteAuto", "Once");
    set("BalanceRatioSelector", "Red");
    const double goal = real("BalanceRatio");
    set("BalanceRatio", 0.5);
    set("BalanceWhiteAuto", "Continuous");
    ASSERT_EQ(start(), ORVALIS_OK);
    for (int i = 0; i < 20; ++i)
        next();
    EXPECT_NEAR(real("BalanceRatio"), goal, 0.02);
    set("SimulationIlluminant", "Tungsten");
    for (int i = 0; i < 20; ++i)
        next();
    EXPECT_LT(real("BalanceRatio"), 0.8 * goal);
}

class AutoExposure : public Pictures, public ::testing::WithParamInterface<double> {};

TEST_P(AutoExposure, convergesWithinTwentyFrames)
{
    openMono();
    set("AutoExposureTargetBrightness", 45);
    set("AcquisitionFrameRate", 20.0);
    set("ExposureTime", GetParam());
    set("ExposureAuto", "Continuous");
    ASSERT_EQ(start(), ORVALIS_OK);
    RawImage image;
    for (int i = 0; i < 20; ++i)
        image = next();
    EXPECT_NEAR(mean(image, {0, 0, 1, 1}) / 255, 0.45, 0.03);
    EXPECT_LE(real("ExposureTime"), 50000.0);
}

INSTANTIATE_TEST_SUITE_P(FromAnyExposure, AutoExposure, ::testing::Values(50.0, 3000.0, 400000.0));

TEST_F(Pictures, reachTheirBrightnessByAutomaticGain)
{
    openMono();
    set("ExposureTime", 2000.0);
    set("GainAuto", "Continuous");
    ASSERT_EQ(start(), ORVALIS_OK);
    RawImage image;
    for (int i = 0; i < 20; ++i)
        image = next();
    EXPECT_NEAR(mean(image, {0, 0, 1, 1}) / 255, 0.5, 0.03);
    EXPECT_EQ(real("ExposureTime"), 2000.0);
    EXPECT_EQ(integer("GainRaw"), std::lround(real("Gain") * 10));
}

TEST_F(Pictures, reachTheirBrightnessInTheAutoArea)
{
    openMono();
    set("AutoAreaLeft", 4); // the black patch and its surroundings
    set("AutoAreaTop", 6);
    set("AutoAreaWidth", 48);
    set("AutoAreaHeight", 42);
    set("AutoAreaEnable", true);
    set("ExposureAuto", "Continuous");
    ASSERT_EQ(start(), ORVALIS_OK);
    RawImage image;
    for (int i = 0; i < 20; ++i)
        image = next();
    EXPECT_NEAR(mean(image, {0.04, 0.06, 0.52, 0.48}) / 255, 0.5, 0.03);
}

TEST_F(Pictures, becomeNoisyWithGain)
{
    openMono();
    set("SimulationNoise", true);
    set("ExposureTime", 10000.0);
    const double quiet = deviation(kGray);
    set("ExposureTime", 10000.0 / 8);
    set("Gain", 18.06); // the same brightness
    const double loud = deviation(kGray);
    EXPECT_GT(quiet, 0.5);
    EXPECT_NEAR(loud / quiet, std::sqrt(8.0), 0.5);
    set("SnowNoiseRemoveLevel", 4);
    set("SnowNoiseRemoveEnable", true);
    EXPECT_LT(deviation(kGray), 0.35 * loud);
}

TEST_F(Pictures, haveMoreNoiseInTheirBrightParts)
{
    openMono();
    set("SimulationNoise", true);
    EXPECT_GT(deviation(kGray), 1.3 * deviation(kDarkGray));
}

/// Standard deviation of the differences between two frames, of every `step`th byte from `first`
/// on.
double frameNoise(const RawImage &a, const RawImage &b, std::size_t first, std::size_t step)
{
    double sum = 0, count = 0;
    for (std::size_t i = first; i < a.size; i += step, ++count)
        sum += (a.data[i] - b.data[i]) * (a.data[i] - b.data[i]);
    return std::sqrt(sum / count);
}

TEST_F(Pictures, haveHalfAsMuchNoiseInTheColourOfYuv)
{
    openStill(kColor);
    set("SimulationNoise", true);
    set("PixelFormat", "YUV422_8");
    set("ExposureTime", 10000.0 / 8);
    set("Gain", 18.06);
    const RawImage one = take(), other = take();
    const double brightness = frameNoise(one, other, 0, 2);
    EXPECT_GT(brightness, 3);
    EXPECT_NEAR(frameNoise(one, other, 1, 2) / brightness, 0.5, 0.06);
}

TEST_F(Pictures, haveNoiseThatDiffersFromFrameToFrame)
{
    openMono();
    set("SimulationNoise", true);
    const RawImage first = take(), second = take();
    int same = 0, count = 0;
    visit(first, kGray, [&](std::size_t i) {
        same += first.data[i] == second.data[i];
        ++count;
    });
    EXPECT_LT(same, count / 2);
}

TEST_F(Pictures, areBrightenedInTheShadowsByWideDynamicRange)
{
    openMono();
    const double before = mean(kDarkGray);
    set("WDGEnable", true);
    EXPECT_GT(mean(kDarkGray), before + 8);
}

TEST_F(Pictures, followTheKneePoints)
{
    openMono();
    set("BlackLevel", 0);
    const double before = mean(kGray) / 255;
    set("LUTEnable", true);
    EXPECT_NEAR(mean(kGray) / 255, before, 0.01);
    set("LUTKneePoint1Y", 60);
    set("LUTKneePoint2Y", 90);
    EXPECT_NEAR(mean(kGray) / 255, 0.6 + (before - 0.25) / 0.5 * 0.3, 0.02);
}

TEST_F(Pictures, moveUnlessMotionIsOff)
{
    openMono();
    const RawImage first = take();
    const RawImage second = take();
    EXPECT_EQ(std::memcmp(first.data, second.data, first.size), 0);
    set("SimulationMotion", true);
    set("AcquisitionFrameRate", 10.0);
    ASSERT_EQ(start(), ORVALIS_OK);
    const RawImage moved = next();
    EXPECT_NE(std::memcmp(moved.data, next().data, moved.size), 0);
}

TEST_F(Pictures, ofAThermalCameraShowItsColumnsWithoutCorrection)
{
    openStill(kThermal);
    const double corrected = edges(kChart);
    set("NUCMode", "Off");
    EXPECT_GT(edges(kChart), 3 * corrected + 1);
}

} // namespace
} // namespace orvalis::test
