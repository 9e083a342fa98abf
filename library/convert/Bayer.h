// SPDX-License-Identifier: MIT
// From a colour mosaic to full colour.
#pragma once

#include "library/convert/PixelFormat.h"

#include <cstdint>

namespace orvalis {

/// Bilinear interpolation of an 8-bit mosaic. Each missing colour is the rounded mean of the
/// samples of that colour among the eight neighbours; at the border of those that exist. In images
/// with a single row or column, which lack a colour altogether, the pixel's own sample stands in.
/// `out` has width x height x 3 bytes (R, G, B).
void demosaic(PixelKind order, const std::uint8_t *mosaic, int width, int height,
              std::uint8_t *out);

} // namespace orvalis
