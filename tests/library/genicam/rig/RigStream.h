// SPDX-License-Identifier: MIT
// The stream of a rig camera: creates and sends frames.
#pragma once

#include "tests/library/genicam/rig/RigFaults.h"
#include "tests/library/genicam/rig/RigMemory.h"
#include "tests/library/genicam/rig/RigPackets.h"

#include <netinet/in.h>

#include <condition_variable>
#include <deque>
#include <random>
#include <thread>

namespace genicamtest {

/// Sends frames during acquisition, on its own thread, to the destination in the stream channel
/// registers. Reads all registers and faults again for each frame.
class RigStream {
public:
    RigStream(in_addr address, RigMemory &memory, RigFaults &faults);
    ~RigStream();
    RigStream(const RigStream &) = delete;
    RigStream &operator=(const RigStream &) = delete;

    void start();
    void stop();
    void sendFrame(unsigned count);
    void sendTestPacket(std::uint32_t packetSize);
    void resend(std::uint64_t block, std::uint32_t first, std::uint32_t last);

    std::uint64_t framesSent() const { return framesSent_; }
    std::uint64_t packetsSent() const { return packetsSent_; }
    std::uint64_t packetsLost() const { return packetsLost_; }
    std::uint64_t testPackets() const { return testPackets_; }
    /// The description of the next frame.
    RigFrame nextFrame() const;

private:
    using Packets = std::vector<std::vector<std::uint8_t>>;
    void run();
    bool waitForFrame();
    void sendOne();
    void send(const std::vector<std::uint8_t> &packet);
    std::chrono::nanoseconds period() const;
    bool isLost(std::size_t size, bool first, bool last);

    RigMemory &memory_;
    RigFaults &faults_;
    int socket_;
    std::mt19937 random_{1};
    std::atomic<std::uint64_t> framesSent_{0};
    std::atomic<std::uint64_t> packetsSent_{0};
    std::atomic<std::uint64_t> packetsLost_{0};
    std::atomic<std::uint64_t> testPackets_{0};

    mutable std::mutex mutex_; // guards everything below
    std::condition_variable changed_;
    bool runs_ = false;
    bool ends_ = false;
    bool isFirst_ = true;
    unsigned asked_ = 0; ///< frames requested by sendFrame()
    std::uint64_t number_ = 1;
    std::deque<std::pair<std::uint64_t, Packets>> kept_; ///< for resending
    std::thread thread_;
};

} // namespace genicamtest
