// SPDX-License-Identifier: MIT
// Converts RGB, BGR, YUV and monochrome images to RGB and to luminance.
#include "tests/library/convert/Encode.h"

#include <gtest/gtest.h>

#include <algorithm>
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

TEST_P(Size, rgbIsCopiedAndBgrIsReordered)
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

TEST_P(Size, grey8OfColourIsItsLuminance)
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

/// Positions of R, G, B in a pixel of each RGB kind.
struct Order {
    std::string_view prefix;
    std::array<std::size_t, 3> at;
    std::size_t samples;
};
constexpr std::array orders{Order{"RGB", {0, 1, 2}, 3}, Order{"BGR", {2, 1, 0}, 3},
                            Order{"RGBa", {0, 1, 2}, 4}, Order{"BGRa", {2, 1, 0}, 4}};

TEST_P(Size, opacityIsIgnored)
{
    const Exact<std::uint8_t> bytes(noise(pixels_ * 4));
    for (const Order &order : {orders[2], orders[3]}) {
        const std::string format = std::string(order.prefix) + "8";
        const std::vector<std::uint8_t> rgb = rgbOf(format, bytes, width_, height_);
        const std::vector<std::uint8_t> bright = brightnessOf(format, bytes, width_, height_);
        for (std::size_t i = 0; i < rgb.size(); ++i) {
            ASSERT_EQ(rgb[i], bytes[i / 3 * 4 + order.at[i % 3]]) << format << " @" << i;
        }
        for (std::size_t i = 0; i < pixels_; ++i) {
            ASSERT_NEAR(bright[i],
                        0.299 * rgb[i * 3] + 0.587 * rgb[i * 3 + 1] + 0.114 * rgb[i * 3 + 2], 0.51);
        }
    }
}

TEST_P(Size, deepColourKeepsItsUpperEightBits)
{
    for (const Order &order : orders) {
        for (const unsigned depth : {10U, 12U, 14U, 16U}) {
            const std::string name = std::string(order.prefix) + std::to_string(depth);
            const PixelFormat &format = *findPixelFormat(name);
            const std::vector<unsigned> samples = testSamples(pixels_ * order.samples, depth);
            const Exact<std::uint8_t> bytes(encode(format, samples));
            const std::vector<std::uint8_t> rgb = rgbOf(name, bytes, width_, height_);
            for (std::size_t i = 0; i < rgb.size(); ++i) {
                const unsigned sample = samples[i / 3 * order.samples + order.at[i % 3]];
                ASSERT_EQ(rgb[i], sample >> (depth - 8)) << name << " @" << i;
            }
        }
    }
}

