// SPDX-License-Identifier: MIT
// Pixel formats, regions and the frame number overlay.
#include "tests/library/simulated/Bench.h"

#include "library/simulated/Mosaic.h"

#include <cstring>
#include <vector>

namespace orvalis::test {
namespace {

class Formats : public Bench {
protected:
    static std::uint16_t word(const RawImage &image, std::size_t i)
    {
        std::uint16_t value = 0;
        std::memcpy(&value, image.data + 2 * i, 2);
        return value;
    }
};

TEST_F(Formats, haveTheirSizeAndCode)
{
    for (const auto &model : simulated::cameraModels()) {
        open(model.id.data());
        EnumerationValue formats;
        ASSERT_EQ(nodes().getEnumeration("PixelFormat", formats), ORVALIS_OK);
        EXPECT_EQ(formats.entries.size(), model.formats.size());
        for (const auto &format : formats.entries) {
            set("PixelFormat", format.name.c_str());
            const RawImage image = take();
            EXPECT_EQ(image.pixelFormat, format.value) << format.name;
            EXPECT_EQ(image.width, model.width);
            EXPECT_EQ(image.height, model.height);
            EXPECT_EQ(image.size, std::size_t(integer("PayloadSize")));
            EXPECT_EQ(image.size, std::size_t(image.width) * image.height *
                                      simulated::bytesPerPixel(image.pixelFormat));
        }
        camera_.reset();
    }
}

TEST_F(Formats, withTwelveBitsUseAllOfThem)
{
    open(kMono);
    set("PixelFormat", "Mono12");
    const RawImage image = take();
    std::uint16_t highest = 0;
    std::size_t odd = 0;
    for (std::size_t i = 0; i < image.size / 2; ++i) {
        highest = std::max(highest, word(image, i));
        odd += word(image, i) % 2;
    }
    EXPECT_EQ(highest, 4095);
    EXPECT_NEAR(double(odd) / double(image.size / 2), 0.5, 0.1);
}

TEST_F(Formats, withTwelveBitsShowTheSamePictureAsWithEight)
{
    openStill(kMono);
    const RawImage coarse = take();
    set("PixelFormat", "Mono12");
    const RawImage fine = take();
    for (std::size_t i = 0; i < coarse.size; i += 97)
        EXPECT_NEAR(word(fine, i) / 16.06, coarse.data[i], 0.6) << i;
}

TEST_F(Formats, withBayerPatternAreMosaicsOfTheColorPicture)
{
    openStill(kColor);
    const RawImage mosaic = take();
    set("PixelFormat", "RGB8");
    const RawImage color = take();
    for (std::uint32_t y = 0; y < color.height; y += 7)
        for (std::uint32_t x = 0; x < color.width; x += 5) {
            const std::size_t i = std::size_t(y) * color.width + x;
            // even rows: green, red; odd rows: blue, green
            const std::size_t channel = y % 2 == 0 ? (x % 2 == 0 ? 1 : 0) : (x % 2 == 0 ? 2 : 1);
            ASSERT_EQ(mosaic.data[i], color.data[i * 3 + channel]) << x << "," << y;
        }
}

TEST_F(Formats, withBayerPatternAndTwelveBitsAreTheSameMosaic)
{
    openStill(kColor);
    const RawImage coarse = take();
    set("PixelFormat", "BayerGR12");
    const RawImage fine = take();
    for (std::size_t i = 0; i < coarse.size; i += 101)
        ASSERT_NEAR(word(fine, i) / 16.06, coarse.data[i], 0.6) << i;
}

TEST_F(Formats, withYuvHoldTheColorPicture)
{
    openStill(kColor);
    set("PixelFormat", "RGB8");
    const RawImage color = take();
    set("PixelFormat", "YUV422_8");
    const RawImage yuv = take();
    for (std::size_t i = 0; i + 1 < color.size / 3; i += 2 * 61) {
        const auto left =
            simulated::toYuv(color.data[i * 3], color.data[i * 3 + 1], color.data[i * 3 + 2]);
        const auto right =
            simulated::toYuv(color.data[i * 3 + 3], color.data[i * 3 + 4], color.data[i * 3 + 5]);
        ASSERT_EQ(yuv.data[i * 2], left[0]);
        ASSERT_EQ(yuv.data[i * 2 + 1], (left[1] + right[1] + 1) / 2);
        ASSERT_EQ(yuv.data[i * 2 + 2], right[0]);
        ASSERT_EQ(yuv.data[i * 2 + 3], (left[2] + right[2] + 1) / 2);
    }
}

TEST_F(Formats, inYuvHaveNoColorForGray)
{
    const auto gray = simulated::toYuv(77, 77, 77);
    EXPECT_EQ(gray, (std::array<std::uint16_t, 3>{77, 128, 128}));
    EXPECT_EQ(simulated::toYuv(255, 255, 255)[0], 255);
    EXPECT_EQ(simulated::toYuv(0, 0, 0)[0], 0);
}

TEST_F(Formats, inMonochromeShowTheBrightnessOfTheColors)
{
    openStill(kColor);
    set("BlackLevel", 0);
    set("PixelFormat", "RGB8");
    const RawImage color = take();
    set("PixelFormat", "Mono8");
    const RawImage gray = take();
    for (std::size_t i = 0; i < gray.size; i += 997) {
        const auto *const c = color.data + i * 3;
        if (std::max({c[0], c[1], c[2]}) == 255)
            continue; // saturated
        ASSERT_NEAR(gray.data[i], 0.299 * c[0] + 0.587 * c[1] + 0.114 * c[2], 1.5) << i;
    }
}

TEST_F(Formats, showTheRequestedRegion)
{
    for (const char *id : {kMono, kColor}) {
        openStill(id);
        const RawImage whole = take();
        region(160, 72, 320, 200);
        const RawImage part = take();
        ASSERT_EQ(part.width, 320u);
        ASSERT_EQ(part.height, 200u);
        for (std::uint32_t y = 0; y < part.height; ++y)
            ASSERT_EQ(std::memcmp(part.data + std::size_t(y) * 320,
                                  whole.data + (std::size_t(y) + 72) * whole.width + 160, 320),
                      0)
                << id << " row " << y;
        camera_.reset();
    }
}

TEST_F(Formats, areMirroredOnDemand)
{
    openStill(kMono);
    region(160, 72, 320, 200);
    set("ReverseX", true);
    set("ReverseY", true);
    const RawImage mirrored = take();
    set("ReverseX", false);
    set("ReverseY", false);
    region(0, 0, 1280, 1024);
    const RawImage whole = take();
    for (std::uint32_t y = 0; y < 200; y += 3)
        for (std::uint32_t x = 0; x < 320; x += 3)
            ASSERT_EQ(mirrored.data[y * 320 + x],
                      whole.data[(1023 - 72 - y) * 1280 + (1279 - 160 - x)]);
}

TEST_F(Formats, carryTheFrameNumber)
{
    open(kFast);
    set("FrameNumberOverlay", true);
    for (const int width : {640, 64}) { // one row of fields, and four
        set("Width", width);
        ASSERT_EQ(start(), ORVALIS_OK);
        std::uint32_t expected = 0;
        for (int i = 0; i < 20; ++i) {
            const std::uint32_t number = frameNumber(next());
            EXPECT_GE(number, expected); // equal unless this machine stalls
            expected = number + 1;
        }
        EXPECT_EQ(expected - 20, std::uint32_t(integer("StreamUnderrunCount")));
        camera_->stopStream();
    }
}

TEST_F(Formats, carryTheFrameNumberInColorToo)
{
    open(kColor);
    set("FrameNumberOverlay", true);
    region(0, 0, 320, 64);
    const std::pair<const char *, std::vector<int>> kCases[] = {
        {"RGB8", {0, 0, 0}}, {"BayerGR8", {0, 0, 0}}, {"YUV422_8", {0, 128, 0, 128}}};
    for (const auto &[format, black] : kCases) {
        set("PixelFormat", format);
        const RawImage image = take(); // number 0: all fields black
        for (std::size_t i = 0; i < black.size(); ++i)
            EXPECT_EQ(image.data[i], black[i]) << format;
    }
    set("PixelFormat", "BayerGR12");
    ASSERT_EQ(start(), ORVALIS_OK);
    next();
    const RawImage one = next();
    EXPECT_EQ(word(one, 0), 4095);
    EXPECT_EQ(word(one, 8), 0);
}

TEST_F(Formats, ofTheSmallestRegionStayWithinTheirMemory)
{
    open(kColor);
    set("FrameNumberOverlay", true);
    region(0, 0, 64, 8);
    region(2384, 2040, 64, 8);
    EnumerationValue formats;
    ASSERT_EQ(nodes().getEnumeration("PixelFormat", formats), ORVALIS_OK);
    for (const auto &format : formats.entries) {
        set("PixelFormat", format.name.c_str());
        EXPECT_EQ(take().size, 64 * 8 * simulated::bytesPerPixel(std::uint32_t(format.value)));
    }
}

} // namespace
} // namespace orvalis::test
