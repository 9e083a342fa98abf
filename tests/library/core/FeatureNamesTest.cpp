// SPDX-License-Identifier: MIT
// The node names of typed features, in order of preference, and their units.
#include "library/core/Features.h"
#include "tests/library/core/ScriptedNodes.h"

#include <gtest/gtest.h>

#include <iterator>

using namespace orvalis;
using namespace orvalis::test;

namespace {

/// A node name, its feature, and the interface's value of node value 1.
struct NamedNode {
    Number number;
    const char *node;
    double units;
};

/// Every name of the table, in its order.
constexpr NamedNode kNames[] = {
    {Number::Gain, "Gain", 1},
    {Number::Gain, "GainRaw", 1},
    {Number::Gain, "GainAbs", 1},
    {Number::Shutter, "ExposureTime", 1},
    {Number::Shutter, "ExposureTimeAbs", 1},
    {Number::Shutter, "ExposureTimeRaw", 1},
    {Number::AutoExposure, "AutoExposureTargetBrightness", 1},
    {Number::AutoExposure, "AutoTargetBrightness", 100},
    {Number::AutoExposure, "AutoTargetValue", 1},
    {Number::AutoExposure, "AutoExposureTargetGreyValue", 1},
    {Number::AutoExposure, "ExpectedGrayValue", 1},
    {Number::AutoExposure, "TargetBrightness", 1},
    {Number::AutoExposure, "ExposureAutoTarget", 1},
    {Number::AutoExposure, "AutoBrightnessTarget", 1},
    {Number::AutoExposure, "AutoExposureTarget", 1},
    {Number::AutoExposure, "AutoExposureTargetGrayValue", 1},
    {Number::AutoExposure, "BrightnessAutoNominalValue", 1},
    {Number::AutoExposure, "ALCReference", 1},
    {Number::BlackLevel, "BlackLevel", 1},
    {Number::BlackLevel, "BlackLevelRaw", 1},
    {Number::BlackLevel, "BlackLevelAbs", 1},
    {Number::Gamma, "Gamma", 1},
    {Number::Gamma, "GammaAbs", 1},
    {Number::Contrast, "Contrast", 1},
    {Number::Contrast, "ContrastRaw", 1},
    {Number::Hue, "Hue", 1},
    {Number::Hue, "HueRaw", 1},
    {Number::Hue, "HueAbs", 1},
    {Number::Saturation, "Saturation", 1},
    {Number::Saturation, "SaturationRaw", 1},
    {Number::Saturation, "SaturationAbs", 1},
    {Number::Sharpness, "Sharpness", 1},
    {Number::Sharpness, "SharpnessRaw", 1},
    {Number::RedGain, "BalanceRatio", 1024},
    {Number::RedGain, "BalanceRatioAbs", 1024},
    {Number::RedGain, "BalanceRatioRaw", 1},
    {Number::GreenGain, "BalanceRatio", 1024},
    {Number::GreenGain, "BalanceRatioAbs", 1024},
    {Number::GreenGain, "BalanceRatioRaw", 1},
    {Number::BlueGain, "BalanceRatio", 1024},
    {Number::BlueGain, "BalanceRatioAbs", 1024},
    {Number::BlueGain, "BalanceRatioRaw", 1},
    {Number::FrameRate, "AcquisitionFrameRate", 1},
    {Number::FrameRate, "AcquisitionFrameRateAbs", 1},
    {Number::TriggerParameter, "AcquisitionBurstFrameCount", 1},
    {Number::TriggerParameter, "AcquisitionFrameCount", 1},
    {Number::TriggerDelay, "TriggerDelay", 1},
    {Number::TriggerDelay, "TriggerDelayAbs", 1},
    {Number::TriggerDelay, "TriggerDelayRaw", 1},
    {Number::TriggerNoiseFilter, "LineDebouncerTime", 1},
    {Number::TriggerNoiseFilter, "LineDebouncerTimeAbs", 1},
    {Number::TriggerNoiseFilter, "LineDebouncerTimeRaw", 1},
    {Number::TriggerNoiseFilter, "LineDebouncerHighTimeAbs", 1},
    {Number::TriggerNoiseFilter, "SyncInGlitchFilter", 0.001},
    {Number::TriggerNoiseFilter, "LineFilterWidth", 1},
    {Number::StrobeDelay, "StrobeDelay", 1},
    {Number::StrobeDelay, "StrobeLineDelay", 1},
    {Number::StrobeDelay, "FlashStartDelay", 1},
    {Number::StrobeDelay, "TimerDelay", 1},
    {Number::StrobeDelay, "TimerDelayAbs", 1},
    {Number::StrobeDelay, "TimerDelayRaw", 1},
    {Number::StrobeDuration, "StrobeDuration", 1},
    {Number::StrobeDuration, "StrobeLineDuration", 1},
    {Number::StrobeDuration, "FlashDuration", 1},
    {Number::StrobeDuration, "TimerDuration", 1},
    {Number::StrobeDuration, "TimerDurationAbs", 1},
    {Number::StrobeDuration, "TimerDurationRaw", 1},
};

class NamesInOrder : public testing::Test {
protected:
    NumberValue read(Number number)
    {
        NumberValue value;
        EXPECT_EQ(features_.get(number, value), ORVALIS_OK);
        return value;
    }

