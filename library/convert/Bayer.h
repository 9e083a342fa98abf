// SPDX-License-Identifier: MIT
// Converts a colour mosaic to full colour.
#pragma once

#include "library/convert/PixelFormat.h"

#include <cstdint>

namespace orvalis {

/// Bilinear interpolation of an 8-bit mosaic. Each missing colour is the rounded mean of the
/// samples of that colour among the eight neighbours. Beyond its edges the mosaic is mirrored about
/// the outermost pixels, which preserves the colours; images with a single row or column repeat
/// that pixel. `out` has width x height x 3 bytes (R, G, B).
void demosaic(PixelKind order, const std::uint8_t *mosaic, int width, int height,
              std::uint8_t *out);

} // namespace orvalis
