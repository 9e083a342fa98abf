// SPDX-License-Identifier: MIT
// Which pixels of a frame are displayed, and that nothing else is read.
#include "capture/FramePixels.h"

#include <gtest/gtest.h>

#include <numeric>
#include <vector>

namespace {

constexpr std::uint32_t mono12 = 0x01100005;
constexpr std::uint32_t bayerGR12 = 0x01100010;
constexpr std::uint32_t mono12Packed = 0x010C0006;
constexpr std::uint32_t mono8 = 0x01080001;

std::uint8_t *nowhere()
{
    return reinterpret_cast<std::uint8_t *>(std::uintptr_t{16}); // reading it ends the test
}

/// A frame whose planes hold exactly the bytes of width x height pixels.
class Frame {
public:
    Frame(std::uint32_t width, std::uint32_t height)
        : m_raw(std::size_t{width} * height), m_rgb(m_raw.size() * 3), m_mono(m_raw.size())
    {
        std::iota(m_raw.begin(), m_raw.end(), std::uint8_t{1});
        std::iota(m_rgb.begin(), m_rgb.end(), std::uint8_t{50});
        std::iota(m_mono.begin(), m_mono.end(), std::uint8_t{100});
        record = {width * height, width, height, 8, m_raw.data(), m_rgb.data(), m_mono.data()};
    }

