// SPDX-License-Identifier: MIT
// Opens real cameras and reports why one cannot be opened.
#pragma once

#include "library/genicam/Discovery.h"

namespace orvalis {

/// Opens a camera that discovery has recorded and takes control of it. Does not wait for a running
/// discovery. ORVALIS_ERROR_NOT_FOUND if it is gone, or its address is not in a subnet of the
/// interface on which it was found; ORVALIS_ERROR_BUSY if another program controls it;
/// ORVALIS_ERROR_ACCESS_DENIED if this program has no permission for its USB device;
/// ORVALIS_ERROR_DEVICE.
OResult openRecordedCamera(const CameraRecord &camera, GPtr<ArvDevice> &device);

} // namespace orvalis
