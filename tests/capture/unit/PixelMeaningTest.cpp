// SPDX-License-Identifier: MIT
// What each pixel format means to the viewer.
#include "capture/PixelMeaning.h"

#include <gtest/gtest.h>

namespace {

struct Row {
    const char *name;
    std::uint32_t code;
    bool color, bayer, previewRgb, twelveBits, hasNoColor;
    FramePlane plane;
};

TEST(PixelMeaning, followsNameAndCode)
{
    const Row rows[] = {
        {"Mono8", 0x01080001, false, false, false, false, true, FramePlane::Raw},
        {"Mono12", 0x01100005, false, false, false, true, true, FramePlane::Mono8},
        {"Mono12Packed", 0x01100005, false, false, false, true, true, FramePlane::Mono8},
        {"mono8", 0, true, false, false, false, true, FramePlane::Rgb},
        {"BayerGR8", 0x01080008, true, true, true, false, false, FramePlane::Rgb},
        {"BayerGR12", 0x01100010, true, true, true, true, false, FramePlane::Rgb},
        // A 12-bit code matters only in a format without colour, even if its name contains "Bayer".
        {"MonoBayer", 0x01100010, false, false, true, false, true, FramePlane::Mono8},
        {"RGB8", 0x02180014, true, false, false, false, false, FramePlane::Rgb},
        {"YUV422_8", 0x02100032, true, false, true, false, false, FramePlane::Rgb},
        {"YCbCr422_8", 0x0210003B, true, false, false, false, false, FramePlane::Rgb},
        {"", 0, true, false, false, false, false, FramePlane::Rgb},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        const PixelMeaning meaning = meaningOf(row.name, row.code);
        EXPECT_EQ(meaning.color, row.color);
        EXPECT_EQ(meaning.bayer, row.bayer);
        EXPECT_EQ(meaning.previewRgb, row.previewRgb);
        EXPECT_EQ(meaning.twelveBits, row.twelveBits);
        EXPECT_EQ(meaning.hasNoColor, row.hasNoColor);
        EXPECT_EQ(meaning.plane, row.plane);
    }
}

} // namespace
