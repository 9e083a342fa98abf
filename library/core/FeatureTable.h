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
    TriggerLine, ///< the line that triggers come from, and its filter against short pulses
    StrobeLine,  ///< the line that drives the lamp; any other output will not do
    StrobeNode,  ///< the same for a node of the strobe itself, which may not belong to a line
    StrobeTimer, ///< the same, and the timer behind that line
    StrobeOutput ///< the output that the strobe is switched to, else the one that is selected
};

/// A node that may hold a number.
struct NumberNode {
    const char *name = nullptr;
    double unitsPerNodeUnit = 1; ///< the interface's value is the node's value times this
    const char *base = nullptr;  ///< and times the value of this node, where the camera has it
    const char *twin = nullptr;  ///< a node that is set to the same value, as far as it goes
};

/// How a number crosses the interface.
enum class Rounding { Integer, Float };

/// What a number is in the interface. Times are in microseconds, whatever unit a node names.
enum class Quantity { Plain, Time };

/// A switch that has to be on before a number counts.
struct EnableNode {
    const char *name = nullptr; ///< a boolean, or an enumeration
    const char *on = "On"; ///< entry that means on; the first one but `off` where it is missing
    const char *off = "Off";
    /// Stays as it is for the number that the camera has already: a panel that sends back what it
    /// has read must not change where the camera takes the number from.
    bool onlyForChanges = false;
};

/// Where a number is found on a camera.
struct NumberRow {
    Number number;
    std::array<NumberNode, 12> nodes; ///< the first one that the camera has
    Rounding rounding = Rounding::Integer;
    Selecting selecting = Selecting::Nothing;
    const char *automatic = nullptr; ///< enumeration "Off", "Continuous"
    std::array<EnableNode, 4> enables{};
    Quantity quantity = Quantity::Plain;
};

/// A node that may hold a choice of names: an enumeration, or a boolean for two names.
struct ChoiceNode {
    const char *name = nullptr;
    Selecting selecting = Selecting::Nothing;
};

/// Where a choice of names is found on a camera.
struct ChoiceRow {
    Choice choice;
    std::array<ChoiceNode, 3> nodes;            ///< the first one that the camera has
    std::array<const char *, 2> booleanNames{}; ///< what false and true of a boolean are called
};

/// A node that switches a feature.
struct SwitchNode {
    const char *name = nullptr; ///< a boolean, or an enumeration
    Selecting selecting = Selecting::Nothing;
    const char *on = "On"; ///< entry to switch on with; the first one but `off` where it is missing
    const char *off = "Off";
    bool onlyOnIsOn = false; ///< other entries than `on` mean off; else all but `off` mean on
};

/// Where a switch is found on a camera. The trigger's is more than a node: FeaturesTrigger.cpp.
struct SwitchRow {
    Switch which;
    std::array<SwitchNode, 4> nodes; ///< the first one that the camera has
};

const NumberRow &row(Number number);
const ChoiceRow &row(Choice choice);
const SwitchRow &row(Switch which);

/// The other spelling of a node's name that means the same; null if it has none.
const char *otherSpelling(const char *name);

} // namespace orvalis
