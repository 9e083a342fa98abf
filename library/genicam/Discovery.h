// SPDX-License-Identifier: MIT
// Finds real cameras and records what is needed to open them.
#pragma once

#include "library/core/Device.h"
#include "library/genicam/GigeRoute.h"

#include <vector>

namespace orvalis {

/// A camera as discovery found it.
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
    unsigned interfaceIndex = 0; ///< GigE Vision: the interface on which it was found
    GigeRoute route;             ///< the route through that interface; empty if in another subnet

    /// True for GigE Vision.
    bool isGige() const { return protocol == "GigEVision"; }
};

/// Sets the ID and display name of each record: unique, and the same for the same camera each time.
void nameCameras(std::vector<CameraRecord> &cameras);

/// Finds GigE Vision and USB3 Vision cameras, in about a second. Sorted by ID. One thread at a
/// time.
std::vector<CameraRecord> findCameras();

/// Prints what the last search found as debug messages, with reasons why cameras may be missing:
/// addresses in other subnets, USB devices without permission. Prints nothing if nothing has
/// changed.
void reportDiscovery(const std::vector<CameraRecord> &cameras,
                     const std::vector<InterfaceAddress> &interfaces);

} // namespace orvalis
