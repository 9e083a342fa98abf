// SPDX-License-Identifier: MIT
// Tests each Bayer order and depth with a mosaic of a known scene, and with a reference
// interpolation written from its definition.
#include "tests/library/convert/Encode.h"

#include <gtest/gtest.h>

#include <tuple>

using namespace converttest;
using orvalis::findPixelFormat;

namespace {

using Rgb = std::array<unsigned, 3>;

/// A scene in which every colour has its own slope, to detect a swapped order.
Rgb sceneAt(unsigned x, unsigned y)
{
    return {200 + 3 * x, 20 + 5 * y + x, (90 + 2 * x + 4 * y) % 256};
}

/// Colour of a pixel by the order's two letters ("GR": green, red in the first row).
std::size_t channelAt(std::string_view order, unsigned x, unsigned y)
{
    constexpr std::string_view letters = "RGB";
    const bool greenFirst = order[0] == 'G';
    const char other = order[0] == 'G' ? order[1] : order[0]; // the colour of even rows
    const char opposite = other == 'R' ? 'B' : 'R';
    const bool green = ((x + y) % 2 == 0) == greenFirst;
    return letters.find(green ? 'G' : (y % 2 == 0 ? other : opposite));
}

struct Seen {
    std::string_view order;
    unsigned width;
    unsigned height;
    std::vector<unsigned> samples;
};

Seen mosaicOf(std::string_view order, unsigned width, unsigned height)
{
    Seen seen{order, width, height, {}};
    for (unsigned y = 0; y < height; ++y) {
        for (unsigned x = 0; x < width; ++x) {
            seen.samples.push_back(sceneAt(x, y)[channelAt(order, x, y)] & 0xFF);
        }
    }
    return seen;
}

/// Mirrors a coordinate beyond the edges about the outermost pixel.
unsigned mirrored(int i, unsigned count)
{
    const int last = static_cast<int>(count) - 1;
    return static_cast<unsigned>(last == 0 ? 0 : i < 0 ? -i : i > last ? 2 * last - i : i);
}

/// Rounded mean of the samples of a colour in the surrounding 3 x 3 pixels; the pixel's own sample
/// if it has that colour.
unsigned expectedAt(const Seen &seen, unsigned x, unsigned y, std::size_t channel)
{
    if (channelAt(seen.order, x, y) == channel) {
        return seen.samples[y * seen.width + x];
    }
    unsigned sum = 0;
    unsigned count = 0;
    for (unsigned v = y; v <= y + 2; ++v) { // one more than the row and the column
        for (unsigned u = x; u <= x + 2; ++u) {
            if (channelAt(seen.order, u + 1, v + 1) == channel) {
                sum += seen.samples[mirrored(static_cast<int>(v) - 1, seen.height) * seen.width +
                                    mirrored(static_cast<int>(u) - 1, seen.width)];
                ++count;
            }
        }
    }
    return (sum + count / 2) / count;
}

void expectInterpolated(const Seen &seen, const Exact<std::uint8_t> &rgb)
{
    for (unsigned y = 0; y < seen.height; ++y) {
        for (unsigned x = 0; x < seen.width; ++x) {
            for (std::size_t channel = 0; channel < 3; ++channel) {
                ASSERT_EQ(rgb[(y * seen.width + x) * 3 + channel], expectedAt(seen, x, y, channel))
                    << seen.order << ' ' << seen.width << 'x' << seen.height << " at " << x << ','
                    << y << " channel " << channel;
            }
        }
    }
}

using OrderAndDepth = std::tuple<std::string_view, std::string_view>;
class BayerFormat : public testing::TestWithParam<OrderAndDepth> {
protected:
    void expectGolden(unsigned width, unsigned height)
    {
        const auto [order, depth] = GetParam();
        const std::string name = "Bayer" + std::string(order) + std::string(depth);
        const PixelFormat *format = findPixelFormat(name);
        ASSERT_NE(format, nullptr) << name;
        const Seen seen = mosaicOf(order, width, height);
        std::vector<unsigned> deep = seen.samples;
        for (unsigned &sample : deep) {
            sample <<= format->depth - 8;
        }
        expectInterpolated(seen, converted(*format, encode(*format, deep), width, height));
    }

private:
    static Exact<std::uint8_t> converted(const PixelFormat &format,
                                         const std::vector<std::uint8_t> &encoded, unsigned width,
                                         unsigned height)
    {
        const std::size_t pixels = std::size_t{width} * height;
        const Exact<std::uint8_t> bytes(encoded);
        Exact<std::uint8_t> rgb(pixels * 3);
        Exact<std::uint8_t> scratch(pixels);
        if (!isPacked(format)) {
            EXPECT_TRUE(toRgb8(view(format, bytes, width, height), rgb.data(), scratch.data()));
            return rgb;
        }
        Exact<std::uint16_t> words(pixels);
        EXPECT_TRUE(unpackToWords(view(format, bytes, width, height), words.data()));
        const orvalis::ImageView image{orvalis::unpackedFormat(format),
                                       reinterpret_cast<const std::uint8_t *>(words.data()),
                                       pixels * 2, width, height};
        EXPECT_TRUE(toRgb8(image, rgb.data(), scratch.data()));
        return rgb;
    }
};

TEST_P(BayerFormat, givesTheInterpolatedSceneAtEverySmallSize)
{
    for (unsigned width = 1; width <= 9; ++width) {
        for (unsigned height = 1; height <= 9; ++height) {
            expectGolden(width, height);
        }
    }
}

TEST_P(BayerFormat, givesTheInterpolatedSceneWhereVectorCodeRuns)
{
    expectGolden(64, 48);
    expectGolden(131, 67);
    expectGolden(640, 33);
}

INSTANTIATE_TEST_SUITE_P(All, BayerFormat,
                         testing::Combine(testing::Values("GR", "RG", "GB", "BG"),
                                          testing::Values("8", "10", "12", "14", "16", "10p", "12p",
                                                          "14p", "10Packed", "12Packed")),
                         [](const auto &row) {
                             return std::string(std::get<0>(row.param)) +
                                    std::string(std::get<1>(row.param));
                         });

// A smooth scene does not cover all cases of rounding.
TEST(Bayer, noiseIsInterpolatedToTheBit)
{
    for (const std::string_view order : {"GR", "RG", "GB", "BG"}) {
        const PixelFormat &format = *findPixelFormat("Bayer" + std::string(order) + "8");
        for (const auto &[width, height] :
             {std::pair{3U, 3U}, {34U, 5U}, {65U, 64U}, {131U, 67U}, {640U, 33U}}) {
            const Seen seen{order, width, height, testSamples(std::size_t{width} * height, 8)};
            const Exact<std::uint8_t> bytes(encode(format, seen.samples));
            Exact<std::uint8_t> rgb(seen.samples.size() * 3);
            ASSERT_TRUE(toRgb8(view(format, bytes, width, height), rgb.data(), nullptr));
            expectInterpolated(seen, rgb);
        }
    }
}

TEST(Bayer, anEvenlyColouredWallKeepsItsColour)
{
    constexpr Rgb wall{200, 100, 50};
    for (const std::string_view order : {"GR", "RG", "GB", "BG"}) {
        const PixelFormat &format = *findPixelFormat("Bayer" + std::string(order) + "8");
        Exact<std::uint8_t> mosaic(20 * 10);
        for (unsigned i = 0; i < 200; ++i) {
            mosaic.data()[i] = static_cast<std::uint8_t>(wall[channelAt(order, i % 20, i / 20)]);
        }
        Exact<std::uint8_t> rgb(600);
        ASSERT_TRUE(toRgb8(view(format, mosaic, 20, 10), rgb.data(), nullptr));
        for (std::size_t i = 0; i < 600; ++i) {
            ASSERT_EQ(rgb[i], wall[i % 3]) << order << " @" << i;
        }
    }
}

TEST(Bayer, deepFormatsNeedTheScratchPlane)
{
    const Exact<std::uint8_t> bytes(32);
    Exact<std::uint8_t> rgb(48);
    EXPECT_FALSE(toRgb8(view(*findPixelFormat(0x01100010U), bytes, 4, 4), rgb.data(), nullptr));
}

} // namespace
