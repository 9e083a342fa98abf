// SPDX-License-Identifier: MIT
// The control channel of a rig camera: answers GigE Vision control commands.
#pragma once

#include "tests/library/genicam/rig/RigFaults.h"
#include "tests/library/genicam/rig/RigMemory.h"

#include <netinet/in.h>

#include <atomic>
#include <thread>
#include <vector>

namespace genicamtest {

/// Listens from open() to close() for commands to an address of this computer and for discovery
/// broadcasts of its network, on its own thread.
class RigControl {
public:
    using Bytes = std::vector<std::uint8_t>;
    /// A resend request: block, first and last packet.
    using Resend =
        std::function<void(std::uint64_t block, std::uint32_t first, std::uint32_t last)>;

    RigControl(in_addr address, RigMemory &memory, RigFaults &faults, Resend resend);
    ~RigControl() { close(); }
    RigControl(const RigControl &) = delete;
    RigControl &operator=(const RigControl &) = delete;

    void open(); ///< initially without a controller
    void close();
    /// Answers every access to that address with `status`; 0 for none.
    void refuse(std::uint32_t address, std::uint16_t status);
    /// Number of received commands, without discovery.
    std::uint64_t commands() const { return commands_; }
    std::uint64_t resendRequests() const { return resendRequests_; }

private:
    struct Command {
        int socket;
        sockaddr_in from;
        std::uint16_t code;
        std::uint16_t id;
        const std::uint8_t *data;
        std::size_t size;
        bool extendedIds;
    };
    void run();
    void receive(int socket);
    void handle(const Command &command);
    void answer(const Command &command, std::uint16_t status, const Bytes &data);
    void discovery(const Command &command);
    void readRegisters(const Command &command);
    void writeRegisters(const Command &command);
    void readMemory(const Command &command);
    void writeMemory(const Command &command);
    void resend(const Command &command);
    std::uint16_t refusalFor(const Command &command, std::uint32_t address, bool write);
    void writeWord(const Command &command, std::uint32_t address, std::uint32_t value);
    bool isController(const Command &command) const;
    void watchHeartbeat();

    in_addr address_;
    RigMemory &memory_;
    RigFaults &faults_;
    Resend resend_;
    std::vector<int> sockets_;
    sockaddr_in controller_{}; ///< port 0: none
    std::chrono::steady_clock::time_point heard_{};
    std::mutex mutex_; // guards refused_
    std::map<std::uint32_t, std::uint16_t> refused_;
    std::atomic<std::uint64_t> commands_{0};
    std::atomic<std::uint64_t> resendRequests_{0};
    std::atomic<bool> ends_{false};
    std::thread thread_;
};

} // namespace genicamtest
