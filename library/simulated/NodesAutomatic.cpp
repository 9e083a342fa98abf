// SPDX-License-Identifier: MIT
// Node tables: automatic controls, lines and timers.
#include "library/simulated/NodeRows.h"

#include <array>

namespace orvalis::simulated {
namespace {

constexpr std::array<EntrySpec, 3> kLines{{{"Line0", 0}, {"Line1", 1}, {"Line2", 2}}};
constexpr std::array<EntrySpec, 2> kLineModes{{{"Input", 0}, {"Output", 1}}};
constexpr std::array<EntrySpec, 3> kLineSources{
    {{"ExposureActive", 0}, {"Timer0Active", 1}, {"FixedPulse", 2}}};
constexpr std::array<EntrySpec, 2> kTimers{{{"Timer0", 0}, {"Timer1", 1}}};

constexpr std::string_view kAuto = "AutoFunctionControl";
constexpr std::string_view kArea = "AutoAreaControl";
constexpr std::string_view kLine = "DigitalIOControl";
constexpr std::string_view kTimer = "CounterAndTimerControl";

constexpr auto kAutomaticRows = std::to_array<NodeSpec>({
    category(kAuto, "Root", "What automatic exposure and gain aim at, and their limits."),
    integer("AutoExposureTargetBrightness", kAuto, address::kAutoTarget, kReadWrite,
            {0, 100, 1, 50}, "%",
            "Mean brightness of the picture that automatic exposure and gain aim at."),
    real("AutoExposureTimeLowerLimit", kAuto, address::kAutoExposureLower, kReadWrite,
         {5, 1000000, 0, 50}, "us", "Shortest time that automatic exposure chooses.", kExpert),
    real("AutoExposureTimeUpperLimit", kAuto, address::kAutoExposureUpper, kReadWrite,
         {5, 1000000, 0, 1000000}, "us",
         "Longest time that automatic exposure chooses. It never lowers the frame rate.", kExpert),
    real("AutoGainUpperLimit", kAuto, address::kAutoGainUpper, kReadWrite, {0, 24, 0, 24}, "dB",
         "Largest gain that automatic gain chooses.", kExpert),
    category(kArea, kAuto, "Part of the picture that automatic exposure and gain look at."),
    boolean("AutoAreaEnable", kArea, address::kAutoAreaEnable, kReadWrite, false,
            "Off: they look at the whole picture."),
    integer("AutoAreaLeft", kArea, address::kAutoAreaLeft, kReadWrite, {0, 90, 1, 25}, "%",
            "Left edge of the area in percent of the width."),
    integer("AutoAreaTop", kArea, address::kAutoAreaTop, kReadWrite, {0, 90, 1, 25}, "%",
            "Upper edge of the area in percent of the height."),
    integer("AutoAreaWidth", kArea, address::kAutoAreaWidth, kReadWrite, {10, 100, 1, 50}, "%",
            "Width of the area in percent."),
    integer("AutoAreaHeight", kArea, address::kAutoAreaHeight, kReadWrite, {10, 100, 1, 50}, "%",
            "Height of the area in percent."),

    category(kLine, "Root", "Inputs for triggers and the output for a lamp."),
    enumeration("LineSelector", kLine, address::kLineSelector, kReadWrite, kLines, 2,
                "Line that the following nodes belong to. Line0 and Line1 are inputs, Line2 is "
                "the output."),
    enumeration("LineMode", kLine, address::kLineMode, kReadOnly, kLineModes, 0,
                "Whether the selected line is an input or an output.", kKept, Selector::Line),
    enumeration("LineSource", kLine, address::kLineSource, kReadWrite, kLineSources, 0,
                "What drives the selected output.", 0, Selector::Line),
    boolean("LineInverter", kLine, address::kLineInverter, kReadWrite, false,
            "Inverts the selected line: the lamp is on while the output is low.", 0,
            Selector::Line),
    boolean("LineStatus", kLine, address::kLineStatus, kReadOnly, false,
            "Present level of the selected line.", kKept, Selector::Line),
    integer("LineDebouncerTime", kLine, address::kDebouncerTime, kReadWrite, {0, 1023, 1, 0}, "us",
            "How long a signal must last on an input to count."),
    boolean("StrobeEnable", kLine, address::kStrobeEnable, kReadWrite, false,
            "Switches the output for the lamp.", 0, Selector::Strobe),

    category(kTimer, "Root", "Timers that drive the outputs."),
    enumeration("TimerSelector", kTimer, address::kTimerSelector, kReadWrite, kTimers, 0,
                "Timer that TimerDelay and TimerDuration belong to."),
    real("TimerDelay", kTimer, address::kTimerDelay, kReadWrite, {0, 3900, 0, 0}, "us",
         "Time from the start of the exposure to the start of the pulse.", 0, Selector::Timer),
    real("TimerDuration", kTimer, address::kTimerDuration, kReadWrite, {250, 50000, 0, 1000}, "us",
         "Length of the pulse.", 0, Selector::Timer),
    real("Timer1Delay", kTimer, address::kTimerDelay + 4, kReadWrite, {0, 3900, 0, 0}, "us",
         "TimerDelay of Timer1, without looking at TimerSelector.", kAlias | kExpert),
    real("Timer1Duration", kTimer, address::kTimerDuration + 4, kReadWrite, {250, 50000, 0, 1000},
         "us", "TimerDuration of Timer1, without looking at TimerSelector.", kAlias | kExpert),
});

} // namespace

std::span<const NodeSpec> automaticNodes() { return kAutomaticRows; }

} // namespace orvalis::simulated
