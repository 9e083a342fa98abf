// SPDX-License-Identifier: MIT
// 16-bit raw to 8-bit grey.
#include "capture/RawConversion.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

struct Pixel {
    int bits;
    unsigned word;
    unsigned grey;
};

class RawToGray8 : public testing::TestWithParam<Pixel> {};

TEST_P(RawToGray8, shiftsAndLimitsAPixel)
{
    const Pixel pixel = GetParam();
    const std::uint8_t source[2] = {static_cast<std::uint8_t>(pixel.word & 0xFF),
                                    static_cast<std::uint8_t>(pixel.word >> 8)};
    std::uint8_t grey = 0xA5;
    rawToGray8(&grey, source, 1, 1, pixel.bits);
    EXPECT_EQ(grey, pixel.grey);
}

INSTANTIATE_TEST_SUITE_P(Words, RawToGray8,
                         testing::Values(Pixel{12, 4095, 255}, Pixel{12, 4096, 255},
                                         Pixel{12, 65535, 255}, Pixel{12, 15, 0}, Pixel{12, 16, 1},
                                         Pixel{12, 2048, 128}, Pixel{10, 1023, 255},
                                         Pixel{10, 1024, 255}, Pixel{10, 4, 1}, Pixel{10, 3, 0},
                                         Pixel{9, 511, 255}, Pixel{14, 16383, 255},
                                         Pixel{16, 65535, 127}, Pixel{16, 512, 1},
                                         Pixel{16, 511, 0}, Pixel{15, 32767, 255},
                                         Pixel{24, 65535, 0}, Pixel{40, 65535, 0}));

class RawToGray8Untouched : public testing::TestWithParam<int> {};

TEST_P(RawToGray8Untouched, writesNothing)
{
    const std::uint8_t source[2] = {0xFF, 0x0F};
    std::uint8_t grey = 0xA5;
    rawToGray8(&grey, source, 1, 1, GetParam());
    EXPECT_EQ(grey, 0xA5);
}

INSTANTIATE_TEST_SUITE_P(Bits, RawToGray8Untouched, testing::Values(8, 7, 0, -4));

TEST(RawToGray8Size, emptyImagesWriteNothing)
{
    rawToGray8(nullptr, nullptr, 4, 0, 12);
    rawToGray8(nullptr, nullptr, 0, 4, 12);
    rawToGray8(nullptr, nullptr, 4, -1, 12);
    rawToGray8(nullptr, nullptr, -1, 4, 12);
}

TEST(RawToGray8Size, everyPixelIsConverted)
{
    constexpr int width = 5;
    constexpr int height = 3;
    std::vector<std::uint8_t> source;
    std::vector<std::uint8_t> expected;
    for (unsigned i = 0; i < width * height; ++i) {
        source.push_back(0x0F);
        source.push_back(static_cast<std::uint8_t>(i));
        expected.push_back(static_cast<std::uint8_t>(i << 4));
    }
    std::vector<std::uint8_t> grey(width * height);
    rawToGray8(grey.data(), source.data(), width, height, 12);
    EXPECT_EQ(grey, expected);
}

} // namespace
