// SPDX-License-Identifier: MIT
// Which real cameras are there, and what it takes to open one.
#pragma once

#include "library/core/Device.h"
#include "library/genicam/GigeRoute.h"

#include <vector>

namespace orvalis {

/// A camera as discovery saw it.
struct CameraRecord {
    std::string id;          ///< ours: vendor, model and serial number, at most 63 bytes
    std::string displayName; ///< ours, Latin-1, at most 63 bytes
    std::string protocol;    ///< "GigEVision" or "USB3Vision"
    std::string address;     ///< IP address of a GigE Vision camera
    std::string physicalId;  ///< MAC address or USB identification
    std::string vendor;
    std::string model;
    std::string serialNumber;
    std::string userName;        ///< DeviceUserID; often empty
    unsigned interfaceIndex = 0; ///< of a GigE Vision camera: the interface that it was seen on
    GigeRoute route;             ///< the way through that interface; empty in a foreign subnet

    /// True for GigE Vision.
    bool isGige() const { return protocol == "GigEVision"; }
};

/// Gives every record its ID and display name: the same for the same camera each time, and no two
/// alike.
void nameCameras(std::vector<CameraRecord> &cameras);

/// Looks for GigE Vision and USB3 Vision cameras: takes a second. One thread at a time. In the
/// order of their IDs.
std::vector<CameraRecord> lookForCameras();

/// Tells on the debug output what the last look at the buses saw, and why cameras may be missing:
/// addresses on other subnets, USB devices without permission. Silent if nothing has changed.
void reportDiscovery(const std::vector<CameraRecord> &cameras,
                     const std::vector<InterfaceAddress> &interfaces);

} // namespace orvalis
