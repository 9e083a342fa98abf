// SPDX-License-Identifier: MIT
// Which nodes stand behind which typed feature, by every name that cameras use.
#pragma once

#include <array>

namespace orvalis {

/// Features with a number for a value.
enum class Number {
    Gain,
    Shutter,
    AutoExposure,
    BlackLevel,
    Gamma,
    Contrast,
    Hue,
    Saturation,
    Sharpness,
    RedGain,
    GreenGain,
    BlueGain,
    FrameRate,
    TriggerParameter,
    TriggerDelay,
    TriggerNoiseFilter,
    StrobeDelay,
    StrobeDuration
};

/// Features that are one of a list of names.
enum class Choice {
    PixelFormat,
    WhiteBalance,
    TriggerMode,
    TriggerSource,
    TriggerPolarity,
    StrobeMode,
    StrobePolarity
};

/// Features that are on or off.
enum class Switch { TriggerEnable, StrobeEnable };

/// What has to be selected before a node means the feature.
enum class Selecting {
    Nothing,
    Red,
    Green,
    Blue,
    Gain,        ///< the gain of the whole camera, where there are several
    BlackLevel,  ///< likewise
    TriggerLine, ///< the line that triggers come from
    OutputLine,  ///< the line that drives the lamp
    StrobeTimer  ///< the timer behind that line
};

/// A node that may hold a number.
struct NumberNode {
    const char *name = nullptr;
    double unitsPerNodeUnit = 1; ///< the interface's value is the node's value times this
    const char *base = nullptr;  ///< and times the value of this node, where the camera has it
};

/// How a number crosses the interface.
enum class Rounding { Integer, Float };

/// Where a number is found on a camera.
struct NumberRow {
    Number number;
    std::array<NumberNode, 6> nodes; ///< the first one that the camera has
    Rounding rounding = Rounding::Integer;
    Selecting selecting = Selecting::Nothing;
    const char *automatic = nullptr; ///< enumeration "Off", "Continuous"
    /// Switches to put on before the value counts: boolean nodes, or enumerations ("Off", "On").
    std::array<const char *, 3> enables{};
};

/// Where a choice of names is found on a camera.
struct ChoiceRow {
    Choice choice;
    Selecting selecting;
    std::array<const char *, 3> nodes;          ///< enumerations, or a boolean for two names
    std::array<const char *, 2> booleanNames{}; ///< what false and true of a boolean are called
};

/// Where a switch is found on a camera.
struct SwitchRow {
    Switch which;
    std::array<const char *, 2> nodes; ///< booleans, or enumerations ("Off", "On")
    Selecting selecting = Selecting::Nothing;
    const char *source = nullptr;   ///< else: on means that this enumeration is not "Off"
    const char *sourceOn = nullptr; ///< what to switch on with; the first entry where it is missing
};

const NumberRow &row(Number number);
const ChoiceRow &row(Choice choice);
const SwitchRow &row(Switch which);

/// The other spelling of a node's name that means the same; null if it has none.
const char *otherSpelling(const char *name);

} // namespace orvalis
