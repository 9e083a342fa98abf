// SPDX-License-Identifier: MIT
// A frame of a rig camera, cut into packets of the GigE Vision stream protocol.
#pragma once

#include "tests/library/genicam/rig/RigFaults.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace genicamtest {

/// Bytes of the headers of IPv4 and UDP, which a packet size of GigE Vision includes.
constexpr std::size_t ipAndUdp = 28;

/// What a rig camera sends as one frame.
struct RigFrame {
    std::uint64_t number = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t pixelFormat = 0;
    unsigned padding = 0;    ///< bytes behind each row
    std::uint32_t lines = 0; ///< that are sent
    bool extendedIds = false;
    RigFaults::Payload payload = RigFaults::Payload::Image;
    std::vector<std::uint8_t> pixels; ///< `lines` rows with their padding
};

/// Bytes of a pixel, by the size in its PFNC code.
constexpr std::size_t bitsPerPixel(std::uint32_t pixelFormat) { return pixelFormat >> 16 & 0xFF; }

/// A slope that moves by one grey level a frame: the byte at x, y is x + y + number. Pixels of 16
/// bits are (x + y + number) << 4, in 16 bits.
std::vector<std::uint8_t> slope(const RigFrame &frame, bool bigEndian);

/// Bytes of a frame with everything that is sent along.
std::size_t payloadBytes(const RigFrame &frame);

/// Leader, data and trailer. `packetSize` includes the headers of IP and UDP.
std::vector<std::vector<std::uint8_t>> packetsOf(const RigFrame &frame, std::size_t packetSize);

} // namespace genicamtest
