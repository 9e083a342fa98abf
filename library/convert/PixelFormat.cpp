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

constexpr std::array formats{
    PixelFormat{0x01080001, "Mono8", Mono, Bytes, 8, 8},
    PixelFormat{0x01100003, "Mono10", Mono, Words, 10, 16},
    PixelFormat{0x010C0004, "Mono10Packed", Mono, GigePacked, 10, 12},
    PixelFormat{0x010A0046, "Mono10p", Mono, LsbPacked, 10, 10},
    PixelFormat{0x01100005, "Mono12", Mono, Words, 12, 16},
    PixelFormat{0x010C0006, "Mono12Packed", Mono, GigePacked, 12, 12},
    PixelFormat{0x010C0047, "Mono12p", Mono, LsbPacked, 12, 12},
    PixelFormat{0x01100025, "Mono14", Mono, Words, 14, 16},
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

    PixelFormat{0x02180014, "RGB8", Rgb, Bytes, 8, 24},
    PixelFormat{0x02180015, "BGR8", Bgr, Bytes, 8, 24},
    PixelFormat{0x02180021, "RGB8_Planar", RgbPlanar, Bytes, 8, 24},
    PixelFormat{0x02100032, "YUV422_8", Yuyv, Bytes, 8, 16},
    PixelFormat{0x0210001F, "YUV422_8_UYVY", Uyvy, Bytes, 8, 16},
    PixelFormat{0x0210003B, "YCbCr422_8", Yuyv, Bytes, 8, 16},
    PixelFormat{0x02100043, "YCbCr422_8_CbYCrY", Uyvy, Bytes, 8, 16},
};

struct OlderName {
    std::string_view name;
    std::uint32_t code;
};

constexpr std::array olderNames{
    OlderName{"RGB8Packed", 0x02180014},  OlderName{"BGR8Packed", 0x02180015},
    OlderName{"RGB8Planar", 0x02180021},  OlderName{"YUV422Packed", 0x0210001F},
    OlderName{"YUYVPacked", 0x02100032},  OlderName{"YUV422_YUYV_Packed", 0x02100032},
    OlderName{"YUV422", 0x02100032},      OlderName{"YUV422_8_YUYV", 0x02100032},
    OlderName{"YUV422_UYVY", 0x0210001F}, OlderName{"YCbCr422_8_YCbYCr", 0x0210003B},
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
    if (found != formats.end()) {
        return found;
    }
    const auto *older = std::ranges::find(olderNames, name, &OlderName::name);
    return older == olderNames.end() ? nullptr : findPixelFormat(older->code);
}

bool isPacked(const PixelFormat &format)
{
    return format.packing == LsbPacked || format.packing == GigePacked;
}

const PixelFormat *unpackedFormat(const PixelFormat &format)
{
    if (!isPacked(format)) {
        return &format;
    }
    const auto *found = std::ranges::find_if(formats, [&](const PixelFormat &other) {
        return other.kind == format.kind && other.depth == format.depth && other.packing == Words;
    });
    return found == formats.end() ? nullptr : found;
}

std::size_t imageBytes(const PixelFormat &format, std::uint32_t width, std::uint32_t height)
{
    const std::uint64_t pixels = std::uint64_t{width} * height;
    std::uint64_t bits = 0;
    if (__builtin_mul_overflow(pixels, std::uint64_t{format.bitsPerPixel}, &bits)) {
        return 0;
    }
    return bits / 8 + (bits % 8 != 0 ? 1 : 0);
}

} // namespace orvalis
