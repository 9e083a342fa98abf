// SPDX-License-Identifier: MIT
// Node tables: the simulation's own controls.
#include "library/simulated/NodeRows.h"

#include <array>

namespace orvalis::simulated {
namespace {

constexpr std::array<EntrySpec, 3> kIlluminants{{{"Daylight", 0}, {"Tungsten", 1}, {"Shade", 2}}};
constexpr std::array<EntrySpec, 4> kPayloads{
    {{"Image", 0}, {"TrailingData", 1}, {"MissingRows", 2}, {"UnknownFormat", 3}}};

constexpr std::string_view kSimulation = "SimulationControl";

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
    boolean("SimulationTriggerPerSelector", kSimulation, address::kTriggerPerSelector, kReadWrite,
            false,
            "Each entry of TriggerSelector has a TriggerMode, source, activation and delay of its "
            "own. Off: all entries share them.",
            kKept),
    boolean("SimulationStrobePerLine", kSimulation, address::kStrobePerLine, kReadWrite, false,
            "Each line has a StrobeEnable of its own, inputs have none.", kKept),
    boolean("SimulationFrameRateNeedsEnable", kSimulation, address::kRateNeedsEnable, kReadWrite,
            false, "AcquisitionFrameRate is not available until AcquisitionFrameRateEnable is on.",
            kKept),
    boolean("SimulationLongExposure", kSimulation, address::kLongExposure, kReadWrite, false,
            "ExposureTime goes up to 30 s instead of 2 s.", kKept),
    integer("SimulationCommandDuration", kSimulation, address::kCommandDuration, kReadWrite,
            {0, 10000, 1, 0}, "ms", "Time that each command takes. It acts at its end.", kKept),
    integer("SimulationHoldElsewhere", kSimulation, address::kHoldElsewhere, kReadWrite,
            {0, 600000, 1, 0}, "ms",
            "How long another program holds the camera after the next close: it is found, but "
            "cannot be opened.",
            kKept),
    enumeration("SimulationPayload", kSimulation, address::kPayload, kReadWrite, kPayloads, 0,
                "What frames hold: an image, an image with data behind it, an image that lacks its "
                "last rows, or a format that nobody knows.",
                kKept),
    integer("SimulationStallDuration", kSimulation, address::kStallDuration, kReadWrite,
            {1, 600000, 1, 5000}, "ms", "How long SimulationStall lasts.", kKept),
    command("SimulationStall", kSimulation, address::kStall, kReadWrite,
            "No frame comes for SimulationStallDuration. Everything else works."),
});

} // namespace

std::span<const NodeSpec> simulationNodes() { return kSimulationRows; }

} // namespace orvalis::simulated
