// SPDX-License-Identifier: MIT
// Opening a real camera, and why it may not be had.
#pragma once

#include "library/genicam/Discovery.h"

namespace orvalis {

/// Opens a camera from what discovery saw of it, without waiting for a discovery that is pending,
/// and controls it. ORVALIS_ERROR_NOT_FOUND if it is gone, or its address is not in a subnet of the
/// interface that it was seen on; ORVALIS_ERROR_BUSY if somebody else holds it;
/// ORVALIS_ERROR_ACCESS_DENIED if this program has no permission for its USB device;
/// ORVALIS_ERROR_DEVICE.
OResult openRecordedCamera(const CameraRecord &camera, GPtr<ArvDevice> &device);

} // namespace orvalis