    OImageFrame record{};

private:
    std::vector<std::uint8_t> m_raw;
    std::vector<std::uint8_t> m_rgb;
    std::vector<std::uint8_t> m_mono;
};

TEST(DisplayPlane, colourShowsRgbWhateverTheFormat)
{
    EXPECT_EQ(displayPlane(true, mono8), FramePlane::Rgb);
    EXPECT_EQ(displayPlane(true, mono12), FramePlane::Rgb);
}

TEST(DisplayPlane, twelveBitGreyShowsTheEightBitPlane)
{
    EXPECT_EQ(displayPlane(false, mono12), FramePlane::Mono8);
    EXPECT_EQ(displayPlane(false, bayerGR12), FramePlane::Mono8);
}

TEST(DisplayPlane, otherGreyShowsTheRawPlane)
{
    EXPECT_EQ(displayPlane(false, mono8), FramePlane::Raw);
    EXPECT_EQ(displayPlane(false, 0), FramePlane::Raw);
}

TEST(DisplayedPixels, areThoseOfThePlane)
{
    const Frame frame(4, 3);
    EXPECT_EQ(displayedPixels(frame.record, FramePlane::Rgb, 12), frame.record.rgb);
    EXPECT_EQ(displayedPixels(frame.record, FramePlane::Mono8, 12), frame.record.mono8);
    EXPECT_EQ(displayedPixels(frame.record, FramePlane::Raw, 12), frame.record.raw);
}

TEST(RegionPixels, areNoneWithoutAnArea)
{
    EXPECT_EQ(regionPixels(8, 5), 40U);
    EXPECT_EQ(regionPixels(0, 5), 0U);
    EXPECT_EQ(regionPixels(-8, 5), 0U);
    EXPECT_EQ(regionPixels(8, -5), 0U);
    EXPECT_EQ(regionPixels(0x7FFFFFFF, 0x7FFFFFFF), 0x3FFFFFFF00000001U);
}

struct Refusal {
    const char *name;
    OImageFrame frame;
    FramePlane plane;
    int regionWidth = 8;
    int regionHeight = 8;
};

class Refused : public testing::TestWithParam<Refusal> {};

TEST_P(Refused, pixelsAreNull)
{
    const Refusal &refusal = GetParam();
    EXPECT_EQ(displayedPixels(refusal.frame, refusal.plane,
                              regionPixels(refusal.regionWidth, refusal.regionHeight)),
              nullptr);
}

constexpr std::uint32_t most = 0xFFFFFFFFU;

INSTANTIATE_TEST_SUITE_P(
    Frames, Refused,
    testing::Values(
        Refusal{"NoRgb", {64, 8, 8, 8, nowhere(), nullptr, nowhere()}, FramePlane::Rgb},
        Refusal{"NoRaw", {64, 8, 8, 8, nullptr, nowhere(), nowhere()}, FramePlane::Raw},
        Refusal{"NoMono8", {64, 8, 8, 8, nowhere(), nowhere(), nullptr}, FramePlane::Mono8},
        Refusal{"RawTooShort", {63, 8, 8, 8, nowhere(), nowhere(), nowhere()}, FramePlane::Raw},
        Refusal{"OneRowMore", {72, 8, 9, 8, nowhere(), nowhere(), nowhere()}, FramePlane::Rgb},
        Refusal{"NoWidth", {64, 0, 8, 8, nowhere(), nowhere(), nowhere()}, FramePlane::Rgb},
        Refusal{"NoHeight", {64, 8, 0, 8, nowhere(), nowhere(), nowhere()}, FramePlane::Rgb},
        Refusal{"Largest", {most, most, most, 8, nowhere(), nowhere(), nowhere()}, FramePlane::Rgb},
        Refusal{"Wraps", {0, 65536, 65536, 8, nowhere(), nowhere(), nowhere()}, FramePlane::Raw},
        Refusal{
            "EmptyRegion", {64, 8, 8, 8, nowhere(), nowhere(), nowhere()}, FramePlane::Rgb, 0, 8},
        Refusal{"NegativeRegion",
                {64, 8, 8, 8, nowhere(), nowhere(), nowhere()},
                FramePlane::Rgb,
                -8,
                -8},
        Refusal{"HugeRegion",
                {most, 50000, 50000, 8, nowhere(), nowhere(), nowhere()},
                FramePlane::Rgb,
                0x7FFFFFFF,
                0x7FFFFFFF}),
    [](const auto &row) { return row.param.name; });

// As delivered by a library that omits the field.
TEST(DisplayedPixels, ofARawPlaneWithoutASizeAreTheWholePlane)
{
    Frame frame(4, 3);
    frame.record.rawSize = 0;
    EXPECT_EQ(displayedPixels(frame.record, FramePlane::Raw, 12), frame.record.raw);
}

struct RawSize {
    std::uint32_t claimed;
    std::uint32_t bits;
    std::size_t readable;
    std::uint32_t format = 0;
};

class RawPlaneBytes : public testing::TestWithParam<RawSize> {};

TEST_P(RawPlaneBytes, areTheStatedOnesUnlessImpossible)
{
    OImageFrame frame{GetParam().claimed, 10, 10, GetParam().bits, nowhere(), nullptr, nullptr};
    EXPECT_EQ(rawPlaneBytes(frame, GetParam().format), GetParam().readable);
}

INSTANTIATE_TEST_SUITE_P(
    Claims, RawPlaneBytes,
    testing::Values(RawSize{100, 8, 100}, RawSize{200, 16, 200}, RawSize{50, 8, 50},
                    RawSize{most, 8, 100}, RawSize{most, 0, 100}, RawSize{most, most, 800},
                    RawSize{0, 8, 100}, RawSize{0, 8, 100, mono8}, RawSize{0, 12, 200, mono12},
                    RawSize{0, 16, 200, bayerGR12}, RawSize{0, 12, 150, mono12Packed},
                    RawSize{0, most, 800, most}, RawSize{300, 24, 300}, RawSize{200, 12, 200},
                    RawSize{4196, 8, 4196}));

TEST(RawPlaneBytesOf, aMissingPlaneIsZero)
{
    EXPECT_EQ(rawPlaneBytes({100, 10, 10, 8, nullptr, nullptr, nullptr}, mono8), 0U);
}

TEST(RawPlaneBytesOf, aHugeFrameDoesNotOverflow)
{
    EXPECT_LE(rawPlaneBytes({0, most, most, most, nowhere(), nullptr, nullptr}, most), 0x7FFFFFFFU);
    EXPECT_LE(rawPlaneBytes({most, most, most, most, nowhere(), nullptr, nullptr}, most),
              0x7FFFFFFFU);
}

} // namespace
