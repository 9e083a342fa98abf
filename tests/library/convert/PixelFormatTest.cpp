// SPDX-License-Identifier: MIT
// The table of pixel formats: found by code and by name, and consistent with the codes.
#include "library/convert/Convert.h"

#include <gtest/gtest.h>

#include <limits>
#include <set>
#include <string>

using namespace std::string_view_literals;
using orvalis::findPixelFormat;
using orvalis::imageBytes;
using orvalis::PixelFormat;

namespace {

struct Row {
    std::string_view name;
    std::uint32_t code;
};

class KnownFormat : public testing::TestWithParam<Row> {};

TEST_P(KnownFormat, isFoundByNameAndCode)
{
    const PixelFormat *format = findPixelFormat(GetParam().name);
    ASSERT_NE(format, nullptr);
    EXPECT_EQ(format->code, GetParam().code);
    EXPECT_EQ(findPixelFormat(GetParam().code), format);
}

TEST_P(KnownFormat, hasTheSizeInItsCode)
{
    const PixelFormat *format = findPixelFormat(GetParam().code);
    ASSERT_NE(format, nullptr);
    EXPECT_EQ(format->bitsPerPixel, GetParam().code >> 16 & 0xFF);
    EXPECT_EQ(format->hasDirectColor(), GetParam().code >> 24 == 2);
}

/// The last number of a PFNC name: "YCbCr601_422_8" has 8 bits, "RGBa10p" 10. Only "YUV8_UYV" and
/// the names of GigE Vision have text behind it.
unsigned bitsInName(std::string_view name)
{
    const std::size_t last = name.find_last_of("0123456789");
    const std::size_t begin = name.find_last_not_of("0123456789", last) + 1;
    return static_cast<unsigned>(std::stoul(std::string(name.substr(begin, last + 1 - begin))));
}

TEST_P(KnownFormat, hasTheDepthInItsName)
{
    const PixelFormat *format = findPixelFormat(GetParam().code);
    ASSERT_NE(format, nullptr);
    EXPECT_EQ(format->depth, bitsInName(format->name));
}

INSTANTIATE_TEST_SUITE_P(
    Table, KnownFormat,
    testing::Values(
        Row{"Mono8", 0x01080001}, Row{"Mono10", 0x01100003}, Row{"Mono10Packed", 0x010C0004},
        Row{"Mono10p", 0x010A0046}, Row{"Mono12", 0x01100005}, Row{"Mono12Packed", 0x010C0006},
        Row{"Mono12p", 0x010C0047}, Row{"Mono14", 0x01100025}, Row{"Mono16", 0x01100007},
        Row{"BayerGR8", 0x01080008}, Row{"BayerRG8", 0x01080009}, Row{"BayerGB8", 0x0108000A},
        Row{"BayerBG8", 0x0108000B}, Row{"BayerGR10", 0x0110000C}, Row{"BayerRG10", 0x0110000D},
        Row{"BayerGB10", 0x0110000E}, Row{"BayerBG10", 0x0110000F}, Row{"BayerGR12", 0x01100010},
        Row{"BayerRG12", 0x01100011}, Row{"BayerGB12", 0x01100012}, Row{"BayerBG12", 0x01100013},
        Row{"BayerGR16", 0x0110002E}, Row{"BayerRG16", 0x0110002F}, Row{"BayerGB16", 0x01100030},
        Row{"BayerBG16", 0x01100031}, Row{"BayerGR10Packed", 0x010C0026},
        Row{"BayerRG10Packed", 0x010C0027}, Row{"BayerGB10Packed", 0x010C0028},
        Row{"BayerBG10Packed", 0x010C0029}, Row{"BayerGR12Packed", 0x010C002A},
        Row{"BayerRG12Packed", 0x010C002B}, Row{"BayerGB12Packed", 0x010C002C},
        Row{"BayerBG12Packed", 0x010C002D}, Row{"BayerGR10p", 0x010A0056},
        Row{"BayerRG10p", 0x010A0058}, Row{"BayerGB10p", 0x010A0054}, Row{"BayerBG10p", 0x010A0052},
        Row{"BayerGR12p", 0x010C0057}, Row{"BayerRG12p", 0x010C0059}, Row{"BayerGB12p", 0x010C0055},
        Row{"BayerBG12p", 0x010C0053}, Row{"RGB8", 0x02180014}, Row{"BGR8", 0x02180015},
        Row{"RGB8_Planar", 0x02180021}, Row{"YUV422_8", 0x02100032},
        Row{"YUV422_8_UYVY", 0x0210001F}, Row{"YCbCr422_8", 0x0210003B},
        Row{"YCbCr422_8_CbYCrY", 0x02100043}, Row{"RGB8Packed", 0x02180014},
        Row{"BGR8Packed", 0x02180015}, Row{"RGB8Planar", 0x02180021},
        Row{"YUV422Packed", 0x0210001F}, Row{"YUYVPacked", 0x02100032},
        Row{"YUV422_YUYV_Packed", 0x02100032}, Row{"YUV422", 0x02100032},
        Row{"YUV422_8_YUYV", 0x02100032}, Row{"YUV422_UYVY", 0x0210001F},
        Row{"YCbCr422_8_YCbYCr", 0x0210003B}),
    [](const auto &row) { return std::string(row.param.name); });

INSTANTIATE_TEST_SUITE_P(
    Extended, KnownFormat,
    testing::Values(
        Row{"Mono14p", 0x010E0104}, Row{"BayerGR14", 0x01100109}, Row{"BayerRG14", 0x0110010A},
        Row{"BayerGB14", 0x0110010B}, Row{"BayerBG14", 0x0110010C}, Row{"BayerGR14p", 0x010E0105},
        Row{"BayerRG14p", 0x010E0106}, Row{"BayerGB14p", 0x010E0107}, Row{"BayerBG14p", 0x010E0108},
        Row{"RGBa8", 0x02200016}, Row{"BGRa8", 0x02200017}, Row{"RGB10", 0x02300018},
        Row{"BGR10", 0x02300019}, Row{"RGB12", 0x0230001A}, Row{"BGR12", 0x0230001B},
        Row{"RGB14", 0x0230005E}, Row{"BGR14", 0x0230004A}, Row{"RGB16", 0x02300033},
        Row{"BGR16", 0x0230004B}, Row{"RGB10p", 0x021E005C}, Row{"RGB12p", 0x0224005D},
        Row{"BGR10p", 0x021E0048}, Row{"BGR12p", 0x02240049}, Row{"RGBa10", 0x0240005F},
        Row{"RGBa10p", 0x02280060}, Row{"RGBa12", 0x02400061}, Row{"RGBa12p", 0x02300062},
        Row{"RGBa14", 0x02400063}, Row{"RGBa16", 0x02400064}, Row{"BGRa10", 0x0240004C},
        Row{"BGRa10p", 0x0228004D}, Row{"BGRa12", 0x0240004E}, Row{"BGRa12p", 0x0230004F},
        Row{"BGRa14", 0x02400050}, Row{"BGRa16", 0x02400051}, Row{"YUV411_8_UYYVYY", 0x020C001E},
        Row{"YUV8_UYV", 0x02180020}, Row{"YCbCr8", 0x0218005B}, Row{"YCbCr8_CbYCr", 0x0218003A},
        Row{"YCbCr411_8", 0x020C005A}, Row{"YCbCr411_8_CbYYCrYY", 0x020C003C},
        Row{"YCbCr601_8_CbYCr", 0x0218003D}, Row{"YCbCr601_422_8", 0x0210003E},
        Row{"YCbCr601_422_8_CbYCrY", 0x02100044}, Row{"YCbCr601_411_8_CbYYCrYY", 0x020C003F},
        Row{"YCbCr709_8_CbYCr", 0x02180040}, Row{"YCbCr709_422_8", 0x02100041},
        Row{"YCbCr709_422_8_CbYCrY", 0x02100045}, Row{"YCbCr709_411_8_CbYYCrYY", 0x020C0042},
        Row{"RGBA8Packed", 0x02200016}, Row{"BGRA8Packed", 0x02200017},
        Row{"RGB10Packed", 0x02300018}, Row{"BGR10Packed", 0x02300019},
        Row{"RGB12Packed", 0x0230001A}, Row{"BGR12Packed", 0x0230001B},
        Row{"RGB16Packed", 0x02300033}, Row{"YUV411Packed", 0x020C001E},
        Row{"YUV444Packed", 0x02180020}),
    [](const auto &row) { return std::string(row.param.name); });

TEST(PixelFormat, unknownCodesAndNamesGiveNull)
{
    EXPECT_EQ(findPixelFormat(0U), nullptr);
    EXPECT_EQ(findPixelFormat(0x01080002U), nullptr);
    EXPECT_EQ(findPixelFormat(""sv), nullptr);
    EXPECT_EQ(findPixelFormat("mono8"sv), nullptr);
    EXPECT_EQ(findPixelFormat("Mono8\0"sv), nullptr);
}

TEST(PixelFormat, unpackedFormatKeepsColourAndDepth)
{
    for (const auto &[packed, unpacked] :
         {std::pair{"Mono10p"sv, "Mono10"sv}, std::pair{"Mono12Packed"sv, "Mono12"sv},
          std::pair{"BayerGR12p"sv, "BayerGR12"sv}, std::pair{"BayerRG10Packed"sv, "BayerRG10"sv},
          std::pair{"BayerGB12Packed"sv, "BayerGB12"sv}, std::pair{"Mono14p"sv, "Mono14"sv},
          std::pair{"BayerBG14p"sv, "BayerBG14"sv}, std::pair{"RGB10p"sv, "RGB10"sv},
          std::pair{"BGRa12p"sv, "BGRa12"sv}, std::pair{"Mono8"sv, "Mono8"sv}}) {
        EXPECT_EQ(orvalis::unpackedFormat(*findPixelFormat(packed)), findPixelFormat(unpacked))
            << packed;
    }
}

TEST(PixelFormat, imageBytesRoundsUpOverTheWholeImage)
{
    EXPECT_EQ(imageBytes(*findPixelFormat("Mono8"sv), 5, 3), 15U);
    EXPECT_EQ(imageBytes(*findPixelFormat("Mono12"sv), 5, 3), 30U);
    EXPECT_EQ(imageBytes(*findPixelFormat("Mono12p"sv), 5, 3), 23U);
    EXPECT_EQ(imageBytes(*findPixelFormat("Mono10p"sv), 5, 3), 19U);
    EXPECT_EQ(imageBytes(*findPixelFormat("Mono10Packed"sv), 1, 1), 2U);
    EXPECT_EQ(imageBytes(*findPixelFormat("RGB8"sv), 5, 3), 45U);
    EXPECT_EQ(imageBytes(*findPixelFormat("YUV422_8"sv), 5, 3), 30U);
    EXPECT_EQ(imageBytes(*findPixelFormat("YUV411_8_UYYVYY"sv), 6, 3), 27U);
    EXPECT_EQ(imageBytes(*findPixelFormat("RGB10p"sv), 3, 3), 34U);
    EXPECT_EQ(imageBytes(*findPixelFormat("RGBa16"sv), 3, 3), 72U);
}

TEST(PixelFormat, imageBytesIsZeroOnOverflow)
{
    constexpr auto most = std::numeric_limits<std::uint32_t>::max();
    EXPECT_EQ(imageBytes(*findPixelFormat("RGB8"sv), most, most), 0U);
    EXPECT_EQ(imageBytes(*findPixelFormat("Mono8"sv), most, 0), 0U);
}

} // namespace
