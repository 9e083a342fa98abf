// SPDX-License-Identifier: MIT
// Which nodes stand behind which typed feature. Standard names first, older ones after them.
#include "library/core/FeatureTable.h"

#include <cstddef>
#include <cstring>

namespace orvalis {

namespace {

/// Colour gains are carried in 1/1024, so that 1024 leaves the colour as it is.
constexpr double kRatio = 1024;
constexpr std::array<NumberNode, 6> kBalanceRatio{
    {{"BalanceRatio", kRatio}, {"BalanceRatioAbs", kRatio}, {"BalanceRatioRaw", 1}}};

constexpr NumberRow kNumbers[] = {
    {Number::Gain,
     {{{"Gain"}, {"GainRaw"}, {"GainAbs"}}},
     Rounding::Integer,
     Selecting::Gain,
     "GainAuto"},
    {Number::Shutter,
     {{{"ExposureTime"}, {"ExposureTimeAbs"}, {"ExposureTimeRaw", 1, "ExposureTimeBaseAbs"}}},
     Rounding::Integer,
     Selecting::Nothing,
     "ExposureAuto"},
    {Number::AutoExposure,
     {{{"AutoExposureTargetBrightness"},
       {"AutoTargetBrightness", 100}, // a share of the full range
       {"AutoTargetValue"},
       {"AutoExposureTargetGreyValue"},
       {"ExpectedGrayValue"},
       {"TargetBrightness"}}}},
    {Number::BlackLevel,
     {{{"BlackLevel"}, {"BlackLevelRaw"}, {"BlackLevelAbs"}}},
     Rounding::Integer,
     Selecting::BlackLevel},
    {Number::Gamma,
     {{{"Gamma"}, {"GammaAbs"}}},
     Rounding::Float,
     Selecting::Nothing,
     nullptr,
     {{"GammaEnable", "GammaEnabled"}}},
    {Number::Contrast, {{{"Contrast"}, {"ContrastRaw"}}}},
    {Number::Hue, {{{"Hue"}, {"HueRaw"}, {"HueAbs"}}}},
    {Number::Saturation, {{{"Saturation"}, {"SaturationRaw"}, {"SaturationAbs"}}}},
    {Number::Sharpness, {{{"Sharpness"}, {"SharpnessRaw"}}}},
    {Number::RedGain, kBalanceRatio, Rounding::Integer, Selecting::Red},
    {Number::GreenGain, kBalanceRatio, Rounding::Integer, Selecting::Green},
    {Number::BlueGain, kBalanceRatio, Rounding::Integer, Selecting::Blue},
    {Number::FrameRate,
     {{{"AcquisitionFrameRate"}, {"AcquisitionFrameRateAbs"}}},
     Rounding::Float,
     Selecting::Nothing,
     "AcquisitionFrameRateAuto",
     {{"AcquisitionFrameRateEnable", "AcquisitionFrameRateEnabled",
       "AcquisitionFrameRateControlEnabled"}}},
    {Number::TriggerParameter, {{{"AcquisitionBurstFrameCount"}, {"AcquisitionFrameCount"}}}},
    {Number::TriggerDelay, {{{"TriggerDelay"}, {"TriggerDelayAbs"}, {"TriggerDelayRaw"}}}},
    {Number::TriggerNoiseFilter,
     {{{"LineDebouncerTime"}, {"LineDebouncerTimeAbs"}, {"LineDebouncerTimeRaw"}}},
     Rounding::Integer,
     Selecting::TriggerLine},
    {Number::StrobeDelay,
     {{{"TimerDelay"},
       {"TimerDelayAbs"},
       {"TimerDelayRaw", 1, "TimerDelayTimebaseAbs"},
       {"StrobeDelay"}}},
     Rounding::Integer,
     Selecting::StrobeTimer},
    {Number::StrobeDuration,
     {{{"TimerDuration"},
       {"TimerDurationAbs"},
       {"TimerDurationRaw", 1, "TimerDurationTimebaseAbs"},
       {"StrobeDuration"}}},
     Rounding::Integer,
     Selecting::StrobeTimer},
};

constexpr ChoiceRow kChoices[] = {
    {Choice::PixelFormat, Selecting::Nothing, {{"PixelFormat"}}},
    {Choice::WhiteBalance, Selecting::Nothing, {{"BalanceWhiteAuto"}}},
    {Choice::TriggerMode, Selecting::Nothing, {{"TriggerSelector"}}},
    {Choice::TriggerSource, Selecting::Nothing, {{"TriggerSource"}}},
    {Choice::TriggerPolarity, Selecting::Nothing, {{"TriggerActivation"}}},
    {Choice::StrobeMode, Selecting::OutputLine, {{"LineSource"}}},
    {Choice::StrobePolarity,
     Selecting::OutputLine,
     {{"LineInverter", "StrobePolarity"}},
     {{"ActiveHigh", "ActiveLow"}}},
};

constexpr SwitchRow kSwitches[] = {
    {Switch::TriggerEnable, {{"TriggerMode"}}},
    {Switch::StrobeEnable,
     {{"StrobeEnable"}},
     Selecting::OutputLine,
     "LineSource",
     "ExposureActive"},
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
