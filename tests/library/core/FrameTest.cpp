// SPDX-License-Identifier: MIT
// The planes of a frame in each format.
#include "library/core/Frame.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

using namespace orvalis;

namespace {

constexpr std::uint32_t kWidth = 4;
constexpr std::uint32_t kHeight = 2;

RawImage imageOf(const char *format, bool owned = true)
{
    const PixelFormat *found = findPixelFormat(std::string_view(format));
    auto pixels = std::make_shared<std::vector<std::uint8_t>>(64, std::uint8_t{0x55});
    static std::shared_ptr<const void> keep;
    keep = pixels;
    const std::size_t size = imageBytes(*found, kWidth, kHeight);
    return {pixels->data(), size, kWidth, kHeight, found->code, owned ? keep : nullptr};
}

struct Planes {
    const char *format;
    bool bayerConversion;
    std::uint32_t bitsPerPixel;
    bool rgb;
    bool mono8;
};

class FramePlanes : public testing::TestWithParam<Planes> {};

} // namespace

TEST_P(FramePlanes, areThoseOfTheFormat)
{
    const Planes &expected = GetParam();
    Frame frame;
    ASSERT_TRUE(fillFrame(frame, imageOf(expected.format), expected.bayerConversion));
    EXPECT_EQ(frame.record.bitsPerPixel, expected.bitsPerPixel);
    EXPECT_EQ(frame.record.rawSize, kWidth * kHeight * expected.bitsPerPixel / 8);
    EXPECT_NE(frame.record.raw, nullptr);
    EXPECT_EQ(frame.record.rgb != nullptr, expected.rgb);
    EXPECT_EQ(frame.record.mono8 != nullptr, expected.mono8);
    EXPECT_EQ(frame.record.width, kWidth);
    EXPECT_EQ(frame.record.height, kHeight);
}

INSTANTIATE_TEST_SUITE_P(
    Formats, FramePlanes,
    testing::Values(
        Planes{"Mono8", true, 8, false, false}, Planes{"Mono12", true, 16, false, true},
        Planes{"Mono12p", false, 16, false, true}, Planes{"Mono16", false, 16, false, true},
        Planes{"BayerGR8", false, 8, false, false}, Planes{"BayerGR8", true, 8, true, false},
        Planes{"BayerGR12", false, 16, false, true}, Planes{"BayerGR12", true, 16, true, true},
        Planes{"RGB8", false, 24, true, false}, Planes{"BGRa8", false, 32, true, false},
        Planes{"RGB12p", false, 48, true, false}, Planes{"RGBa16", false, 64, true, false},
        Planes{"YUV411_8_UYYVYY", false, 12, true, false},
        Planes{"YCbCr709_422_8", false, 16, true, false},
        Planes{"YCbCr8_CbYCr", false, 24, true, false}, Planes{"Mono14p", false, 16, false, true}),
    [](const auto &row) {
        return std::string(row.param.format) + (row.param.bayerConversion ? "_on" : "_off");
    });

TEST(Frame, keepsTheCamerasMemoryInsteadOfACopy)
{
    const RawImage image = imageOf("Mono8");
    Frame frame;
    ASSERT_TRUE(fillFrame(frame, image, false));
    EXPECT_EQ(frame.record.raw, image.data);
    EXPECT_EQ(frame.source.owner, image.owner);
}

TEST(Frame, copiesAnImageWithoutAnOwner)
{
    const RawImage image = imageOf("Mono8", false);
    Frame frame;
    ASSERT_TRUE(fillFrame(frame, image, false));
    ASSERT_NE(frame.record.raw, image.data);
    EXPECT_EQ(frame.record.raw[7], 0x55);
}

TEST(Frame, refusesAnImageThatIsTooSmall)
{
    RawImage image = imageOf("Mono8");
    image.size -= 1;
    Frame frame;
    EXPECT_FALSE(fillFrame(frame, image, false));
}

TEST(Frame, refusesUnknownFormatsAndNothing)
{
    RawImage image = imageOf("Mono8");
    image.pixelFormat = 0x12345678;
    Frame frame;
    EXPECT_FALSE(fillFrame(frame, image, false));
    EXPECT_FALSE(fillFrame(frame, RawImage{}, false));
}