TEST_P(Size, luminanceOfDeepColourHasItsDepth)
{
    for (const Order &order : orders) {
        const std::string name = std::string(order.prefix) + "12";
        const PixelFormat &format = *findPixelFormat(name);
        const std::vector<unsigned> samples = testSamples(pixels_ * order.samples, 12);
        const Exact<std::uint8_t> bytes(encode(format, samples));
        Exact<std::uint16_t> words(pixels_);
        ASSERT_TRUE(toBrightnessWords(view(format, bytes, width_, height_), words.data()));
        const std::vector<std::uint8_t> bright = brightnessOf(name, bytes, width_, height_);
        for (std::size_t i = 0; i < pixels_; ++i) {
            const auto at = [&](std::size_t c) {
                return static_cast<double>(samples[i * order.samples + order.at[c]]);
            };
            const double luminance = 0.299 * at(0) + 0.587 * at(1) + 0.114 * at(2);
            ASSERT_NEAR(words[i], luminance, 1) << name << " @" << i;
            ASSERT_NEAR(bright[i], luminance / 16, 1.5) << name << " @" << i;
        }
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

/// A format, the order of the samples of a group, and the coefficients of the standards that the
/// PFNC refers to.
struct YuvFormat {
    std::string_view name;
    std::string_view order;
    double black, luma; ///< Y of black, and factor of Y
    double rv, gu, gv, bu;
};

// ITU-T T.871 clause 7; ITU-R BT.601-7 2.5; ITU-R BT.709-6 3.2 to 4.6.
#define FULL 0, 1, 1.402, 0.344136, 0.714136, 1.772
#define BT601                                                                                      \
    16, 255.0 / 219, 1.402 * 255 / 224, 0.344136 * 255 / 224, 0.714136 * 255 / 224,                \
        1.772 * 255 / 224
#define BT709                                                                                      \
    16, 255.0 / 219, 1.5748 * 255 / 224, 0.187324 * 255 / 224, 0.468124 * 255 / 224,               \
        1.8556 * 255 / 224
constexpr YuvFormat yuvFormats[] = {
    {"YUV8_UYV", "UYV", FULL},
    {"YUV422_8", "YUYV", FULL},
    {"YUV422_8_UYVY", "UYVY", FULL},
    {"YUV422Packed", "UYVY", FULL},
    {"YUV411_8_UYYVYY", "UYYVYY", FULL},
    {"YCbCr8", "YUV", FULL},
    {"YCbCr8_CbYCr", "UYV", FULL},
    {"YCbCr422_8", "YUYV", FULL},
    {"YCbCr422_8_CbYCrY", "UYVY", FULL},
    {"YCbCr411_8", "YYUYYV", FULL},
    {"YCbCr411_8_CbYYCrYY", "UYYVYY", FULL},
    {"YCbCr601_8_CbYCr", "UYV", BT601},
    {"YCbCr601_422_8", "YUYV", BT601},
    {"YCbCr601_422_8_CbYCrY", "UYVY", BT601},
    {"YCbCr601_411_8_CbYYCrYY", "UYYVYY", BT601},
    {"YCbCr709_8_CbYCr", "UYV", BT709},
    {"YCbCr709_422_8", "YUYV", BT709},
    {"YCbCr709_422_8_CbYCrY", "UYVY", BT709},
    {"YCbCr709_411_8_CbYYCrYY", "UYYVYY", BT709},
};
#undef FULL
#undef BT601
#undef BT709

double bounded(double value) { return std::min(255.0, std::max(0.0, value)); }

std::array<double, 3> rgbOf(const YuvFormat &f, Yuv p)
{
    const double y = f.luma * (p.y - f.black);
    const double u = p.u - 128;
    const double v = p.v - 128;
    return {bounded(y + f.rv * v), bounded(y - f.gu * u - f.gv * v), bounded(y + f.bu * u)};
}

std::size_t pixelsOfGroup(std::string_view order)
{
    return static_cast<std::size_t>(std::count(order.begin(), order.end(), 'Y'));
}

/// A pixel of a row; if the row ends before V, the V of the previous group, or none.
Yuv yuvAt(const Exact<std::uint8_t> &bytes, std::size_t rowAt, std::size_t rowBytes, std::size_t x,
          std::string_view order)
{
    const std::size_t inGroup = pixelsOfGroup(order);
    const std::size_t group = x / inGroup * order.size();
    std::size_t y = order.find('Y');
    for (std::size_t i = 0; i < x % inGroup; ++i) {
        y = order.find('Y', y + 1);
    }
    Yuv p{};
    p.y = bytes[rowAt + group + y];
    p.u = bytes[rowAt + group + order.find('U')];
    const std::size_t v = group + order.find('V');
    p.v = v < rowBytes ? bytes[rowAt + v] : group > 0 ? bytes[rowAt + v - order.size()] : 128;
    return p;
}

TEST_P(Size, yuvFollowsTheStandardInItsName)
{
    for (const YuvFormat &f : yuvFormats) {
        if (pixelsOfGroup(f.order) == 4 && width_ % 2 != 0) {
            continue;
        }
        const std::size_t rowBytes = width_ * f.order.size() / pixelsOfGroup(f.order);
        const Exact<std::uint8_t> bytes(noise(rowBytes * height_));
        const std::vector<std::uint8_t> rgb = rgbOf(f.name, bytes, width_, height_);
        const std::vector<std::uint8_t> bright = brightnessOf(f.name, bytes, width_, height_);
        for (std::size_t i = 0; i < pixels_; ++i) {
            const Yuv p = yuvAt(bytes, i / width_ * rowBytes, rowBytes, i % width_, f.order);
            const std::array<double, 3> expected = rgbOf(f, p);
            ASSERT_NEAR(bright[i], bounded(f.luma * (p.y - f.black)), 0.51) << f.name << " @" << i;
            for (std::size_t channel = 0; channel < 3; ++channel) {
                ASSERT_NEAR(rgb[i * 3 + channel], expected[channel], 1.0)
                    << f.name << " @" << i << " channel " << channel;
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

/// The colour bars, 100 %, as each standard's code values: red, green, blue, yellow, cyan, magenta,
/// white, black.
struct Bar {
    std::array<int, 3> rgb, full, bt601, bt709;
};
constexpr Bar bars[] = {
    {{255, 0, 0}, {76, 85, 255}, {81, 90, 240}, {63, 102, 240}},
    {{0, 255, 0}, {150, 44, 21}, {145, 54, 34}, {173, 42, 26}},
    {{0, 0, 255}, {29, 255, 107}, {41, 240, 110}, {32, 240, 118}},
    {{255, 255, 0}, {226, 1, 149}, {210, 16, 146}, {219, 16, 138}},
    {{0, 255, 255}, {179, 171, 1}, {170, 166, 16}, {188, 154, 16}},
    {{255, 0, 255}, {105, 212, 235}, {106, 202, 222}, {78, 214, 230}},
    {{255, 255, 255}, {255, 128, 128}, {235, 128, 128}, {235, 128, 128}},
    {{0, 0, 0}, {0, 128, 128}, {16, 128, 128}, {16, 128, 128}},
};

TEST(Yuv, colourBarsOfEachStandardArePure)
{
    for (const Bar &bar : bars) {
        for (const auto &[format, code] :
             {std::pair{"YCbCr8_CbYCr"sv, bar.full}, std::pair{"YCbCr601_8_CbYCr"sv, bar.bt601},
              std::pair{"YCbCr709_8_CbYCr"sv, bar.bt709}}) {
            const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(code[i]); };
            const Exact<std::uint8_t> bytes(std::vector<std::uint8_t>{byte(1), byte(0), byte(2)});
            const std::vector<std::uint8_t> rgb = rgbOf(format, bytes, 1, 1);
            for (std::size_t channel = 0; channel < 3; ++channel) {
                EXPECT_NEAR(rgb[channel], bar.rgb[channel], 2) // code values are rounded
                    << format << " channel " << channel;
            }
        }
    }
}

TEST(Yuv, fourToOneToOneOfAnOddWidthIsRefused)
{
    const Exact<std::uint8_t> bytes(noise(100));
    Exact<std::uint8_t> out(100);
    for (const std::string_view name : {"YUV411_8_UYYVYY", "YCbCr411_8"}) {
        const orvalis::ImageView image = view(*findPixelFormat(name), bytes, 5, 4);
        EXPECT_FALSE(toRgb8(image, out.data(), nullptr)) << name;
        EXPECT_FALSE(toBrightness8(image, out.data())) << name;
    }
}

TEST(Color, onlyDeepRgbHasLuminanceInWords)
{
    const Exact<std::uint8_t> bytes(noise(96));
    Exact<std::uint16_t> out(16);
    for (const std::string_view name : {"RGB8", "Mono12", "YUV422_8", "RGB10p", "RGB16"}) {
        EXPECT_EQ(toBrightnessWords(view(*findPixelFormat(name), bytes, 4, 4), out.data()),
                  name == "RGB16")
            << name;
    }
    EXPECT_FALSE(toBrightnessWords(view(*findPixelFormat("RGB16"sv), bytes, 5, 4), out.data()));
    EXPECT_FALSE(toBrightnessWords(view(*findPixelFormat("RGB16"sv), bytes, 4, 4), nullptr));
}

TEST(Color, refusesAnImageThatDoesNotFit)
{
    const Exact<std::uint8_t> bytes(noise(23));
    Exact<std::uint8_t> out(300);
    for (const std::string_view name :
         {"RGB8", "BGR8", "RGBa8", "BGRa16", "RGB12", "RGB8_Planar", "YUV422_8", "YUV8_UYV",
          "YUV411_8_UYYVYY", "YCbCr709_422_8", "Mono12"}) {
        const orvalis::ImageView image = view(*findPixelFormat(name), bytes, 4, 4);
        EXPECT_FALSE(toRgb8(image, out.data(), out.data())) << name;
        EXPECT_FALSE(toBrightness8(image, out.data())) << name;
    }
}

} // namespace
