// SPDX-License-Identifier: MIT
// Node tables: the way to the host, and the simulation's own controls.
#include "library/simulated/NodeRows.h"

#include <array>

namespace orvalis::simulated {
namespace {

constexpr std::array<EntrySpec, 3> kIlluminants{{{"Daylight", 0}, {"Tungsten", 1}, {"Shade", 2}}};

constexpr std::string_view kTransport = "TransportLayerControl";
constexpr std::string_view kStatistics = "StreamStatistics";
constexpr std::string_view kSimulation = "SimulationControl";

/// IPv4 addresses are 32-bit patterns, most significant byte first: the same in a signed register.
constexpr double kIpMinimum = -2147483648.0;
constexpr double kIpMaximum = 2147483647.0;
constexpr Range ipAddress(std::uint32_t value)
{
    return {kIpMinimum, kIpMaximum, 1, double(std::int32_t(value))};
}
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

constexpr auto kSimulationRows = std::to_array<NodeSpec>({
    category(kSimulation, "Root", "What only a simulated camera can do: scene and faults."),
    boolean("SimulationMotion", kSimulation, address::kMotion, kReadWrite, true,
            "Something moves in front of the camera.", kKept),
    boolean("SimulationNoise", kSimulation, address::kNoise, kReadWrite, true,
            "The sensor has noise.", kKept),
    enumeration("SimulationIlluminant", kSimulation, address::kIlluminant, kReadWrite, kIlluminants,
                0, "Light that falls on the scene.", kKept | kColorOnly),
    real("SimulationLine0Rate", kSimulation, address::kLine0Rate, kReadWrite, {0.1, 1000, 0, 10},
         "Hz", "Pulses per second on Line0; the line is high for half of the time.", kKept),
    real("SimulationLine1Rate", kSimulation, address::kLine1Rate, kReadWrite, {0.1, 1000, 0, 2},
         "Hz", "Pulses per second on Line1; the line is high for half of the time.", kKept),
    real("SimulationFrameLoss", kSimulation, address::kFrameLoss, kReadWrite, {0, 100, 0, 0}, "%",
         "Share of the frames that get lost on their way.", kKept),
    integer("SimulationRefuseOpens", kSimulation, address::kRefuseOpens, kReadWrite,
            {0, 1000, 1, 0}, "", "How many of the next attempts to open the camera fail.", kKept),
    integer("SimulationAnswerDelay", kSimulation, address::kAnswerDelay, kReadWrite,
            {0, 10000, 1, 0}, "ms",
            "Time that each access to a node or a register takes. Frames are not delayed.", kKept),
    integer("SimulationLeaveDuration", kSimulation, address::kLeaveDuration, kReadWrite,
            {1, 600000, 1, 2000}, "ms", "How long SimulationLeaveBus lasts.", kKept),
    command("SimulationLeaveBus", kSimulation, address::kLeaveBus, kReadWrite,
            "The camera leaves the bus at once, as if unplugged, for SimulationLeaveDuration. It "
            "keeps its settings."),
});

} // namespace

std::span<const NodeSpec> connectionNodes() { return kConnectionRows; }
std::span<const NodeSpec> simulationNodes() { return kSimulationRows; }

} // namespace orvalis::simulated
