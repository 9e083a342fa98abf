// SPDX-License-Identifier: MIT
// The registers of a rig camera.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

namespace genicamtest {

/// Addresses of the standard's bootstrap registers and of the rig's own features.
namespace RigAddress {
constexpr std::uint32_t address = 0x0024;
constexpr std::uint32_t capability = 0x0934;
constexpr std::uint32_t heartbeatTimeout = 0x0938; ///< ms
constexpr std::uint32_t privilege = 0x0A00;
constexpr std::uint32_t hostPort = 0x0D00;
constexpr std::uint32_t packetSize = 0x0D04;
constexpr std::uint32_t hostAddress = 0x0D18;
constexpr std::uint32_t width = 0x8000;
constexpr std::uint32_t height = 0x8004;
constexpr std::uint32_t pixelFormat = 0x8008; ///< PFNC code
constexpr std::uint32_t payloadSize = 0x800C; ///< depends on the others
constexpr std::uint32_t acquisitionStart = 0x8010;
constexpr std::uint32_t acquisitionStop = 0x8014;
constexpr std::uint32_t frameRate = 0x8018;    ///< float, Hz
constexpr std::uint32_t exposureTime = 0x801C; ///< float, us
constexpr std::uint32_t parametersLocked = 0x8020;
constexpr std::uint32_t description = 0x20000000; ///< the XML
} // namespace RigAddress

/// 32-bit words at any address, initially 0; counts accesses. Any thread.
class RigMemory {
public:
    /// For the test: does not count and runs no callback.
    void set(std::uint32_t address, std::uint32_t value);
    void setFloat(std::uint32_t address, float value);
    void setText(std::uint32_t address, const std::string &text);
    std::uint32_t at(std::uint32_t address) const;
    float floatAt(std::uint32_t address) const;

    /// For the program that uses the camera.
    std::uint32_t read(std::uint32_t address);
    std::vector<std::uint8_t> readBytes(std::uint32_t address, std::size_t size);
    void write(std::uint32_t address, std::uint32_t value);

    /// Makes a register read 0 again `milliseconds` after a write.
    void clearAfterWrite(std::uint32_t address);
    void setClearDelay(unsigned milliseconds);
    /// Runs `callback` on the camera's thread after each write by the program to `address`.
    void onWrite(std::uint32_t address, std::function<void(std::uint32_t value)> callback);

    /// Runs `callback` on the camera's thread before each read by the program that begins at
    /// `address`. For a register that depends on others: the callback calls set().
    void onRead(std::uint32_t address, std::function<void()> callback);

    /// Number of reads or writes by the program of the word at `address`.
    std::uint64_t reads(std::uint32_t address) const;
    std::uint64_t writes(std::uint32_t address) const;
    /// Number of all reads or writes by the program outside bootstrap registers and description.
    std::uint64_t reads() const;
    std::uint64_t writes() const;
    void resetCounts();

private:
    struct Count {
        std::uint64_t reads = 0;
        std::uint64_t writes = 0;
    };
    using Moment = std::chrono::steady_clock::time_point;
    std::uint32_t wordAt(std::uint32_t address) const;
    void beforeRead(std::uint32_t address);

    mutable std::mutex mutex_; // guards everything below
    std::unordered_map<std::uint32_t, std::uint32_t> words_;
    std::map<std::uint32_t, Count> counts_;
    std::map<std::uint32_t, Moment> commands_; ///< completion times
    std::chrono::milliseconds clearDelay_{0};
    std::map<std::uint32_t, std::function<void(std::uint32_t)>> callbacks_;
    std::map<std::uint32_t, std::function<void()>> readCallbacks_;
};

} // namespace genicamtest
