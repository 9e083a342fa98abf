// SPDX-License-Identifier: MIT
// Finds GigE Vision cameras and the network interface of each.
#pragma once

#include "library/genicam/LocalInterfaces.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace orvalis {

/// A camera's answer to discovery. Texts are unchanged.
struct GigeAnnouncement {
    in_addr_t address = 0;       ///< network byte order
    unsigned interfaceIndex = 0; ///< where the answer arrived
    std::string hardwareAddress; ///< "00:11:22:33:44:55"
    std::string vendor;
    std::string model;
    std::string serialNumber;
    std::string userName; ///< DeviceUserID; often empty
};

/// Parses a packet; empty if it is not an answer to discovery. Layout: GigE Vision 2.0,
/// DISCOVERY_ACK, the first 248 bytes of the bootstrap registers.
std::optional<GigeAnnouncement> parseAnnouncement(std::span<const std::uint8_t> packet);

/// Sends discovery commands on every interface and receives answers for `timeout`: cameras may
/// take up to a second to answer. A camera that answers on several interfaces is listed once: on an
/// interface in its own subnet if there is one, and on the same one each time.
std::vector<GigeAnnouncement> findGigeCameras(const std::vector<InterfaceAddress> &interfaces,
                                              std::chrono::milliseconds timeout);

} // namespace orvalis
