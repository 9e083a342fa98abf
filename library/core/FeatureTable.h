// SPDX-License-Identifier: MIT
// The nodes of each typed feature, under all names that cameras use.
#pragma once

#include <array>

namespace orvalis {

/// Features whose value is a number.
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

/// Features whose value is one of a list of names.
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

/// What must be selected before a node refers to the feature.
enum class Selecting {
    Nothing,
    Red,
    Green,
    Blue,
    Gain,        ///< the gain of the whole camera, if there are several gains
    BlackLevel,  ///< likewise
    TriggerLine, ///< the trigger's input line, and its filter against short pulses
    StrobeLine,  ///< the line that drives the lamp; no other output
    StrobeNode,  ///< likewise, for a node that need not belong to a line
    StrobeTimer, ///< likewise, and the timer that drives that line
    StrobeOutput ///< the output with a strobe source, else the selected one
};

/// A candidate node for a number.
struct NumberNode {
    const char *name = nullptr;
    double unitsPerNodeUnit = 1; ///< interface value = node value * this
    const char *base = nullptr;  ///< ... * the value of this node, if the camera has it
    const char *twin = nullptr;  ///< a node set to the same value, clamped to its bounds
};

/// The type of a number in the interface.
enum class Rounding { Integer, Float };

/// The physical quantity. Times in the interface are microseconds, whatever the unit of the node.
enum class Quantity { Plain, Time };

/// A switch that must be on for a number to take effect.
struct EnableNode {
    const char *name = nullptr; ///< a boolean, or an enumeration
    const char *on = "On"; ///< entry that means on; if missing, the first entry other than `off`
    const char *off = "Off";
    /// Leave the switch unchanged if the number does not change: a panel that sends back a value
    /// that it has read must not change the source of that value.
    bool onlyForChanges = false;
};

/// The nodes of a number.
struct NumberRow {
    Number number;
    std::array<NumberNode, 12> nodes; ///< the first one that the camera has
    Rounding rounding = Rounding::Integer;
    Selecting selecting = Selecting::Nothing;
    const char *automatic = nullptr; ///< enumeration "Off", "Continuous"
    std::array<EnableNode, 4> enables{};
    Quantity quantity = Quantity::Plain;
};

/// A candidate node for a choice of names: an enumeration, or a boolean for two names.
struct ChoiceNode {
    const char *name = nullptr;
    Selecting selecting = Selecting::Nothing;
};

/// The nodes of a choice of names.
struct ChoiceRow {
    Choice choice;
    std::array<ChoiceNode, 3> nodes;            ///< the first one that the camera has
    std::array<const char *, 2> booleanNames{}; ///< names of false and true of a boolean
};

/// A candidate node for a switch.
struct SwitchNode {
    const char *name = nullptr; ///< a boolean, or an enumeration
    Selecting selecting = Selecting::Nothing;
    const char *on = "On"; ///< entry that switches on; if missing, the first entry other than `off`
    const char *off = "Off";
    bool onlyOnIsOn = false; ///< true: only `on` means on; false: every entry except `off` means on
};

/// The nodes of a switch. The trigger needs more: FeaturesTrigger.cpp.
struct SwitchRow {
    Switch which;
    std::array<SwitchNode, 4> nodes; ///< the first one that the camera has
};

const NumberRow &row(Number number);
const ChoiceRow &row(Choice choice);
const SwitchRow &row(Switch which);

/// An equivalent name of a node; null if there is none.
const char *otherSpelling(const char *name);

} // namespace orvalis
