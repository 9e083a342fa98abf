// SPDX-License-Identifier: MIT
// Which images reveal the byte order of their pixels, and which do not.
#include "library/genicam/PixelOrder.h"

#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <vector>

using orvalis::PixelOrder;
using orvalis::RawImage;

namespace {

constexpr std::uint32_t mono12 = 0x01100005;
constexpr std::uint32_t mono16 = 0x01100007;
constexpr unsigned width = 320;
constexpr unsigned height = 100;

/// An image as a camera sends it.
struct Picture {
    Picture(std::uint32_t pixelFormat, bool bigEndian,
            const std::function<unsigned(unsigned, unsigned)> &pixel)
    {
        for (unsigned y = 0; y < height; ++y) {
            for (unsigned x = 0; x < width; ++x) {
                const auto low = static_cast<std::uint8_t>(pixel(x, y));
                const auto high = static_cast<std::uint8_t>(pixel(x, y) >> 8);
                bytes.push_back(bigEndian ? high : low);
                bytes.push_back(bigEndian ? low : high);
            }
        }
        image.data = bytes.data();
        image.size = bytes.size();
        image.width = width;
        image.height = height;
        image.pixelFormat = pixelFormat;
    }
    std::vector<std::uint8_t> bytes;
    RawImage image;
};

unsigned shade(unsigned x, unsigned y) { return x * 97 + y * 31; }

/// Whether a new PixelOrder swaps the image.
bool isSwapped(std::uint32_t format, bool bigEndian,
               const std::function<unsigned(unsigned, unsigned)> &pixel, bool mayBeBig = true)
{
    Picture picture(format, bigEndian, pixel);
    PixelOrder order(mayBeBig);
    order.correct(picture.image);
    const bool swapped = picture.image.data != picture.bytes.data();
    if (swapped) {
        EXPECT_EQ(picture.image.data[0], picture.bytes[1]);
        EXPECT_EQ(picture.image.data[1], picture.bytes[0]);
        EXPECT_EQ(picture.image.size, picture.bytes.size());
    }
    return swapped;
}

TEST(PixelOrder, gradientsRevealTheOrder)
{
    EXPECT_TRUE(isSwapped(mono16, true, shade));
    EXPECT_FALSE(isSwapped(mono16, false, shade));
}

TEST(PixelOrder, allRowsAreSampled)
{
    EXPECT_TRUE(
        isSwapped(mono16, true, [](unsigned x, unsigned y) { return y == 0 ? 0 : shade(x, y); }));
}

TEST(PixelOrder, unusedBitsRevealTheOrderOfNoise)
{
    std::mt19937 random(1);
    const auto noise = [&](unsigned, unsigned) { return static_cast<unsigned>(random() & 0x0FFF); };
    EXPECT_TRUE(isSwapped(mono12, true, noise));
    EXPECT_FALSE(isSwapped(mono12, false, noise));
}

TEST(PixelOrder, noiseAndUniformImagesAreInconclusive)
{
    std::mt19937 random(1);
    const auto noise = [&](unsigned, unsigned) { return static_cast<unsigned>(random() & 0xFFFF); };
    const auto flat = [](unsigned, unsigned) { return 0x0102U; };
    for (const bool big : {false, true}) {
        EXPECT_FALSE(isSwapped(mono16, big, noise));
        EXPECT_FALSE(isSwapped(mono16, big, flat));
    }
}

/// 8-bit samples in 16 bits: both orders give the same image.
TEST(PixelOrder, emptyLowBytesAreInconclusive)
{
    EXPECT_FALSE(isSwapped(mono16, false, [](unsigned x, unsigned y) { return shade(x, y) << 8; }));
}

TEST(PixelOrder, onlyWordsOfOldCamerasAreSwapped)
{
    EXPECT_FALSE(isSwapped(mono16, true, shade, false));
    EXPECT_FALSE(isSwapped(0x01080001, true, shade));
}

TEST(PixelOrder, aConclusionIsKept)
{
    PixelOrder order(true);
    Picture clear(mono16, true, shade);
    order.correct(clear.image);
    Picture flat(mono16, true, [](unsigned, unsigned) { return 0x0102U; });
    order.correct(flat.image);
    EXPECT_EQ(flat.image.data[0], 0x02);
}

} // namespace
