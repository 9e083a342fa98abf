// SPDX-License-Identifier: MIT
// Unpacking and conversion to 8 bits, with samples that were packed bit by bit.
#include "tests/library/convert/Encode.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace converttest;
using namespace std::string_view_literals;
using orvalis::findPixelFormat;
using orvalis::ImageView;

namespace {

class PackedFormat : public testing::TestWithParam<std::string_view> {
protected:
    const PixelFormat &format_ = *findPixelFormat(GetParam());
};

void expectUnpacked(const PixelFormat &format, std::uint32_t width, std::uint32_t height)
{
    const std::size_t count = std::size_t{width} * height * samplesPerPixel(format);
    const std::vector<unsigned> samples = testSamples(count, format.depth);
    const Exact<std::uint8_t> bytes(encode(format, samples));
    Exact<std::uint16_t> words(samples.size());
    ASSERT_TRUE(unpackToWords(view(format, bytes, width, height), words.data()));
    const auto wrong = std::mismatch(samples.begin(), samples.end(), words.data()).first;
    ASSERT_TRUE(wrong == samples.end())
        << format.name << ' ' << width << 'x' << height << " @" << wrong - samples.begin();
}

TEST_P(PackedFormat, unpacksEverySmallSize)
{
    for (std::uint32_t width = 1; width <= 9; ++width) {
        for (std::uint32_t height = 1; height <= 9; ++height) {
            expectUnpacked(format_, width, height);
        }
    }
}

TEST_P(PackedFormat, unpacksImagesOnSeveralThreads)
{
    expectUnpacked(format_, 643, 481);
    expectUnpacked(format_, 8192 * 4, 3);
    expectUnpacked(format_, 8192 * 4 + 9, 1);
}

TEST_P(PackedFormat, refusesAnImageThatIsTooShort)
{
    const std::size_t count = 35 * samplesPerPixel(format_);
    const Exact<std::uint8_t> bytes(encode(format_, testSamples(count, format_.depth)));
    Exact<std::uint16_t> words(count);
    ImageView image = view(format_, bytes, 7, 5);
    EXPECT_TRUE(unpackToWords(image, words.data()));
    image.size -= 1;
    EXPECT_FALSE(unpackToWords(image, words.data()));
}

TEST_P(PackedFormat, isNotConvertedWhilePacked)
{
    const std::size_t count = 16 * samplesPerPixel(format_);
    const Exact<std::uint8_t> bytes(encode(format_, testSamples(count, format_.depth)));
    Exact<std::uint8_t> out(48);
    Exact<std::uint8_t> scratch(16);
    const ImageView image = view(format_, bytes, 4, 4);
    EXPECT_FALSE(toGray8(image, out.data()));
    EXPECT_FALSE(toBrightness8(image, out.data()));
    EXPECT_FALSE(toRgb8(image, out.data(), scratch.data()));
}

INSTANTIATE_TEST_SUITE_P(All, PackedFormat,
                         testing::Values("Mono10Packed", "Mono10p", "Mono12Packed", "Mono12p",
                                         "BayerGR10Packed", "BayerRG10Packed", "BayerGB10Packed",
                                         "BayerBG10Packed", "BayerGR12Packed", "BayerRG12Packed",
                                         "BayerGB12Packed", "BayerBG12Packed", "BayerGR10p",
                                         "BayerRG10p", "BayerGB10p", "BayerBG10p", "BayerGR12p",
                                         "BayerRG12p", "BayerGB12p", "BayerBG12p"),
                         [](const auto &row) { return std::string(row.param); });
INSTANTIATE_TEST_SUITE_P(Of14BitsAndColour, PackedFormat,
                         testing::Values("Mono14p", "BayerGR14p", "BayerRG14p", "BayerGB14p",
                                         "BayerBG14p", "RGB10p", "RGB12p", "BGR10p", "BGR12p",
                                         "RGBa10p", "RGBa12p", "BGRa10p", "BGRa12p"),
                         [](const auto &row) { return std::string(row.param); });

class DeepFormat : public testing::TestWithParam<std::string_view> {};

TEST_P(DeepFormat, keepsTheUpperEightBits)
{
    const PixelFormat &format = *findPixelFormat(GetParam());
    for (std::uint32_t width = 1; width <= 9; ++width) {
        for (std::uint32_t height = 1; height <= 9; ++height) {
            const std::vector<unsigned> samples =
                testSamples(std::size_t{width} * height, format.depth);
            const Exact<std::uint8_t> bytes(encode(format, samples));
            Exact<std::uint8_t> out(samples.size());
            ASSERT_TRUE(toGray8(view(format, bytes, width, height), out.data()));
            for (std::size_t i = 0; i < samples.size(); ++i) {
                ASSERT_EQ(out[i], samples[i] >> (format.depth - 8)) << i;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, DeepFormat,
                         testing::Values("Mono8", "Mono10", "Mono12", "Mono14", "Mono16",
                                         "BayerGR8", "BayerRG8", "BayerGB8", "BayerBG8",
                                         "BayerGR10", "BayerRG10", "BayerGB10", "BayerBG10",
                                         "BayerGR12", "BayerRG12", "BayerGB12", "BayerBG12",
                                         "BayerGR16", "BayerRG16", "BayerGB16", "BayerBG16"),
                         [](const auto &row) { return std::string(row.param); });

TEST(ToGray8, bitsAboveTheDepthAreWhite)
{
    const Exact<std::uint8_t> bytes(std::vector<std::uint8_t>{0xFF, 0xFF, 0x00, 0x10, 0xFF, 0x0F});
    Exact<std::uint8_t> out(3);
    ASSERT_TRUE(toGray8(view(*findPixelFormat("Mono12"sv), bytes, 3, 1), out.data()));
    EXPECT_EQ(out.values(), (std::vector<std::uint8_t>{255, 255, 255}));
}

TEST(ToGray8, readsWordsAtOddAddresses)
{
    const Exact<std::uint8_t> bytes(std::vector<std::uint8_t>{0xAA, 0xF0, 0x0F, 0x80, 0x00});
    Exact<std::uint8_t> out(2);
    const ImageView image{findPixelFormat("Mono12"sv), bytes.data() + 1, 4, 2, 1};
    ASSERT_TRUE(toGray8(image, out.data()));
    EXPECT_EQ(out.values(), (std::vector<std::uint8_t>{255, 8}));
}

TEST(ToGray8, refusesColourAndShortImages)
{
    const Exact<std::uint8_t> bytes(24);
    Exact<std::uint8_t> out(24);
    EXPECT_FALSE(toGray8(view(*findPixelFormat("RGB8"sv), bytes, 4, 2), out.data()));
    EXPECT_FALSE(toGray8(view(*findPixelFormat("YUV422_8"sv), bytes, 4, 2), out.data()));
    EXPECT_FALSE(toGray8(view(*findPixelFormat("Mono8"sv), bytes, 5, 5), out.data()));
    EXPECT_FALSE(toGray8(view(*findPixelFormat("Mono8"sv), bytes, 0, 5), out.data()));
    EXPECT_FALSE(toGray8(view(*findPixelFormat("Mono8"sv), bytes, 4, 2), nullptr));
    EXPECT_FALSE(orvalis::toGray8({nullptr, bytes.data(), 24, 4, 2}, out.data()));
    EXPECT_FALSE(orvalis::toGray8({findPixelFormat("Mono8"sv), nullptr, 24, 4, 2}, out.data()));
    EXPECT_FALSE(
        toGray8(view(*findPixelFormat("Mono8"sv), bytes, 0xFFFFFFFF, 0xFFFFFFFF), out.data()));
}

} // namespace
