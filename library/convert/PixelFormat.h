// SPDX-License-Identifier: MIT
// Pixel formats of the GenICam Pixel Format Naming Convention (PFNC) and their properties.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace orvalis {

/// Colour layout of a format.
enum class PixelKind {
    Mono,
    BayerGR,
    BayerRG,
    BayerGB,
    BayerBG,
    Rgb,
    Bgr,
    Rgba, ///< the fourth sample is opacity and ignored
    Bgra,
    RgbPlanar,
    Yuv, ///< 4:4:4
    Uyv,
    Yuyv, ///< 4:2:2
    Uyvy,
    Yyuyyv, ///< 4:1:1
    Uyyvyy
};

/// The coding of Y, U (Cb) and V (Cr), according to the PFNC's component names.
enum class YuvCoding {
    FullBt601, ///< "YUV" and "YCbCr": ITU-T T.871, that is ITU-R BT.601 with all of 0 to 255
    Bt601,     ///< "YCbCr601": ITU-R BT.601-7 clause 2.5, Y 16 to 235, Cb and Cr 16 to 240
    Bt709      ///< "YCbCr709": ITU-R BT.709-6 items 3 and 4, the same ranges
};

/// The layout of samples in memory.
enum class PixelPacking {
    Bytes,     ///< 8 bits for each sample
    Words,     ///< 16-bit little-endian words, value in the low bits
    LsbPacked, ///< PFNC "p": samples follow each other without gaps, lowest bit first
    GigePacked ///< GigE Vision "Packed": two samples in three bytes, low bits of both in the middle
               ///< one
};

/// One pixel format.
struct PixelFormat {
    std::uint32_t code;    ///< PFNC 32-bit value
    std::string_view name; ///< PFNC name
    PixelKind kind;
    PixelPacking packing;
    unsigned depth;                          ///< significant bits of a sample
    unsigned bitsPerPixel;                   ///< bits of a pixel in memory, padding included
    YuvCoding coding = YuvCoding::FullBt601; ///< of the YUV kinds

    /// One sample for each pixel: luminance.
    bool isMono() const { return kind == PixelKind::Mono; }
    /// One sample for each pixel, with a mosaic of colour filters.
    bool isBayer() const { return kind >= PixelKind::BayerGR && kind <= PixelKind::BayerBG; }
    /// Colour without a mosaic: RGB, BGR, YUV.
    bool hasDirectColor() const { return kind >= PixelKind::Rgb; }
    /// Luminance separate from colour, which several pixels may share.
    bool isYuv() const { return kind >= PixelKind::Yuv; }
};

/// The format with this PFNC code or name; null for one that the library cannot deliver. Accepts
/// older GigE Vision names as well.
const PixelFormat *findPixelFormat(std::uint32_t code);
const PixelFormat *findPixelFormat(std::string_view name);

/// Bytes of an image without padding. Packed formats are rounded up to whole bytes over the whole
/// image, as cameras send them. 0 if the product overflows.
std::size_t imageBytes(const PixelFormat &format, std::uint32_t width, std::uint32_t height);

} // namespace orvalis
