// SPDX-License-Identifier: MIT
// The table of pixel formats.
#include "library/convert/PixelFormat.h"

#include "library/convert/Convert.h"

#include <algorithm>
#include <array>

namespace orvalis {
namespace {

using enum PixelKind;
using enum PixelPacking;
using enum YuvCoding;

constexpr std::array formats{
    PixelFormat{0x01080001, "Mono8", Mono, Bytes, 8, 8},
    PixelFormat{0x01100003, "Mono10", Mono, Words, 10, 16},
    PixelFormat{0x010C0004, "Mono10Packed", Mono, GigePacked, 10, 12},
    PixelFormat{0x010A0046, "Mono10p", Mono, LsbPacked, 10, 10},
    PixelFormat{0x01100005, "Mono12", Mono, Words, 12, 16},
    PixelFormat{0x010C0006, "Mono12Packed", Mono, GigePacked, 12, 12},
    PixelFormat{0x010C0047, "Mono12p", Mono, LsbPacked, 12, 12},
    PixelFormat{0x01100025, "Mono14", Mono, Words, 14, 16},
    PixelFormat{0x010E0104, "Mono14p", Mono, LsbPacked, 14, 14},
    PixelFormat{0x01100007, "Mono16", Mono, Words, 16, 16},

    PixelFormat{0x01080008, "BayerGR8", BayerGR, Bytes, 8, 8},
    PixelFormat{0x01080009, "BayerRG8", BayerRG, Bytes, 8, 8},
    PixelFormat{0x0108000A, "BayerGB8", BayerGB, Bytes, 8, 8},
    PixelFormat{0x0108000B, "BayerBG8", BayerBG, Bytes, 8, 8},
    PixelFormat{0x0110000C, "BayerGR10", BayerGR, Words, 10, 16},
    PixelFormat{0x0110000D, "BayerRG10", BayerRG, Words, 10, 16},
    PixelFormat{0x0110000E, "BayerGB10", BayerGB, Words, 10, 16},
    PixelFormat{0x0110000F, "BayerBG10", BayerBG, Words, 10, 16},
    PixelFormat{0x01100010, "BayerGR12", BayerGR, Words, 12, 16},
    PixelFormat{0x01100011, "BayerRG12", BayerRG, Words, 12, 16},
    PixelFormat{0x01100012, "BayerGB12", BayerGB, Words, 12, 16},
    PixelFormat{0x01100013, "BayerBG12", BayerBG, Words, 12, 16},
    PixelFormat{0x0110002E, "BayerGR16", BayerGR, Words, 16, 16},
    PixelFormat{0x0110002F, "BayerRG16", BayerRG, Words, 16, 16},
    PixelFormat{0x01100030, "BayerGB16", BayerGB, Words, 16, 16},
    PixelFormat{0x01100031, "BayerBG16", BayerBG, Words, 16, 16},
    PixelFormat{0x010C0026, "BayerGR10Packed", BayerGR, GigePacked, 10, 12},
    PixelFormat{0x010C0027, "BayerRG10Packed", BayerRG, GigePacked, 10, 12},
    PixelFormat{0x010C0028, "BayerGB10Packed", BayerGB, GigePacked, 10, 12},
    PixelFormat{0x010C0029, "BayerBG10Packed", BayerBG, GigePacked, 10, 12},
    PixelFormat{0x010C002A, "BayerGR12Packed", BayerGR, GigePacked, 12, 12},
    PixelFormat{0x010C002B, "BayerRG12Packed", BayerRG, GigePacked, 12, 12},
    PixelFormat{0x010C002C, "BayerGB12Packed", BayerGB, GigePacked, 12, 12},
    PixelFormat{0x010C002D, "BayerBG12Packed", BayerBG, GigePacked, 12, 12},
    PixelFormat{0x010A0056, "BayerGR10p", BayerGR, LsbPacked, 10, 10},
    PixelFormat{0x010A0058, "BayerRG10p", BayerRG, LsbPacked, 10, 10},
    PixelFormat{0x010A0054, "BayerGB10p", BayerGB, LsbPacked, 10, 10},
    PixelFormat{0x010A0052, "BayerBG10p", BayerBG, LsbPacked, 10, 10},
    PixelFormat{0x010C0057, "BayerGR12p", BayerGR, LsbPacked, 12, 12},
    PixelFormat{0x010C0059, "BayerRG12p", BayerRG, LsbPacked, 12, 12},
    PixelFormat{0x010C0055, "BayerGB12p", BayerGB, LsbPacked, 12, 12},
    PixelFormat{0x010C0053, "BayerBG12p", BayerBG, LsbPacked, 12, 12},
    PixelFormat{0x01100109, "BayerGR14", BayerGR, Words, 14, 16},
    PixelFormat{0x0110010A, "BayerRG14", BayerRG, Words, 14, 16},
    PixelFormat{0x0110010B, "BayerGB14", BayerGB, Words, 14, 16},
    PixelFormat{0x0110010C, "BayerBG14", BayerBG, Words, 14, 16},
    PixelFormat{0x010E0105, "BayerGR14p", BayerGR, LsbPacked, 14, 14},
    PixelFormat{0x010E0106, "BayerRG14p", BayerRG, LsbPacked, 14, 14},
    PixelFormat{0x010E0107, "BayerGB14p", BayerGB, LsbPacked, 14, 14},
    PixelFormat{0x010E0108, "BayerBG14p", BayerBG, LsbPacked, 14, 14},

    PixelFormat{0x02180014, "RGB8", Rgb, Bytes, 8, 24},
    PixelFormat{0x02180015, "BGR8", Bgr, Bytes, 8, 24},
    PixelFormat{0x02200016, "RGBa8", Rgba, Bytes, 8, 32},
    PixelFormat{0x02200017, "BGRa8", Bgra, Bytes, 8, 32},
    PixelFormat{0x02300018, "RGB10", Rgb, Words, 10, 48},
    PixelFormat{0x0230001A, "RGB12", Rgb, Words, 12, 48},
    PixelFormat{0x0230005E, "RGB14", Rgb, Words, 14, 48},
    PixelFormat{0x02300033, "RGB16", Rgb, Words, 16, 48},
    PixelFormat{0x021E005C, "RGB10p", Rgb, LsbPacked, 10, 30},
    PixelFormat{0x0224005D, "RGB12p", Rgb, LsbPacked, 12, 36},
    PixelFormat{0x02300019, "BGR10", Bgr, Words, 10, 48},
    PixelFormat{0x0230001B, "BGR12", Bgr, Words, 12, 48},
    PixelFormat{0x0230004A, "BGR14", Bgr, Words, 14, 48},
    PixelFormat{0x0230004B, "BGR16", Bgr, Words, 16, 48},
    PixelFormat{0x021E0048, "BGR10p", Bgr, LsbPacked, 10, 30},
    PixelFormat{0x02240049, "BGR12p", Bgr, LsbPacked, 12, 36},
    PixelFormat{0x0240005F, "RGBa10", Rgba, Words, 10, 64},
    PixelFormat{0x02400061, "RGBa12", Rgba, Words, 12, 64},
    PixelFormat{0x02400063, "RGBa14", Rgba, Words, 14, 64},
    PixelFormat{0x02400064, "RGBa16", Rgba, Words, 16, 64},
    PixelFormat{0x02280060, "RGBa10p", Rgba, LsbPacked, 10, 40},
    PixelFormat{0x02300062, "RGBa12p", Rgba, LsbPacked, 12, 48},
    PixelFormat{0x0240004C, "BGRa10", Bgra, Words, 10, 64},
    PixelFormat{0x0240004E, "BGRa12", Bgra, Words, 12, 64},
    PixelFormat{0x02400050, "BGRa14", Bgra, Words, 14, 64},
    PixelFormat{0x02400051, "BGRa16", Bgra, Words, 16, 64},
    PixelFormat{0x0228004D, "BGRa10p", Bgra, LsbPacked, 10, 40},
    PixelFormat{0x0230004F, "BGRa12p", Bgra, LsbPacked, 12, 48},
    PixelFormat{0x02180021, "RGB8_Planar", RgbPlanar, Bytes, 8, 24},

    PixelFormat{0x02180020, "YUV8_UYV", Uyv, Bytes, 8, 24},
    PixelFormat{0x02100032, "YUV422_8", Yuyv, Bytes, 8, 16},
    PixelFormat{0x0210001F, "YUV422_8_UYVY", Uyvy, Bytes, 8, 16},
    PixelFormat{0x020C001E, "YUV411_8_UYYVYY", Uyyvyy, Bytes, 8, 12},
    PixelFormat{0x0218005B, "YCbCr8", Yuv, Bytes, 8, 24},
    PixelFormat{0x0218003A, "YCbCr8_CbYCr", Uyv, Bytes, 8, 24},
    PixelFormat{0x0210003B, "YCbCr422_8", Yuyv, Bytes, 8, 16},
    PixelFormat{0x02100043, "YCbCr422_8_CbYCrY", Uyvy, Bytes, 8, 16},
    PixelFormat{0x020C005A, "YCbCr411_8", Yyuyyv, Bytes, 8, 12},
    PixelFormat{0x020C003C, "YCbCr411_8_CbYYCrYY", Uyyvyy, Bytes, 8, 12},
    PixelFormat{0x0218003D, "YCbCr601_8_CbYCr", Uyv, Bytes, 8, 24, Bt601},
    PixelFormat{0x0210003E, "YCbCr601_422_8", Yuyv, Bytes, 8, 16, Bt601},
    PixelFormat{0x02100044, "YCbCr601_422_8_CbYCrY", Uyvy, Bytes, 8, 16, Bt601},
    PixelFormat{0x020C003F, "YCbCr601_411_8_CbYYCrYY", Uyyvyy, Bytes, 8, 12, Bt601},
    PixelFormat{0x02180040, "YCbCr709_8_CbYCr", Uyv, Bytes, 8, 24, Bt709},
    PixelFormat{0x02100041, "YCbCr709_422_8", Yuyv, Bytes, 8, 16, Bt709},
    PixelFormat{0x02100045, "YCbCr709_422_8_CbYCrY", Uyvy, Bytes, 8, 16, Bt709},
    PixelFormat{0x020C0042, "YCbCr709_411_8_CbYYCrYY", Uyyvyy, Bytes, 8, 12, Bt709},
};

struct OlderName {
    std::string_view name;
    std::uint32_t code;
};

constexpr std::array olderNames{
    OlderName{"RGB8Packed", 0x02180014},         OlderName{"BGR8Packed", 0x02180015},
    OlderName{"RGBA8Packed", 0x02200016},        OlderName{"BGRA8Packed", 0x02200017},
    OlderName{"RGB10Packed", 0x02300018},        OlderName{"BGR10Packed", 0x02300019},
    OlderName{"RGB12Packed", 0x0230001A},        OlderName{"BGR12Packed", 0x0230001B},
    OlderName{"RGB16Packed", 0x02300033},        OlderName{"RGB8Planar", 0x02180021},
    OlderName{"YUV411Packed", 0x020C001E},       OlderName{"YUV422Packed", 0x0210001F},
    OlderName{"YUV444Packed", 0x02180020},       OlderName{"YUYVPacked", 0x02100032},
    OlderName{"YUV422_YUYV_Packed", 0x02100032}, OlderName{"YUV422", 0x02100032},
    OlderName{"YUV422_8_YUYV", 0x02100032},      OlderName{"YUV422_UYVY", 0x0210001F},
    OlderName{"YCbCr422_8_YCbYCr", 0x0210003B},
};

} // namespace

const PixelFormat *findPixelFormat(std::uint32_t code)
{
    const auto *found = std::ranges::find(formats, code, &PixelFormat::code);
    return found == formats.end() ? nullptr : found;
}

const PixelFormat *findPixelFormat(std::string_view name)
{
    const auto *found = std::ranges::find(formats, name, &PixelFormat::name);
    if (found != formats.end())
        return found;
    const auto *older = std::ranges::find(olderNames, name, &OlderName::name);
    return older == olderNames.end() ? nullptr : findPixelFormat(older->code);
}

bool isPacked(const PixelFormat &format)
{
    return format.packing == LsbPacked || format.packing == GigePacked;
}

const PixelFormat *unpackedFormat(const PixelFormat &format)
{
    if (!isPacked(format))
        return &format;
    const auto *found = std::ranges::find_if(formats, [&](const PixelFormat &other) {
        return other.kind == format.kind && other.depth == format.depth && other.packing == Words;
    });
    return found == formats.end() ? nullptr : found;
}

unsigned samplesPerPixel(const PixelFormat &format)
{
    switch (format.packing) {
    case LsbPacked:
        return format.bitsPerPixel / format.depth;
    case Words:
        return format.bitsPerPixel / 16;
    default:
        return format.packing == Bytes ? format.bitsPerPixel / 8 : 1;
    }
}

std::size_t imageBytes(const PixelFormat &format, std::uint32_t width, std::uint32_t height)
{
    const std::uint64_t pixels = std::uint64_t{width} * height;
    std::uint64_t bits = 0;
    if (__builtin_mul_overflow(pixels, std::uint64_t{format.bitsPerPixel}, &bits))
        return 0;
    return bits / 8 + (bits % 8 != 0 ? 1 : 0);
}

} // namespace orvalis
