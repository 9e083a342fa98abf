// SPDX-License-Identifier: MIT
// The nodes of each typed feature: standard names first, then older ones.
#include "library/core/FeatureTable.h"

#include <cstddef>
#include <cstring>

namespace orvalis {

namespace {

/// The interface has colour gains in units of 1/1024; 1024 leaves the colour unchanged.
constexpr double kRatio = 1024;
constexpr std::array<NumberNode, 12> kBalanceRatio{
    {{"BalanceRatio", kRatio}, {"BalanceRatioAbs", kRatio}, {"BalanceRatioRaw", 1}}};

constexpr double kNanosecond = 0.001; ///< in microseconds

constexpr NumberRow kNumbers[] = {
    {.number = Number::Gain,
     .nodes = {{{"Gain"}, {"GainRaw"}, {"GainAbs"}}},
     .selecting = Selecting::Gain,
     .automatic = "GainAuto"},
    {.number = Number::Shutter,
     .nodes = {{{"ExposureTime"},
                {"ExposureTimeAbs"},
                {"ExposureTimeRaw", 1, "ExposureTimeBaseAbs"}}},
     .automatic = "ExposureAuto",
     .quantity = Quantity::Time},
    {.number = Number::AutoExposure,
     .nodes = {{{"AutoExposureTargetBrightness"},
                {"AutoTargetBrightness", 100}, // a fraction of the full range
                {"AutoTargetValue"},
                {"AutoExposureTargetGreyValue"},
                {"ExpectedGrayValue"},
                {"TargetBrightness"},
                {"ExposureAutoTarget"}, // percent
                {"AutoBrightnessTarget"},
                {"AutoExposureTarget"},
                {"AutoExposureTargetGrayValue"},
                {"BrightnessAutoNominalValue"}, // percent
                {"ALCReference"}}}},
    {.number = Number::BlackLevel,
     .nodes = {{{"BlackLevel"}, {"BlackLevelRaw"}, {"BlackLevelAbs"}}},
     .selecting = Selecting::BlackLevel},
    {.number = Number::Gamma,
     .nodes = {{{"Gamma"}, {"GammaAbs"}}},
     .rounding = Rounding::Float,
     .enables = {{{"GammaEnable"}, {"GammaEnabled"}}}},
    {.number = Number::Contrast, .nodes = {{{"Contrast"}, {"ContrastRaw"}}}},
    {.number = Number::Hue, .nodes = {{{"Hue"}, {"HueRaw"}, {"HueAbs"}}}},
    {.number = Number::Saturation,
     .nodes = {{{"Saturation"}, {"SaturationRaw"}, {"SaturationAbs"}}}},
    {.number = Number::Sharpness, .nodes = {{{"Sharpness"}, {"SharpnessRaw"}}}},
    {.number = Number::RedGain, .nodes = kBalanceRatio, .selecting = Selecting::Red},
    {.number = Number::GreenGain, .nodes = kBalanceRatio, .selecting = Selecting::Green},
    {.number = Number::BlueGain, .nodes = kBalanceRatio, .selecting = Selecting::Blue},
    {.number = Number::FrameRate,
     .nodes = {{{"AcquisitionFrameRate"}, {"AcquisitionFrameRateAbs"}}},
     .rounding = Rounding::Float,
     .automatic = "AcquisitionFrameRateAuto",
     .enables = {{{"AcquisitionFrameRateEnable"},
                  {"AcquisitionFrameRateEnabled"},
                  {"AcquisitionFrameRateControlEnabled"},
                  {"AcquisitionFrameRateMode"}}}},
    {.number = Number::TriggerParameter,
     .nodes = {{{"AcquisitionBurstFrameCount"}, {"AcquisitionFrameCount"}}}},
    {.number = Number::TriggerDelay,
     .nodes = {{{"TriggerDelay"}, {"TriggerDelayAbs"}, {"TriggerDelayRaw"}}},
     .quantity = Quantity::Time},
    {.number = Number::TriggerNoiseFilter,
     .nodes = {{{"LineDebouncerTime"},
                {"LineDebouncerTimeAbs"},
                {"LineDebouncerTimeRaw"},
                {"LineDebouncerHighTimeAbs", 1, nullptr, "LineDebouncerLowTimeAbs"},
                {"SyncInGlitchFilter", kNanosecond},
                {"LineFilterWidth"}}}, // in camera-specific steps unless the node has a unit
     .selecting = Selecting::TriggerLine,
     .quantity = Quantity::Time},
    // The strobe's own times first: a camera that has them may use its timers for other purposes.
    {.number = Number::StrobeDelay,
     .nodes = {{{"StrobeDelay"},
                {"StrobeLineDelay"},
                {"FlashStartDelay"},
                {"TimerDelay"},
                {"TimerDelayAbs"},
                {"TimerDelayRaw", 1, "TimerDelayTimebaseAbs"}}},
     .selecting = Selecting::StrobeTimer,
     .quantity = Quantity::Time},
    {.number = Number::StrobeDuration,
     .nodes = {{{"StrobeDuration"},
                {"StrobeLineDuration"},
                {"FlashDuration"},
                {"TimerDuration"},
                {"TimerDurationAbs"},
                {"TimerDurationRaw", 1, "TimerDurationTimebaseAbs"}}},
     .selecting = Selecting::StrobeTimer,
     .enables = {{{"StrobeDurationMode", "Controlled", "Source", true}}},
     .quantity = Quantity::Time},
};

constexpr ChoiceRow kChoices[] = {
    {Choice::PixelFormat, {{{"PixelFormat"}}}},
    {Choice::WhiteBalance, {{{"BalanceWhiteAuto"}}}},
    {Choice::TriggerMode, {{{"TriggerSelector"}}}},
    {Choice::TriggerSource, {{{"TriggerSource"}}}},
    {Choice::TriggerPolarity, {{{"TriggerActivation"}}}},
    {Choice::StrobeMode,
     {{{"LineSource", Selecting::StrobeLine}, {"StrobeSource"}, {"FlashReference"}}}},
    {Choice::StrobePolarity,
     {{{"LineInverter", Selecting::StrobeLine},
       {"StrobePolarity", Selecting::StrobeNode},
       {"SyncOutPolarity", Selecting::StrobeOutput}}},
     {{"ActiveHigh", "ActiveLow"}}},
};

/// A line without its own switch is off while no source drives it. An output that is not used for
/// the strobe is a general-purpose output ("GPO") at a constant level.
constexpr SwitchRow kSwitches[] = {
    {Switch::TriggerEnable, {{{"TriggerMode"}}}},
    {Switch::StrobeEnable,
     {{{"StrobeEnable", Selecting::StrobeNode},
       {"LineSource", Selecting::StrobeLine, "ExposureActive"},
       {"SyncOutSource", Selecting::StrobeOutput, "Strobe1", "GPO", true},
       {"FlashReference", Selecting::Nothing, "ExposureActive"}}}},
};

template <std::size_t N, class Row, class Key>
constexpr bool inOrder(const Row (&rows)[N], Key Row::*key)
{
    for (std::size_t i = 0; i < N; ++i)
        if (static_cast<std::size_t>(rows[i].*key) != i)
            return false;
    return true;
}
static_assert(inOrder(kNumbers, &NumberRow::number));
static_assert(inOrder(kChoices, &ChoiceRow::choice));
static_assert(inOrder(kSwitches, &SwitchRow::which));

constexpr const char *kSpellings[][2] = {
    {"UserSetDefault", "UserSetDefaultSelector"},
    {"UserSetDefaultSelector", "UserSetDefault"},
};

} // namespace

const NumberRow &row(Number number) { return kNumbers[static_cast<std::size_t>(number)]; }
const ChoiceRow &row(Choice choice) { return kChoices[static_cast<std::size_t>(choice)]; }
const SwitchRow &row(Switch which) { return kSwitches[static_cast<std::size_t>(which)]; }

const char *otherSpelling(const char *name)
{
    for (const auto &[spelling, other] : kSpellings)
        if (std::strcmp(spelling, name) == 0)
            return other;
    return nullptr;
}

} // namespace orvalis
