// SPDX-License-Identifier: MIT
// Converts camera images to displayable planes. Planes have rows without padding.
#pragma once

#include "library/convert/PixelFormat.h"

#include <cstdint>

namespace orvalis {

/// A source image: `data` has at least imageBytes(*format, width, height) bytes.
struct ImageView {
    const PixelFormat *format = nullptr;
    const std::uint8_t *data = nullptr;
    std::size_t size = 0; ///< bytes at `data`; functions refuse an image with too few
    std::uint32_t width = 0;
    std::uint32_t height = 0;
};

/// True if samples are packed and must be unpacked first.
bool isPacked(const PixelFormat &format);

/// Samples for each pixel: 1 for Mono and Bayer, 3 or 4 for RGB. For YUV with shared colour,
/// rounded down.
unsigned samplesPerPixel(const PixelFormat &format);

/// Unpacks a packed format into 16-bit words, value in the low bits. `out` has width x height x
/// samplesPerPixel() words. False for unpacked formats and for images that are larger than their
/// memory.
bool unpackToWords(const ImageView &image, std::uint16_t *out);

/// The result format of unpackToWords() (Mono12p becomes Mono12); unpacked formats unchanged.
const PixelFormat *unpackedFormat(const PixelFormat &format);

/// Extracts the upper 8 bits of every sample of an unpacked monochrome or Bayer image. `out` has
/// width x height bytes. False for other formats and for images that are larger than their memory.
bool toGray8(const ImageView &image, std::uint8_t *out);

/// Converts an unpacked format to 8-bit luminance, from black 0 to white 255: Mono and Bayer
/// samples unchanged, luminance for colour. `out` has width x height bytes.
bool toBrightness8(const ImageView &image, std::uint8_t *out);

/// Converts an unpacked RGB image deeper than 8 bits to luminance words of its own depth. `out` has
/// width x height words.
bool toBrightnessWords(const ImageView &image, std::uint16_t *out);

/// Converts an unpacked format to R, G, B of 8 bits each. `out` has width x height x 3 bytes.
/// `scratch` has width x height bytes and is used for Mono and Bayer deeper than 8 bits; it may be
/// null for others. Pixels that share colour all get it; if a row ends within such a group before
/// V, the V of the previous group is used. False for 4:1:1 of odd width, which the PFNC does not
/// define.
bool toRgb8(const ImageView &image, std::uint8_t *out, std::uint8_t *scratch);

} // namespace orvalis
