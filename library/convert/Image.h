// SPDX-License-Identifier: MIT
// Helpers shared by the conversions: size checks and the upper bits of samples.
#pragma once

#include "library/convert/Convert.h"

namespace orvalis {

/// No sensor has longer rows or columns; the limit keeps every product within an int for OpenCV.
inline constexpr std::uint32_t maxImageEdge = 1U << 20;

/// True if the image has pixels and its memory contains all of them.
inline bool fits(const ImageView &image)
{
    if (image.format == nullptr || image.data == nullptr || image.width == 0 || image.height == 0 ||
        image.width > maxImageEdge || image.height > maxImageEdge)
        return false;
    const std::size_t bytes = imageBytes(*image.format, image.width, image.height);
    return bytes != 0 && image.size >= bytes;
}

inline std::size_t pixelCount(const ImageView &image)
{
    return std::size_t{image.width} * image.height;
}

/// Extracts the upper 8 bits of 16-bit samples, which may be unaligned. Values that exceed the
/// depth become white.
void upperEight(unsigned depth, const std::uint8_t *words, std::size_t count, std::uint8_t *out);

/// Conversions for the YUV kinds. The image must fit its memory.
bool yuvToRgb(const ImageView &image, std::uint8_t *out);
bool yuvToBrightness(const ImageView &image, std::uint8_t *out);

} // namespace orvalis
