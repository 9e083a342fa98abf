// SPDX-License-Identifier: MIT
// From what a camera sends to what a program can show. All planes have rows without padding.
#pragma once

#include "library/convert/PixelFormat.h"

#include <cstdint>

namespace orvalis {

/// An image to read: `data` holds at least imageBytes(*format, width, height) bytes.
struct ImageView {
    const PixelFormat *format = nullptr;
    const std::uint8_t *data = nullptr;
    std::size_t size = 0; ///< bytes at `data`; functions refuse an image that does not fit
    std::uint32_t width = 0;
    std::uint32_t height = 0;
};

/// True if samples lie packed and have to be unpacked to be of use.
bool isPacked(const PixelFormat &format);

/// Samples of a pixel: 1 for Mono and Bayer, 3 or 4 for RGB. Of YUV with shared colour the whole
/// part.
unsigned samplesPerPixel(const PixelFormat &format);

/// Unpacks a packed format into 16-bit words, value in the low bits. `out` has width x height x
/// samplesPerPixel() words. False for formats that are not packed and for images that do not fit
/// their size.
bool unpackToWords(const ImageView &image, std::uint16_t *out);

/// The format that unpackToWords() gives for a packed one (Mono12p becomes Mono12); others
/// unchanged.
const PixelFormat *unpackedFormat(const PixelFormat &format);

/// Upper 8 bits of every sample of a monochrome or Bayer image that is not packed. `out` has
/// width x height bytes. False if the format has no such samples or the image does not fit its
/// size.
bool toGray8(const ImageView &image, std::uint8_t *out);

/// Brightness of an image of any format that is not packed, 8 bits: samples for Mono and Bayer,
/// luminance for colour, from black 0 to white 255. `out` has width x height bytes.
bool toBrightness8(const ImageView &image, std::uint8_t *out);

/// Luminance of an RGB image deeper than 8 bits and not packed, in words of its own depth. `out`
/// has width x height words.
bool toBrightnessWords(const ImageView &image, std::uint16_t *out);

/// R, G, B, 8 bits each, of an image of any format that is not packed. `out` has width x height x 3
/// bytes; `scratch` width x height bytes, used for Mono and Bayer deeper than 8 bits, may be null
/// for others. Pixels that share colour all get it; where a row ends within such a group and V with
/// it, V is that of the group before. False for 4:1:1 of an odd width, which the PFNC does not
/// have.
bool toRgb8(const ImageView &image, std::uint8_t *out, std::uint8_t *scratch);

} // namespace orvalis
