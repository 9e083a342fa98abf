// SPDX-License-Identifier: MIT
// Splits a frame of a rig camera into packets of the GigE Vision stream protocol.
#pragma once

#include "tests/library/genicam/rig/RigFaults.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace genicamtest {

/// Bytes of the IPv4 and UDP headers, which a GigE Vision packet size includes.
constexpr std::size_t ipAndUdp = 28;

/// The data of one frame.
struct RigFrame {
    std::uint64_t number = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t pixelFormat = 0;
    unsigned padding = 0;    ///< bytes after each row
    std::uint32_t lines = 0; ///< number of lines sent
    bool extendedIds = false;
    RigFaults::Payload payload = RigFaults::Payload::Image;
    std::vector<std::uint8_t> pixels; ///< `lines` rows with their padding
};

/// Bits of a pixel, from the PFNC code.
constexpr std::size_t bitsPerPixel(std::uint32_t pixelFormat) { return pixelFormat >> 16 & 0xFF; }

/// A slope that moves by one grey level for each frame: the byte at x, y is x + y + number. 16-bit
/// pixels are (x + y + number) << 4.
std::vector<std::uint8_t> slope(const RigFrame &frame, bool bigEndian);

/// The size of a frame with all additional data.
std::size_t payloadBytes(const RigFrame &frame);

/// Builds leader, data packets and trailer. `packetSize` includes IP and UDP headers.
std::vector<std::vector<std::uint8_t>> packetsOf(const RigFrame &frame, std::size_t packetSize);

} // namespace genicamtest
