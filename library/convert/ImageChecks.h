// SPDX-License-Identifier: MIT
// What every conversion checks before it touches a pixel.
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

} // namespace orvalis
