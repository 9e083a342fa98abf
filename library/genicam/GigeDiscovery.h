// SPDX-License-Identifier: MIT
// Which GigE Vision cameras answer, and on which network interface each one does.
#pragma once

#include "library/genicam/LocalInterfaces.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace orvalis {

/// What a camera says of itself when it is looked for. Texts are as the camera sends them.
struct GigeAnnouncement {
    in_addr_t address = 0;       ///< network byte order
    unsigned interfaceIndex = 0; ///< where the answer came in
    std::string hardwareAddress; ///< "00:11:22:33:44:55"
    std::string vendor;
    std::string model;
    std::string serialNumber;
    std::string userName; ///< DeviceUserID; often empty
};

/// What a packet says; nothing if it is no answer to a camera's discovery. The layout is that of
/// GigE Vision 2.0, DISCOVERY_ACK: the first 248 bytes of the bootstrap registers.
std::optional<GigeAnnouncement> announcementIn(std::span<const std::uint8_t> packet);

/// Asks on every interface, and listens for `patience`: cameras may take up to a second to answer.
/// A camera that answers on several interfaces is there once: on one in its own subnet if there is
/// one, and on the same one each time.
std::vector<GigeAnnouncement> lookForGigeCameras(const std::vector<InterfaceAddress> &interfaces,
                                                 std::chrono::milliseconds patience);

} // namespace orvalis
