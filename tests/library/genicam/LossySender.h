// SPDX-License-Identifier: MIT
// What a test and the camera process that loses packets for it tell each other, in shared memory.
#pragma once

#include <atomic>
#include <cstdint>

namespace genicamtest {

/// Names the file that holds the LossyLink.
constexpr const char *lossyFileVariable = "ORVALIS_LOSSY_FILE";

struct LossyLink {
    std::atomic<std::uint32_t> perMillion; ///< of packets with image data that are lost
    std::atomic<std::uint32_t> sent;       ///< packets with image data, the lost ones included
    std::atomic<std::uint32_t> lost;
    std::atomic<std::uint32_t> frames; ///< that lack at least one packet
    std::atomic<bool> resends;         ///< whether lost packets are sent again when asked for
    std::atomic<std::uint32_t> asked;  ///< requests for packets
    std::atomic<std::uint32_t> resent; ///< lost packets that were sent again
};

} // namespace genicamtest
