// SPDX-License-Identifier: MIT
// Frame and data rates, and their text.
#include "capture/RateMeter.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <string>
#include <thread>

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

OImageFrame frameOf(std::uint32_t width, std::uint32_t height, std::uint32_t bits)
{
    OImageFrame frame{};
    frame.width = width;
    frame.height = height;
    frame.bitsPerPixel = bits;
    return frame;
}

TEST(MeasureRates, thirtyIntervalsInOneSecondAreThirtyFramesPerSecond)
{
    const StreamRates rates = measureRates({100, 0}, {101, 0}, frameOf(1024, 1024, 8));
    EXPECT_DOUBLE_EQ(rates.framesPerSecond, 30.0);
    EXPECT_DOUBLE_EQ(rates.megabytesPerSecond, 30.0);
}

TEST(MeasureRates, handlesFewerMicrosecondsInALaterSecond)
{
    const StreamRates rates = measureRates({100, 900000}, {101, 100000}, frameOf(640, 480, 16));
    EXPECT_NEAR(rates.framesPerSecond, 150.0, 1e-9);
    EXPECT_NEAR(rates.megabytesPerSecond, 640.0 * 480 * 16 * 150 / 8 / 1024 / 1024, 1e-9);
}

TEST(MeasureRates, theSizeIsA32BitProduct)
{
    const OImageFrame frame = frameOf(65536, 65536, 8);
    EXPECT_DOUBLE_EQ(measureRates({0, 0}, {1, 0}, frame).megabytesPerSecond, 0.0);
}

class ImpossibleTime : public testing::TestWithParam<timeval> {};

TEST_P(ImpossibleTime, givesNoRate)
{
    const StreamRates rates = measureRates({100, 500000}, GetParam(), frameOf(640, 480, 8));
    EXPECT_EQ(rates.framesPerSecond, 0.0);
    EXPECT_EQ(rates.megabytesPerSecond, 0.0);
}

INSTANTIATE_TEST_SUITE_P(Ends, ImpossibleTime,
                         testing::Values(timeval{100, 500000}, timeval{100, 499999},
                                         timeval{99, 999999}, timeval{-1, 0},
                                         timeval{std::numeric_limits<time_t>::min(), 0}));

TEST(MeasureRates, aHugeTimeGivesATinyRate)
{
    const timeval end{std::numeric_limits<time_t>::max(), 999999};
    const StreamRates rates =
        measureRates({std::numeric_limits<time_t>::min(), 0}, end, frameOf(640, 480, 8));
    EXPECT_GE(rates.framesPerSecond, 0.0);
    EXPECT_LT(rates.framesPerSecond, 1e-9);
}

TEST(MeasureRates, theShortestTimeIsFinite)
{
    const StreamRates rates = measureRates({0, 0}, {0, 1}, frameOf(65535, 65535, 1));
    EXPECT_NEAR(rates.framesPerSecond, 3e7, 1e-3);
    EXPECT_TRUE(std::isfinite(rates.megabytesPerSecond));
}

struct Text {
    double frames;
    double megabytes;
    const char *expected;
};

class FormatRates : public testing::TestWithParam<Text> {};

TEST_P(FormatRates, fitsThirtyTwoBytes)
{
    EXPECT_STREQ(formatRates(GetParam().frames, GetParam().megabytes).data(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Values, FormatRates,
    testing::Values(Text{0, 0, " 0.0 fps (0.0 MB/s)"}, Text{9.94, 99.94, " 9.9 fps (99.9 MB/s)"},
                    Text{9.96, 0.04, "10.0 fps (0.0 MB/s)"},
                    Text{29.97, 143.5, "30.0 fps (143.5 MB/s)"},
                    Text{1000, 293, "1000.0 fps (293.0 MB/s)"},
                    Text{123456789.0, 12345678.0, "123456789.0 fps (12345678.0 MB/"},
                    Text{1e300, 1, "1000000000000000052504760255204"},
                    Text{infinity, infinity, " inf fps (inf MB/s)"},
                    Text{-1, -0.04, "-1.0 fps (-0.0 MB/s)"}));

TEST(RateMeter, reportsWithThe31stFrameOnly)
{
    RateMeter meter;
    const OImageFrame frame = frameOf(1024, 1024, 8);
    for (int i = 0; i < 30; ++i)
        EXPECT_FALSE(meter.frameReceived(frame, {100, i * 10000}));
    const auto rates = meter.frameReceived(frame, {100, 300000});
    ASSERT_TRUE(rates);
    EXPECT_NEAR(rates->framesPerSecond, 100.0, 1e-9);
}

TEST(RateMeter, theGapBetweenTwoWindowsIsNotMeasured)
{
    RateMeter meter;
    const OImageFrame frame = frameOf(8, 8, 8);
    for (int i = 0; i < 31; ++i)
        (void)meter.frameReceived(frame, {0, 0});
    std::optional<StreamRates> rates;
    for (int i = 0; i < 31; ++i)
        rates = meter.frameReceived(frame, {1000 + i, 0});
    ASSERT_TRUE(rates);
    EXPECT_DOUBLE_EQ(rates->framesPerSecond, 1.0);
}

TEST(RateMeter, restartDiscardsTheWindow)
{
    RateMeter meter;
    const OImageFrame frame = frameOf(8, 8, 8);
    for (int i = 0; i < 30; ++i)
        (void)meter.frameReceived(frame, {0, 0});
    meter.restart();
    for (int i = 0; i < 30; ++i)
        EXPECT_FALSE(meter.frameReceived(frame, {1000 + i, 0}));
    const auto rates = meter.frameReceived(frame, {1030, 0});
    ASSERT_TRUE(rates);
    EXPECT_DOUBLE_EQ(rates->framesPerSecond, 1.0);
}

TEST(RateMeter, canBeRestartedWhileFramesArrive)
{
    RateMeter meter;
    const OImageFrame frame = frameOf(8, 8, 8);
    std::thread gui([&] {
        for (int i = 0; i < 1000; ++i)
            meter.restart();
    });
    for (int i = 0; i < 5000; ++i)
        (void)meter.frameReceived(frame, {i, 0});
    gui.join();
}

} // namespace
