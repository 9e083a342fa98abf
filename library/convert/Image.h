// SPDX-License-Identifier: MIT
// What the conversions share: checks before a pixel is touched, and samples to their upper bits.
#pragma once

#include "library/convert/Convert.h"

namespace orvalis {

/// No sensor has more pixels in a row or column; keeps every product within an int for OpenCV.
inline constexpr std::uint32_t maxImageEdge = 1U << 20;

/// True if the image has pixels and its memory holds all of them.
inline bool fits(const ImageView &image)
{
    if (image.format == nullptr || image.data == nullptr || image.width == 0 || image.height == 0 ||
        image.width > maxImageEdge || image.height > maxImageEdge) {
        return false;
    }
    const std::size_t bytes = imageBytes(*image.format, image.width, image.height);
    return bytes != 0 && image.size >= bytes;
}

inline std::size_t pixelCount(const ImageView &image)
{
    return std::size_t{image.width} * image.height;
}

/// Upper 8 bits of 16-bit samples, which need not be aligned. What lies above the depth becomes
/// white.
void upperEight(unsigned depth, const std::uint8_t *words, std::size_t count, std::uint8_t *out);

/// The two conversions for the YUV kinds. The image fits.
bool yuvToRgb(const ImageView &image, std::uint8_t *out);
bool yuvToBrightness(const ImageView &image, std::uint8_t *out);

} // namespace orvalis
