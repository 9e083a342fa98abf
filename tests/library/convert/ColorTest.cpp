// SPDX-License-Identifier: MIT
// RGB, BGR, YUV and monochrome images to RGB and to brightness.
#include "tests/library/convert/Encode.h"

#include <gtest/gtest.h>

#include <cmath>

using namespace converttest;
using namespace std::string_view_literals;
using orvalis::findPixelFormat;

namespace {

std::vector<std::uint8_t> noise(std::size_t count)
{
    std::vector<std::uint8_t> bytes;
    for (const unsigned sample : testSamples(count, 8)) {
        bytes.push_back(static_cast<std::uint8_t>(sample));
    }
    return bytes;
}

std::vector<std::uint8_t> rgbOf(std::string_view format, const Exact<std::uint8_t> &bytes,
                                std::uint32_t width, std::uint32_t height)
{
    Exact<std::uint8_t> rgb(std::size_t{width} * height * 3);
    EXPECT_TRUE(toRgb8(view(*findPixelFormat(format), bytes, width, height), rgb.data(), nullptr));
    return rgb.values();
}

std::vector<std::uint8_t> brightnessOf(std::string_view format, const Exact<std::uint8_t> &bytes,
                                       std::uint32_t width, std::uint32_t height)
{
    Exact<std::uint8_t> out(std::size_t{width} * height);
    EXPECT_TRUE(toBrightness8(view(*findPixelFormat(format), bytes, width, height), out.data()));
    return out.values();
}

class Size : public testing::TestWithParam<std::pair<std::uint32_t, std::uint32_t>> {
protected:
    std::uint32_t width_ = GetParam().first;
    std::uint32_t height_ = GetParam().second;
    std::size_t pixels_ = std::size_t{width_} * height_;
};

TEST_P(Size, rgbIsCopiedAndBgrIsTurnedRound)
{
    const Exact<std::uint8_t> bytes(noise(pixels_ * 3));
    EXPECT_EQ(rgbOf("RGB8", bytes, width_, height_), bytes.values());
    const std::vector<std::uint8_t> turned = rgbOf("BGR8", bytes, width_, height_);
    for (std::size_t i = 0; i < turned.size(); ++i) {
        ASSERT_EQ(turned[i], bytes[i - i % 3 + 2 - i % 3]) << i;
    }
}

TEST_P(Size, planesAreInterleaved)
{
    const Exact<std::uint8_t> bytes(noise(pixels_ * 3));
    const std::vector<std::uint8_t> rgb = rgbOf("RGB8_Planar", bytes, width_, height_);
    for (std::size_t i = 0; i < rgb.size(); ++i) {
        ASSERT_EQ(rgb[i], bytes[i % 3 * pixels_ + i / 3]) << i;
    }
}

TEST_P(Size, brightnessOfColourIsItsLuminance)
{
    const Exact<std::uint8_t> rgb(noise(pixels_ * 3));
    const std::vector<std::uint8_t> ofRgb = brightnessOf("RGB8", rgb, width_, height_);
    const std::vector<std::uint8_t> ofBgr = brightnessOf("BGR8", rgb, width_, height_);
    const std::vector<std::uint8_t> ofPlanes = brightnessOf("RGB8_Planar", rgb, width_, height_);
    const auto luminance = [](double r, double g, double b) {
        return 0.299 * r + 0.587 * g + 0.114 * b;
    };
    for (std::size_t i = 0; i < pixels_; ++i) {
        const auto at = [&](std::size_t j) { return static_cast<double>(rgb[j]); };
        ASSERT_NEAR(ofRgb[i], luminance(at(3 * i), at(3 * i + 1), at(3 * i + 2)), 0.51);
        ASSERT_NEAR(ofBgr[i], luminance(at(3 * i + 2), at(3 * i + 1), at(3 * i)), 0.51);
        ASSERT_NEAR(ofPlanes[i], luminance(at(i), at(pixels_ + i), at(2 * pixels_ + i)), 0.51);
    }
}

TEST_P(Size, monochromeIsGrey)
{
    const Exact<std::uint8_t> bytes(noise(pixels_));
    const std::vector<std::uint8_t> rgb = rgbOf("Mono8", bytes, width_, height_);
    for (std::size_t i = 0; i < rgb.size(); ++i) {
        ASSERT_EQ(rgb[i], bytes[i / 3]) << i;
    }
    EXPECT_EQ(brightnessOf("Mono8", bytes, width_, height_), bytes.values());
}

struct Yuv {
    double y, u, v;
};

std::array<double, 3> toRgb(Yuv p)
{
    const auto bounded = [](double value) { return std::min(255.0, std::max(0.0, value)); };
    return {bounded(p.y + 1.402 * (p.v - 128)),
            bounded(p.y - 0.344136 * (p.u - 128) - 0.714136 * (p.v - 128)),
            bounded(p.y + 1.772 * (p.u - 128))};
}

/// A pixel in a row of pairs; an odd last pixel has no V of its own.
Yuv yuvAt(const std::uint8_t *row, std::uint32_t x, std::uint32_t width, std::string_view order)
{
    const std::uint8_t *pair = row + x / 2 * 4;
    const std::size_t v = order.find('V');
    Yuv p{};
    p.y = pair[order.find('Y') + (x % 2) * 2];
    p.u = pair[order.find('U')];
    const bool alone = x % 2 == 0 && x + 1 == width;
    p.v = !alone ? pair[v] : (x == 0 ? 128 : (pair - 4)[v]);
    return p;
}

TEST_P(Size, yuvFollowsFullRangeBt601InBothByteOrders)
{
    const Exact<std::uint8_t> bytes(noise(pixels_ * 2));
    for (const auto &[format, order] :
         {std::pair{"YUV422_8"sv, "YU_V"sv}, std::pair{"YUV422_8_UYVY"sv, "UYV_"sv},
          std::pair{"YCbCr422_8"sv, "YU_V"sv}, std::pair{"YCbCr422_8_CbYCrY"sv, "UYV_"sv},
          std::pair{"YUV422Packed"sv, "UYV_"sv}}) {
        const std::vector<std::uint8_t> rgb = rgbOf(format, bytes, width_, height_);
        const std::vector<std::uint8_t> bright = brightnessOf(format, bytes, width_, height_);
        for (std::size_t i = 0; i < pixels_; ++i) {
            const auto x = static_cast<std::uint32_t>(i % width_);
            const Yuv p = yuvAt(bytes.data() + i / width_ * width_ * 2, x, width_, order);
            const std::array<double, 3> expected = toRgb(p);
            ASSERT_EQ(bright[i], p.y) << format << " @" << i;
            for (std::size_t channel = 0; channel < 3; ++channel) {
                ASSERT_NEAR(rgb[i * 3 + channel], expected[channel], 0.51)
                    << format << " @" << i << " channel " << channel;
            }
        }
    }
}

std::vector<std::pair<std::uint32_t, std::uint32_t>> sizes()
{
    std::vector<std::pair<std::uint32_t, std::uint32_t>> all{{64, 48}, {131, 67}};
    for (std::uint32_t width = 1; width <= 9; ++width) {
        for (std::uint32_t height = 1; height <= 9; ++height) {
            all.emplace_back(width, height);
        }
    }
    return all;
}

INSTANTIATE_TEST_SUITE_P(Every, Size, testing::ValuesIn(sizes()), [](const auto &row) {
    return std::to_string(row.param.first) + "x" + std::to_string(row.param.second);
});

TEST(Color, refusesAnImageThatDoesNotFit)
{
    const Exact<std::uint8_t> bytes(noise(30));
    Exact<std::uint8_t> out(300);
    for (const std::string_view name : {"RGB8", "BGR8", "RGB8_Planar", "YUV422_8", "Mono12"}) {
        const orvalis::ImageView image = view(*findPixelFormat(name), bytes, 4, 4);
        EXPECT_FALSE(toRgb8(image, out.data(), out.data())) << name;
        EXPECT_FALSE(toBrightness8(image, out.data())) << name;
    }
}

} // namespace
