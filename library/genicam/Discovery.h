// SPDX-License-Identifier: MIT
// Which real cameras are there, and what it takes to open one.
#pragma once

#include "library/core/Device.h"
#include "library/genicam/Glib.h"

#include <vector>

namespace orvalis {

/// A camera as discovery saw it.
struct CameraRecord {
    std::string id;          ///< ours: vendor, model and serial number, at most 63 bytes
    std::string displayName; ///< ours, at most 63 bytes
    std::string aravisId;    ///< Aravis' own
    std::string protocol;    ///< "GigEVision" or "USB3Vision"
    std::string address;     ///< IP address of a GigE Vision camera
    std::string physicalId;  ///< MAC address or USB identification
    std::string vendor;
    std::string model;
    std::string serialNumber;

    /// True for GigE Vision.
    bool isGige() const { return protocol == "GigEVision"; }
};

/// Gives every record its ID and display name: the same for the same camera each time, and no two
/// alike.
void nameCameras(std::vector<CameraRecord> &cameras);

/// Looks for GigE Vision and USB3 Vision cameras: takes a second. One thread at a time.
std::vector<CameraRecord> lookForCameras();

/// Opens a camera from what is known of it, without waiting for a discovery that is under way.
/// Null after a failure.
GPtr<ArvDevice> openRecordedCamera(const CameraRecord &camera, Failure &failure);

/// Tells on the debug output what the last look at the buses saw, and why cameras may be missing:
/// addresses on other subnets, USB devices without permission. Silent if nothing has changed.
void reportDiscovery(const std::vector<CameraRecord> &cameras);

/// True if a USB3 Vision camera is plugged in that this program may not open.
bool hasForbiddenUsbCamera();

} // namespace orvalis
