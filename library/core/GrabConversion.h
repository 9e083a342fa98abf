// SPDX-License-Identifier: MIT
// From a grabbed image to the pixels that a grab writes into memory of its caller.
#pragma once

#include "library/core/Acquisition.h"

namespace orvalis {

/// Writes R, G, B at frame.rgb and sets the sizes in the record. ORVALIS_ERROR_DEVICE for an image
/// of more than `maxPixels` pixels or fewer bytes than it needs, ORVALIS_ERROR_NOT_SUPPORTED for a
/// format that cannot be converted; nothing is written then.
OResult writeGrabbedRgb(const GrabbedImage &image, std::size_t maxPixels, OImageFrame &frame);

/// Writes at frame.raw what OrvalisGrabRAWData() promises. Results as above.
OResult writeGrabbedRaw(const GrabbedImage &image, std::size_t maxPixels, OImageFrame &frame);

} // namespace orvalis
