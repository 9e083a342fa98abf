// SPDX-License-Identifier: MIT
// Straightforward conversions, sample by sample, from the definition: the reference for the
// library's conversions.
#pragma once

#include "library/convert/PixelFormat.h"

#include <cstddef>
#include <cstdint>

namespace plain {

/// Upper 8 bits of 12-bit samples in 16-bit words.
void upperEight(const std::uint16_t *in, std::size_t count, std::uint8_t *out);

/// Unpacks samples of `depth` bits without gaps.
void unpack(unsigned depth, const std::uint8_t *in, std::size_t count, std::uint16_t *out);

/// Bilinear interpolation of a mosaic without its border.
void demosaic(orvalis::PixelKind order, const std::uint8_t *in, std::size_t width,
              std::size_t height, std::uint8_t *out);

/// Pairs of pixels Y U Y V, full range BT.601.
void yuvToRgb(const std::uint8_t *in, std::size_t pixels, std::uint8_t *out);

} // namespace plain
