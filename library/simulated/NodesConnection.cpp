// SPDX-License-Identifier: MIT
// Node tables: the connection to the host.
#include "library/simulated/NodeRows.h"

#include <array>

namespace orvalis::simulated {
namespace {

constexpr std::string_view kTransport = "TransportLayerControl";
constexpr std::string_view kStatistics = "StreamStatistics";

/// An IPv4 address as cameras store it: an unsigned 32-bit number, most significant byte first.
constexpr Range ipAddress(std::uint32_t value) { return {0, 4294967295.0, 1, double(value)}; }
constexpr Range kCounter{0, 2147483647, 1, 0};

constexpr auto kConnectionRows = std::to_array<NodeSpec>({
    category(kTransport, "Root", "Size of the frames on the wire, and network addresses."),
    integer("PayloadSize", kTransport, address::kPayloadSize, kReadOnly, kCounter, "B",
            "Bytes of one frame.", kKept),
    integer("GevSCPSPacketSize", kTransport, 0x1A04, kReadWrite, {576, 9000, 4, 1500}, "B",
            "Size of a network packet.", kExpert | kLockable),
    integer("GevSCPD", kTransport, 0x1A08, kReadWrite, {0, 100000, 1, 0}, "ns",
            "Pause between two network packets.", kExpert),
    integer("GevSCDA", kTransport, 0x1A0C, kReadWrite, ipAddress(0xC0A80101), "",
            "Address that frames are sent to, as a 32-bit number (192.168.1.1).", kKept | kExpert),
    integer("GevCurrentIPAddress", kTransport, 0x1A10, kReadOnly, ipAddress(0xC0A80164), "",
            "Present address of the camera, as a 32-bit number.", kKept),
    integer("GevPersistentIPAddress", kTransport, 0x1A14, kReadWrite, ipAddress(0xC0A80164), "",
            "Address that the camera takes when it is switched on, as a 32-bit number.",
            kKept | kExpert),
    integer("GevPersistentSubnetMask", kTransport, 0x1A18, kReadWrite, ipAddress(0xFFFFFF00), "",
            "Subnet mask that goes with GevPersistentIPAddress.", kKept | kExpert),
    integer("GevPersistentDefaultGateway", kTransport, 0x1A1C, kReadWrite, ipAddress(0xC0A801FE),
            "", "Gateway that goes with GevPersistentIPAddress.", kKept | kExpert),
    integer("GevHeartbeatTimeout", kTransport, 0x1A20, kReadWrite, {500, 60000, 1, 3000}, "ms",
            "Time without a sign of life after which the camera gives up its host.",
            kKept | kExpert),
    text("GevMACAddress", kTransport, 0x0200, kReadOnly, "02:53:49:4D:00:01",
         "Hardware address of the camera's network interface.", kKept | kExpert),
    category(kStatistics, "Root", "Frames of the present or the last acquisition."),
    integer("StreamDeliveredFrameCount", kStatistics, address::kDelivered, kReadOnly, kCounter, "",
            "Frames that reached the host.", kKept),
    integer("StreamFailedFrameCount", kStatistics, address::kFailed, kReadOnly, kCounter, "",
            "Frames that were lost on their way.", kKept),
    integer("StreamUnderrunCount", kStatistics, address::kUnderruns, kReadOnly, kCounter, "",
            "Frames that the host had no room for.", kKept),
    integer("StreamResentPacketCount", kStatistics, address::kResent, kReadOnly, kCounter, "",
            "Packets that were asked for once more.", kKept),
    integer("StreamMissingPacketCount", kStatistics, address::kMissing, kReadOnly, kCounter, "",
            "Packets that never came.", kKept),
    command("StreamStatisticsReset", kStatistics, address::kStatisticsReset, kWriteOnly,
            "Sets the counters to zero."),
});

} // namespace

std::span<const NodeSpec> connectionNodes() { return kConnectionRows; }

} // namespace orvalis::simulated
