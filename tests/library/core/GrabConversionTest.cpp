// SPDX-License-Identifier: MIT
// What grabs write to the caller's memory.
#include "library/core/GrabConversion.h"

#include <gtest/gtest.h>

#include <numeric>
#include <string>
#include <vector>

using namespace orvalis;

namespace {

constexpr std::uint32_t kGrabWidth = 4;
constexpr std::uint32_t kGrabHeight = 2;
constexpr std::size_t kPixels = kGrabWidth * kGrabHeight;
constexpr std::uint8_t kUntouched = 0xAB;

class GrabConversion : public testing::Test {
protected:
    GrabbedImage image(const char *format)
    {
        const PixelFormat *found = findPixelFormat(std::string_view(format));
        std::iota(pixels_.begin(), pixels_.end(), std::uint8_t{1});
        return {found,      pixels_.data(), imageBytes(*found, kGrabWidth, kGrabHeight),
                kGrabWidth, kGrabHeight,    {}};
    }

    std::vector<std::uint8_t> pixels_ = std::vector<std::uint8_t>(64);
    std::vector<std::uint8_t> out_ = std::vector<std::uint8_t>(kPixels * 3 + 1, kUntouched);
};

} // namespace

TEST_F(GrabConversion, rawOfEightBitsIsCopied)
{
    OImageFrame frame{};
    frame.raw = out_.data();
    ASSERT_EQ(writeGrabbedRaw(image("BayerGR8"), kPixels, frame), ORVALIS_OK);
    EXPECT_EQ(frame.rawSize, kPixels);
    EXPECT_EQ(frame.bitsPerPixel, 8u);
    EXPECT_TRUE(std::equal(out_.begin(), out_.begin() + kPixels, pixels_.begin()));
    EXPECT_EQ(out_[kPixels], kUntouched);
}

TEST_F(GrabConversion, rawOfTwelveBitsIsWords)
{
    OImageFrame frame{};
    frame.raw = out_.data();
    for (const char *format :
         {"Mono12", "Mono12p", "BayerGR12", "BayerGR12p", "RGB12", "BGRa12", "BGR12p"}) {
        ASSERT_EQ(writeGrabbedRaw(image(format), kPixels, frame), ORVALIS_OK) << format;
        EXPECT_EQ(frame.rawSize, kPixels * 2) << format;
        EXPECT_EQ(frame.bitsPerPixel, 16u) << format;
        EXPECT_EQ(out_[kPixels * 2], kUntouched) << format;
    }
}

TEST_F(GrabConversion, rawOfOtherFormatsIsLuminance)
{
    OImageFrame frame{};
    frame.raw = out_.data();
    for (const char *format : {"Mono16", "Mono10", "RGB8", "BayerGR10", "Mono14p", "RGB10p",
                               "RGBa16", "BGRa8", "YUV411_8_UYYVYY", "YCbCr709_422_8", "YCbCr8"}) {
        ASSERT_EQ(writeGrabbedRaw(image(format), kPixels, frame), ORVALIS_OK) << format;
        EXPECT_EQ(frame.rawSize, kPixels) << format;
        EXPECT_EQ(frame.bitsPerPixel, 8u) << format;
        EXPECT_EQ(out_[kPixels], kUntouched) << format;
    }
}

TEST_F(GrabConversion, rgbOfMonochromeIsGray)
{
    OImageFrame frame{};
    frame.rgb = out_.data();
    ASSERT_EQ(writeGrabbedRgb(image("Mono8"), kPixels, frame), ORVALIS_OK);
    EXPECT_EQ(frame.rawSize, kPixels * 3);
    EXPECT_EQ(frame.bitsPerPixel, 24u);
    for (std::size_t i = 0; i < kPixels * 3; ++i)
        EXPECT_EQ(out_[i], pixels_[i / 3]);
    EXPECT_EQ(out_[kPixels * 3], kUntouched);
}

TEST_F(GrabConversion, rgbOfDeepFormatsFitsTheSameBuffer)
{
    OImageFrame frame{};
    frame.rgb = out_.data();
    for (const char *format : {"Mono12", "BayerGR12", "BayerGR12p", "RGB8", "RGBa16", "BGRa12p",
                               "YUV411_8_UYYVYY", "YCbCr8_CbYCr"}) {
        ASSERT_EQ(writeGrabbedRgb(image(format), kPixels, frame), ORVALIS_OK) << format;
        EXPECT_EQ(out_[kPixels * 3], kUntouched) << format;
    }
}

TEST_F(GrabConversion, imageLargerThanTheSensorIsRefused)
{
    OImageFrame frame{};
    frame.raw = frame.rgb = out_.data();
    EXPECT_EQ(writeGrabbedRaw(image("Mono8"), kPixels - 1, frame), ORVALIS_ERROR_DEVICE);
    EXPECT_EQ(writeGrabbedRgb(image("Mono8"), kPixels - 1, frame), ORVALIS_ERROR_DEVICE);
    EXPECT_EQ(out_[0], kUntouched);
    EXPECT_EQ(frame.width, 0u);
}

TEST_F(GrabConversion, unknownFormatAndShortImageAreRefused)
{
    OImageFrame frame{};
    frame.raw = out_.data();
    GrabbedImage bad = image("Mono8");
    bad.size = kPixels - 1;
    EXPECT_EQ(writeGrabbedRaw(bad, kPixels, frame), ORVALIS_ERROR_DEVICE);
    bad = image("Mono8");
    bad.format = nullptr;
    EXPECT_EQ(writeGrabbedRaw(bad, kPixels, frame), ORVALIS_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(out_[0], kUntouched);
}