    ScriptedNodes nodes_;
    std::mutex mutex_;
    Features features_{nodes_, mutex_};
};

class FeatureNames : public NamesInOrder, public testing::WithParamInterface<NamedNode> {};

} // namespace

TEST_P(FeatureNames, nodeIsFoundAndItsUnitConverted)
{
    const NamedNode &row = GetParam();
    nodes_.nodes["BalanceRatioSelector"] = enumNode({"Red", "Green", "Blue"});
    nodes_.nodes[row.node] = floatNode(10'000, 0, 20'000);
    EXPECT_EQ(read(row.number).value, 10'000 * row.units);
    EXPECT_EQ(read(row.number).maximum, 20'000 * row.units);
    EXPECT_EQ(features_.set(row.number, 20'000 * row.units), ORVALIS_OK);
    EXPECT_EQ(nodes_.nodes[row.node].value, 20'000);
    EXPECT_EQ(features_.set(row.number, 30'000 * row.units), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(nodes_.nodes[row.node].value, 20'000);
}

INSTANTIATE_TEST_SUITE_P(Table, FeatureNames, testing::ValuesIn(kNames), [](const auto &row) {
    return std::string(row.param.node) + "_" + std::to_string(static_cast<int>(row.param.number));
});

TEST_F(NamesInOrder, everyNameOfTheTableIsTestedInItsOrder)
{
    std::size_t next = 0;
    for (int i = 0; i <= static_cast<int>(Number::StrobeDuration); ++i) {
        for (const NumberNode &node : row(static_cast<Number>(i)).nodes) {
            if (!node.name)
                break;
            ASSERT_LT(next, std::size(kNames)) << node.name;
            EXPECT_EQ(static_cast<int>(kNames[next].number), i) << node.name;
            EXPECT_STREQ(kNames[next].node, node.name);
            ++next;
        }
    }
    EXPECT_EQ(next, std::size(kNames));
}

TEST_F(NamesInOrder, firstNameOfTheTableIsUsed)
{
    nodes_.nodes["BalanceRatioSelector"] = enumNode({"Red", "Green", "Blue"});
    const NamedNode *first = nullptr;
    for (const NamedNode &name : kNames) {
        first = first && first->number == name.number ? first : &name;
        nodes_.nodes[first->node] = floatNode(10'000, 0, 20'000);
        nodes_.nodes[name.node] = floatNode(10'000, 0, 20'000);
        ASSERT_EQ(features_.set(name.number, 5'000 * first->units), ORVALIS_OK);
        EXPECT_EQ(nodes_.nodes[first->node].value, 5'000) << name.node;
    }
}

TEST_F(NamesInOrder, rawTimesAreMultipliedByTheCamerasTimeBase)
{
    const struct {
        Number number;
        const char *raw;
        const char *base;
    } times[] = {{Number::Shutter, "ExposureTimeRaw", "ExposureTimeBaseAbs"},
                 {Number::StrobeDelay, "TimerDelayRaw", "TimerDelayTimebaseAbs"},
                 {Number::StrobeDuration, "TimerDurationRaw", "TimerDurationTimebaseAbs"}};
    for (const auto &time : times) {
        nodes_.nodes[time.raw] = integerNode(100, 1, 4095);
        nodes_.nodes[time.base] = floatNode(20, 1, 100);
        EXPECT_EQ(read(time.number).value, 2000) << time.raw;
        EXPECT_EQ(read(time.number).minimum, 20) << time.raw;
        EXPECT_EQ(read(time.number).maximum, 81900) << time.raw;
        EXPECT_EQ(features_.set(time.number, 1010), ORVALIS_OK) << time.raw;
        EXPECT_EQ(nodes_.nodes[time.raw].value, 51) << "the nearest one";
        EXPECT_EQ(features_.set(time.number, 81901), ORVALIS_ERROR_OUT_OF_RANGE) << time.raw;
    }
}
