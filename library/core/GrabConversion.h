// SPDX-License-Identifier: MIT
// Converts a grabbed image into the caller's memory.
#pragma once

#include "library/core/Acquisition.h"

namespace orvalis {

/// Writes R, G, B to frame.rgb and sets the sizes in the record. ORVALIS_ERROR_DEVICE for an image
/// with more than `maxPixels` pixels or too few bytes, ORVALIS_ERROR_NOT_SUPPORTED for a format
/// that cannot be converted; writes nothing then.
OResult writeGrabbedRgb(const GrabbedImage &image, std::size_t maxPixels, OImageFrame &frame);

/// Writes to frame.raw what OrvalisGrabRAWData() promises. Results as above.
OResult writeGrabbedRaw(const GrabbedImage &image, std::size_t maxPixels, OImageFrame &frame);

} // namespace orvalis
