// SPDX-License-Identifier: MIT
// Test patterns: known samples in every format, independent of the light.
#include "tests/library/simulated/Bench.h"

#include <array>

namespace orvalis::test {
namespace {

class Patterns : public Bench {
protected:
    void show(const char *camera, const char *pattern)
    {
        open(camera);
        set("TestPattern", pattern);
    }
    static int at(const RawImage &image, std::uint32_t x, std::uint32_t y)
    {
        return image.data[std::size_t(y) * image.width + x];
    }
};

TEST_F(Patterns, areOffAtFirst)
{
    open(kMono);
    EXPECT_EQ(entry("TestPattern"), "Off");
}

TEST_F(Patterns, blackAndWhiteAreTheEndsOfTheScale)
{
    show(kMono, "Black");
    EXPECT_EQ(at(take(), 700, 300), 0);
    set("TestPattern", "White");
    EXPECT_EQ(at(take(), 700, 300), 255);
    set("PixelFormat", "Mono12");
    const RawImage image = take();
    EXPECT_EQ(image.data[0] | image.data[1] << 8, 4095);
}

TEST_F(Patterns, rampsRiseByOneFromPixelToPixel)
{
    show(kMono, "GreyHorizontalRamp");
    RawImage image = take();
    for (std::uint32_t y = 0; y < image.height; y += 100)
        for (std::uint32_t x = 0; x < image.width; ++x)
            ASSERT_EQ(at(image, x, y), int(x % 256));
    set("TestPattern", "GreyVerticalRamp");
    image = take();
    for (std::uint32_t y = 0; y < image.height; ++y)
        ASSERT_EQ(at(image, 999, y), int(y % 256));
}

TEST_F(Patterns, movingRampsMoveByOneFromFrameToFrame)
{
    show(kFast, "GreyHorizontalRampMoving");
    set("FrameNumberOverlay", true);
    ASSERT_EQ(start(), ORVALIS_OK);
    for (int i = 0; i < 5; ++i) {
        const RawImage image = next();
        ASSERT_EQ(at(image, 600, 300), int((600 + frameNumber(image)) % 256));
    }
    camera_->stopStream();
    set("TestPattern", "GreyVerticalRampMoving");
    ASSERT_EQ(start(), ORVALIS_OK);
    const RawImage image = next();
    EXPECT_EQ(at(image, 600, 300), int((300 + frameNumber(image)) % 256));
}

TEST_F(Patterns, linesMoveOverBlack)
{
    show(kFast, "VerticalLineMoving");
    set("FrameNumberOverlay", true);
    ASSERT_EQ(start(), ORVALIS_OK);
    for (int i = 0; i < 3; ++i) {
        const RawImage image = next();
        for (std::uint32_t x = 0; x < image.width; ++x)
            ASSERT_EQ(at(image, x, 300), x == frameNumber(image) % 640 ? 255 : 0);
    }
    camera_->stopStream();
    set("TestPattern", "HorizontalLineMoving");
    const RawImage image = take();
    EXPECT_EQ(at(image, 600, 0), 255);
    EXPECT_EQ(at(image, 600, 1), 0);
}

constexpr std::array<std::array<int, 3>, 8> kBars{{{255, 255, 255},
                                                   {255, 255, 0},
                                                   {0, 255, 255},
                                                   {0, 255, 0},
                                                   {255, 0, 255},
                                                   {255, 0, 0},
                                                   {0, 0, 255},
                                                   {0, 0, 0}}};

TEST_F(Patterns, colorBarsAreEightPureColors)
{
    show(kColor, "ColorBar");
    set("PixelFormat", "RGB8");
    const RawImage image = take();
    for (std::uint32_t bar = 0; bar < 8; ++bar)
        for (const std::uint32_t x : {bar * 306, bar * 306 + 305})
            for (std::uint32_t c = 0; c < 3; ++c)
                ASSERT_EQ(image.data[(std::size_t(1000) * 2448 + x) * 3 + c], kBars[bar][c]) << x;
    set("PixelFormat", "Mono8");
    EXPECT_EQ(at(take(), 400, 1000), 226); // yellow
}

TEST_F(Patterns, haveNoNoiseNoMotionAndNoExposure)
{
    show(kColor, "ColorBar");
    set("ExposureTime", 50.0);
    set("Gain", 24.0);
    const RawImage first = take(), second = take();
    ASSERT_EQ(first.size, second.size);
    EXPECT_TRUE(std::equal(first.data, first.data + first.size, second.data));
}

TEST_F(Patterns, coverTheRegionWhateverIsBinned)
{
    show(kMono, "GreyHorizontalRamp");
    set("BinningHorizontal", 2);
    region(64, 32, 128, 64);
    const RawImage image = take();
    for (std::uint32_t x = 0; x < 128; ++x)
        ASSERT_EQ(at(image, x, 10), int(x));
}

} // namespace
} // namespace orvalis::test
