// SPDX-License-Identifier: MIT
// The names that typed features have on cameras, in order of preference, and their units.
#include "library/core/Features.h"
#include "tests/library/core/ScriptedNodes.h"

#include <gtest/gtest.h>

#include <iterator>

using namespace orvalis;
using namespace orvalis::test;

namespace {

/// A node name, the feature that it stands for, and what 10 of it is in the interface's units.
struct NamedNode {
    Number number;
    const char *node;
    double units;
};

/// Every name of the table, in its order.
constexpr NamedNode kNames[] = {
    {Number::Gain, "Gain", 10},
    {Number::Gain, "GainRaw", 10},
    {Number::Gain, "GainAbs", 10},
    {Number::Shutter, "ExposureTime", 10},
    {Number::Shutter, "ExposureTimeAbs", 10},
    {Number::Shutter, "ExposureTimeRaw", 10},
    {Number::AutoExposure, "AutoExposureTargetBrightness", 10},
    {Number::AutoExposure, "AutoTargetBrightness", 1000},
    {Number::AutoExposure, "AutoTargetValue", 10},
    {Number::AutoExposure, "AutoExposureTargetGreyValue", 10},
    {Number::AutoExposure, "ExpectedGrayValue", 10},
    {Number::AutoExposure, "TargetBrightness", 10},
    {Number::BlackLevel, "BlackLevel", 10},
    {Number::BlackLevel, "BlackLevelRaw", 10},
    {Number::BlackLevel, "BlackLevelAbs", 10},
    {Number::Gamma, "Gamma", 10},
    {Number::Gamma, "GammaAbs", 10},
    {Number::Contrast, "Contrast", 10},
    {Number::Contrast, "ContrastRaw", 10},
    {Number::Hue, "Hue", 10},
    {Number::Hue, "HueRaw", 10},
    {Number::Hue, "HueAbs", 10},
    {Number::Saturation, "Saturation", 10},
    {Number::Saturation, "SaturationRaw", 10},
    {Number::Saturation, "SaturationAbs", 10},
    {Number::Sharpness, "Sharpness", 10},
    {Number::Sharpness, "SharpnessRaw", 10},
    {Number::RedGain, "BalanceRatio", 10240},
    {Number::RedGain, "BalanceRatioAbs", 10240},
    {Number::RedGain, "BalanceRatioRaw", 10},
    {Number::GreenGain, "BalanceRatio", 10240},
    {Number::GreenGain, "BalanceRatioAbs", 10240},
    {Number::GreenGain, "BalanceRatioRaw", 10},
    {Number::BlueGain, "BalanceRatio", 10240},
    {Number::BlueGain, "BalanceRatioAbs", 10240},
    {Number::BlueGain, "BalanceRatioRaw", 10},
    {Number::FrameRate, "AcquisitionFrameRate", 10},
    {Number::FrameRate, "AcquisitionFrameRateAbs", 10},
    {Number::TriggerParameter, "AcquisitionBurstFrameCount", 10},
    {Number::TriggerParameter, "AcquisitionFrameCount", 10},
    {Number::TriggerDelay, "TriggerDelay", 10},
    {Number::TriggerDelay, "TriggerDelayAbs", 10},
    {Number::TriggerDelay, "TriggerDelayRaw", 10},
    {Number::TriggerNoiseFilter, "LineDebouncerTime", 10},
    {Number::TriggerNoiseFilter, "LineDebouncerTimeAbs", 10},
    {Number::TriggerNoiseFilter, "LineDebouncerTimeRaw", 10},
    {Number::StrobeDelay, "TimerDelay", 10},
    {Number::StrobeDelay, "TimerDelayAbs", 10},
    {Number::StrobeDelay, "TimerDelayRaw", 10},
    {Number::StrobeDelay, "StrobeDelay", 10},
    {Number::StrobeDuration, "TimerDuration", 10},
    {Number::StrobeDuration, "TimerDurationAbs", 10},
    {Number::StrobeDuration, "TimerDurationRaw", 10},
    {Number::StrobeDuration, "StrobeDuration", 10},
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

TEST_P(FeatureNames, nodeIsFoundInItsUnits)
{
    const NamedNode &row = GetParam();
    nodes_.nodes["BalanceRatioSelector"] = enumNode({"Red", "Green", "Blue"});
    nodes_.nodes[row.node] = floatNode(10, 0, 20);
    EXPECT_EQ(read(row.number).value, row.units);
    EXPECT_EQ(read(row.number).maximum, 2 * row.units);
    EXPECT_EQ(features_.set(row.number, 2 * row.units), ORVALIS_OK);
    EXPECT_EQ(nodes_.nodes[row.node].value, 20);
    EXPECT_EQ(features_.set(row.number, 3 * row.units), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(nodes_.nodes[row.node].value, 20);
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

TEST_F(NamesInOrder, theFirstNameOfTheTableCounts)
{
    nodes_.nodes["BalanceRatioSelector"] = enumNode({"Red", "Green", "Blue"});
    const NamedNode *first = nullptr;
    for (const NamedNode &name : kNames) {
        first = first && first->number == name.number ? first : &name;
        nodes_.nodes[first->node] = floatNode(10, 0, 20);
        nodes_.nodes[name.node] = floatNode(10, 0, 20);
        ASSERT_EQ(features_.set(name.number, first->units / 2), ORVALIS_OK);
        EXPECT_EQ(nodes_.nodes[first->node].value, 5) << name.node;
    }
}

TEST_F(NamesInOrder, rawTimesAreInStepsThatTheCameraTells)
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
