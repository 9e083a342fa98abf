// SPDX-License-Identifier: MIT
// Shared memory between a test and the camera process that loses packets.
#pragma once

#include <atomic>
#include <cstdint>

namespace genicamtest {

/// Environment variable: the file that contains the LossyLink.
constexpr const char *lossyFileVariable = "ORVALIS_LOSSY_FILE";

struct LossyLink {
    std::atomic<std::uint32_t> perMillion; ///< loss rate of packets with image data
    std::atomic<std::uint32_t> sent;       ///< packets with image data, including lost ones
    std::atomic<std::uint32_t> lost;
    std::atomic<std::uint32_t> frames; ///< frames that lack at least one packet
    std::atomic<bool> resends;         ///< whether lost packets are resent on request
    std::atomic<std::uint32_t> asked;  ///< number of requests
    std::atomic<std::uint32_t> resent; ///< number of resent packets
};

} // namespace genicamtest
