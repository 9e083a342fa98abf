// SPDX-License-Identifier: MIT
// Typed features as a view of nodes: names, units, bounds, selectors.
#include "library/core/Features.h"
#include "tests/library/core/ScriptedNodes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <thread>

using namespace orvalis;
using namespace orvalis::test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class FeaturesTest : public testing::Test {
protected:
    NumberValue read(Number number)
    {
        NumberValue value;
        EXPECT_EQ(features_.get(number, value), ORVALIS_OK);
        return value;
    }
    OResult resultOf(Number number)
    {
        NumberValue value;
        return features_.get(number, value);
    }
    std::vector<std::string> writes() { return nodes_.writes(); }

    ScriptedNodes nodes_;
    std::mutex mutex_;
    Features features_{nodes_, mutex_};
};

} // namespace

TEST_F(FeaturesTest, missingFeatureIsNotSupported)
{
    for (int i = 0; i <= static_cast<int>(Number::StrobeDuration); ++i) {
        EXPECT_EQ(resultOf(static_cast<Number>(i)), ORVALIS_ERROR_NOT_SUPPORTED) << i;
        EXPECT_EQ(features_.set(static_cast<Number>(i), 1), ORVALIS_ERROR_NOT_SUPPORTED) << i;
    }
    std::vector<std::string> names;
    bool on = false;
    for (int i = 0; i <= static_cast<int>(Choice::StrobePolarity); ++i)
        EXPECT_EQ(features_.list(static_cast<Choice>(i), names), ORVALIS_ERROR_NOT_SUPPORTED) << i;
    EXPECT_EQ(features_.get(Switch::TriggerEnable, on), ORVALIS_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(features_.set(Switch::StrobeEnable, true), ORVALIS_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(features_.fireSoftwareTrigger(true), ORVALIS_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(features_.loadDefaults(), ORVALIS_ERROR_NOT_SUPPORTED);
}

TEST_F(FeaturesTest, unavailableNodeIsNotSupported)
{
    nodes_.nodes["Hue"] = integerNode(1, 0, 10);
    nodes_.nodes["Hue"].access = ORVALIS_ACCESS_NOT_AVAILABLE;
    EXPECT_EQ(resultOf(Number::Hue), ORVALIS_ERROR_NOT_SUPPORTED);
}

TEST_F(FeaturesTest, nextNameIsUsedIfANodeIsUnavailable)
{
    nodes_.nodes["Gain"] = floatNode(1, 0, 10);
    nodes_.nodes["Gain"].access = ORVALIS_ACCESS_NOT_IMPLEMENTED;
    nodes_.nodes["GainRaw"] = integerNode(7, 0, 10);
    EXPECT_EQ(read(Number::Gain).value, 7);
}

TEST_F(FeaturesTest, halvesAreRoundedAwayFromZero)
{
    nodes_.nodes["Gain"] = floatNode(2.5, -2.5, 24.4);
    const NumberValue gain = read(Number::Gain);
    EXPECT_EQ(gain.value, 3);
    EXPECT_EQ(gain.minimum, -3);
    EXPECT_EQ(gain.maximum, 24);
}

TEST_F(FeaturesTest, roundedBoundsCanBeSet)
{
    nodes_.nodes["BalanceRatioSelector"] = enumNode({"Red", "Green", "Blue"});
    nodes_.nodes["BalanceRatio"] = floatNode(1, 0.0625, 3.999);
    EXPECT_EQ(read(Number::RedGain).minimum, 64);
    EXPECT_EQ(read(Number::RedGain).maximum, 4095);
    EXPECT_EQ(features_.set(Number::RedGain, 4095), ORVALIS_OK);
    EXPECT_EQ(nodes_.nodes["BalanceRatio"].value, 3.999);
    EXPECT_EQ(features_.set(Number::RedGain, 4096), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(features_.set(Number::RedGain, 63), ORVALIS_ERROR_OUT_OF_RANGE);
}

TEST_F(FeaturesTest, everyRatioIsReadBackAsSet)
{
    nodes_.nodes["BalanceRatioSelector"] = enumNode({"Red", "Green", "Blue"});
    nodes_.nodes["BalanceRatio"] = floatNode(1, 0.0625, 3.999);
    for (int ratio = 64; ratio <= 4095; ++ratio) {
        ASSERT_EQ(features_.set(Number::RedGain, ratio), ORVALIS_OK) << ratio;
        ASSERT_EQ(read(Number::RedGain).value, ratio);
    }
}

TEST_F(FeaturesTest, valueIsRoundedDownToTheIncrement)
{
    nodes_.nodes["BlackLevel"] = integerNode(0, 2, 30, 4);
    EXPECT_EQ(features_.set(Number::BlackLevel, 13), ORVALIS_OK);
    EXPECT_EQ(nodes_.nodes["BlackLevel"].value, 10);
    nodes_.nodes["Gain"] = floatNode(0, 0, 24);
    nodes_.nodes["Gain"].increment = 1.5;
    EXPECT_EQ(features_.set(Number::Gain, 5), ORVALIS_OK);
    EXPECT_EQ(nodes_.nodes["Gain"].value, 4.5);
}

TEST_F(FeaturesTest, incrementsCountFromTheMinimum)
{
    nodes_.nodes["Gain"] = floatNode(3, 3, 98);
    nodes_.nodes["Gain"].increment = 5;
    EXPECT_EQ(features_.set(Number::Gain, 14), ORVALIS_OK);
    EXPECT_EQ(nodes_.nodes["Gain"].value, 13);
}

TEST_F(FeaturesTest, notANumberIsOutOfRange)
{
    nodes_.nodes["Gamma"] = floatNode(1, 0.1, 4);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(features_.set(Number::Gamma, nan), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_THAT(writes(), IsEmpty());
}

TEST_F(FeaturesTest, floatBoundsThatWereReadCanBeSet)
{
    nodes_.nodes["Gamma"] = floatNode(1, 0.1, 3.3);
    EXPECT_EQ(features_.set(Number::Gamma, read(Number::Gamma).maximum), ORVALIS_OK);
    EXPECT_EQ(features_.set(Number::Gamma, read(Number::Gamma).minimum), ORVALIS_OK);
    EXPECT_FLOAT_EQ(static_cast<float>(nodes_.nodes["Gamma"].value), 0.1F);
}

TEST_F(FeaturesTest, automaticIsReadAndSet)
{
    nodes_.nodes["Gain"] = floatNode(1, 0, 24);
    nodes_.nodes["GainAuto"] = enumNode({"Off", "Once", "Continuous"});
    EXPECT_FALSE(read(Number::Gain).automatic);
    EXPECT_EQ(features_.set(Number::Gain, 1000, true), ORVALIS_OK);
    EXPECT_TRUE(read(Number::Gain).automatic);
    EXPECT_EQ(features_.set(Number::Gain, 5), ORVALIS_OK);
    EXPECT_FALSE(read(Number::Gain).automatic);
    EXPECT_THAT(writes(), ElementsAre("GainAuto=Continuous", "GainAuto=Off", "Gain=5"));
}

TEST_F(FeaturesTest, refusedValueLeavesAutomaticOn)
{
    nodes_.nodes["ExposureTime"] = floatNode(1, 0, 24);
    nodes_.nodes["ExposureAuto"] = enumNode({"Off", "Continuous"}, 1);
    EXPECT_EQ(features_.set(Number::Shutter, 25), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_THAT(writes(), IsEmpty());
}

TEST_F(FeaturesTest, automaticWithoutControlIsNotSupported)
{
    nodes_.nodes["Gain"] = floatNode(1, 0, 24);
    EXPECT_EQ(features_.set(Number::Gain, 1, true), ORVALIS_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(features_.set(Number::Gain, 2, false), ORVALIS_OK);
}

TEST_F(FeaturesTest, lockedNodeIsAccessDenied)
{
    nodes_.nodes["Sharpness"] = integerNode(10, 10, 20);
    nodes_.nodes["Sharpness"].access = ORVALIS_ACCESS_READ_ONLY;
    EXPECT_EQ(features_.set(Number::Sharpness, 12), ORVALIS_ERROR_ACCESS_DENIED);
    EXPECT_EQ(read(Number::Sharpness).value, 10);
}

TEST_F(FeaturesTest, frameRateSwitchesItsControlOnInEverySpelling)
{
    for (const char *enable : {"AcquisitionFrameRateEnable", "AcquisitionFrameRateEnabled",
                               "AcquisitionFrameRateControlEnabled"}) {
        nodes_.nodes.clear();
        nodes_.nodes["AcquisitionFrameRate"] = floatNode(10, 1, 100);
        nodes_.nodes[enable] = booleanNode(false);
        EXPECT_EQ(features_.set(Number::FrameRate, 50), ORVALIS_OK);
        EXPECT_EQ(nodes_.nodes[enable].value, 1) << enable;
        EXPECT_EQ(nodes_.nodes["AcquisitionFrameRate"].value, 50);
    }
}

TEST_F(FeaturesTest, frameRateSwitchesItsAutomaticOff)
{
    nodes_.nodes["AcquisitionFrameRate"] = floatNode(10, 1, 100);
    nodes_.nodes["AcquisitionFrameRateAuto"] = enumNode({"Off", "Continuous"}, 1);
    EXPECT_EQ(features_.set(Number::FrameRate, 50), ORVALIS_OK);
    EXPECT_THAT(writes(), ElementsAre("AcquisitionFrameRateAuto=Off", "AcquisitionFrameRate=50"));
}

TEST_F(FeaturesTest, frameRateIsReadWhileItsSwitchHidesIt)
{
    nodes_.nodes["AcquisitionFrameRate"] = floatNode(10, 1, 100);
    nodes_.nodes["AcquisitionFrameRate"].access = ORVALIS_ACCESS_NOT_AVAILABLE;
    nodes_.nodes["AcquisitionFrameRateEnable"] = booleanNode(false);
    nodes_.afterWrite = [this] {
        nodes_.nodes["AcquisitionFrameRate"].access = ORVALIS_ACCESS_READ_WRITE;
    };
    EXPECT_EQ(features_.set(Number::FrameRate, 50), ORVALIS_OK);
    EXPECT_EQ(nodes_.nodes["AcquisitionFrameRate"].value, 50);
}

TEST_F(FeaturesTest, refusedFrameRateSwitchesNothing)
{
    nodes_.nodes["AcquisitionFrameRate"] = floatNode(10, 1, 100);
    nodes_.nodes["AcquisitionFrameRateEnable"] = booleanNode(false);
    EXPECT_EQ(features_.set(Number::FrameRate, 101), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_THAT(writes(), IsEmpty());
}

TEST_F(FeaturesTest, selectorIsSetForTheAccessAndRestored)
{
    nodes_.nodes["BalanceRatioSelector"] = enumNode({"Red", "Green", "Blue"}, 1);
    nodes_.nodes["BalanceRatio"] = floatNode(0, 0, 4);
    nodes_.nodes["BalanceRatio"].selector = "BalanceRatioSelector";
    nodes_.nodes["BalanceRatio"].selected = {{"Red", 1}, {"Green", 2}, {"Blue", 3}};
    EXPECT_EQ(read(Number::BlueGain).value, 3 * 1024);
    EXPECT_EQ(read(Number::GreenGain).value, 2 * 1024);
    EXPECT_EQ(features_.set(Number::RedGain, 1536), ORVALIS_OK);
    EXPECT_EQ(nodes_.nodes["BalanceRatio"].selected["Red"], 1.5);
    EXPECT_THAT(writes(), ElementsAre("BalanceRatioSelector=Blue", "BalanceRatioSelector=Green",
                                      "BalanceRatioSelector=Red", "BalanceRatio=1.5",
                                      "BalanceRatioSelector=Green"));
}

TEST_F(FeaturesTest, threadsDoNotChangeEachOthersSelectors)
{
    nodes_.nodes["BalanceRatioSelector"] = enumNode({"Red", "Green", "Blue"});
    nodes_.nodes["BalanceRatio"] = floatNode(0, 0, 4);
    nodes_.nodes["BalanceRatio"].selector = "BalanceRatioSelector";
    nodes_.nodes["BalanceRatio"].selected = {{"Red", 1}, {"Green", 2}, {"Blue", 3}};
    const auto hammer = [this](Number number, double expected) {
        for (int i = 0; i < 300; ++i)
            ASSERT_EQ(read(number).value, expected);
    };
    std::thread red(hammer, Number::RedGain, 1024);
    std::thread blue(hammer, Number::BlueGain, 3072);
    red.join();
    blue.join();
}

TEST_F(FeaturesTest, gainIsThatOfTheWholeCamera)
{
    nodes_.nodes["GainSelector"] = enumNode({"All", "Red"}, 1);
    nodes_.nodes["Gain"] = floatNode(0, 0, 24);
    nodes_.nodes["Gain"].selector = "GainSelector";
    nodes_.nodes["Gain"].selected = {{"All", 6}, {"Red", 9}};
    EXPECT_EQ(read(Number::Gain).value, 6);
    EXPECT_EQ(nodes_.nodes["GainSelector"].value, 1) << "restored";
}

TEST_F(FeaturesTest, noiseFilterIsThatOfTheTriggersLine)
{
    nodes_.nodes["TriggerSource"] = enumNode({"Software", "Line0", "Line1"}, 2);
    nodes_.nodes["LineSelector"] = enumNode({"Line0", "Line1", "Line2"}, 2);
    nodes_.nodes["LineDebouncerTime"] = floatNode(0, 0, 1000);
    nodes_.nodes["LineDebouncerTime"].selector = "LineSelector";
    nodes_.nodes["LineDebouncerTime"].selected = {{"Line0", 10}, {"Line1", 20}};
    EXPECT_EQ(read(Number::TriggerNoiseFilter).value, 20);
    EXPECT_EQ(nodes_.nodes["LineSelector"].value, 2) << "restored";
}

TEST_F(FeaturesTest, strobeIsOnTheOutputLine)
{
    nodes_.nodes["LineSelector"] = enumNode({"Line0", "Line1"});
    nodes_.nodes["LineMode"] = enumNode({"Input", "Output"});
    nodes_.nodes["LineMode"].selector = "LineSelector";
    nodes_.nodes["LineMode"].selected = {{"Line0", 0}, {"Line1", 1}};
    nodes_.nodes["LineSource"] = enumNode({"Off", "ExposureActive", "Timer0Active"});
    nodes_.nodes["LineSource"].selector = "LineSelector";
    nodes_.nodes["LineInverter"] = booleanNode(false);
    nodes_.nodes["LineInverter"].selector = "LineSelector";
    EXPECT_EQ(features_.set(Choice::StrobeMode, "Timer0Active"), ORVALIS_OK);
    EXPECT_EQ(nodes_.nodes["LineSource"].selected["Line1"], 2);
    EXPECT_EQ(features_.set(Choice::StrobePolarity, "ActiveLow"), ORVALIS_OK);
    EXPECT_EQ(nodes_.nodes["LineInverter"].selected["Line1"], 1);
    EXPECT_EQ(nodes_.nodes["LineInverter"].selected["Line0"], 0);
    EXPECT_EQ(nodes_.nodes["LineSelector"].value, 0) << "restored";
}

TEST_F(FeaturesTest, strobeTimesAreThoseOfTheLinesTimer)
{
    nodes_.nodes["LineSource"] = enumNode({"Off", "Timer0Active", "Timer1Active"}, 2);
    nodes_.nodes["TimerSelector"] = enumNode({"Timer0", "Timer1"});
    nodes_.nodes["TimerDelay"] = floatNode(0, 0, 1000);
    nodes_.nodes["TimerDelay"].selector = "TimerSelector";
    nodes_.nodes["TimerDelay"].selected = {{"Timer0", 10}, {"Timer1", 20}};
    EXPECT_EQ(read(Number::StrobeDelay).value, 20);
    EXPECT_EQ(nodes_.nodes["TimerSelector"].value, 0) << "restored";
}

TEST_F(FeaturesTest, strobeWithoutASwitchIsOffWhileNothingDrivesIt)
{
    nodes_.nodes["LineSource"] = enumNode({"Off", "Timer0Active", "ExposureActive"});
    bool on = true;
    EXPECT_EQ(features_.get(Switch::StrobeEnable, on), ORVALIS_OK);
    EXPECT_FALSE(on);
    EXPECT_EQ(features_.set(Switch::StrobeEnable, true), ORVALIS_OK);
    EXPECT_EQ(features_.set(Switch::StrobeEnable, true), ORVALIS_OK);
    EXPECT_EQ(features_.set(Switch::StrobeEnable, false), ORVALIS_OK);
    EXPECT_THAT(writes(), ElementsAre("LineSource=ExposureActive", "LineSource=Off"));
}

TEST_F(FeaturesTest, strobeWithASwitch)
{
    nodes_.nodes["StrobeEnable"] = booleanNode(false);
    bool on = true;
    EXPECT_EQ(features_.get(Switch::StrobeEnable, on), ORVALIS_OK);
    EXPECT_FALSE(on);
    EXPECT_EQ(features_.set(Switch::StrobeEnable, true), ORVALIS_OK);
    EXPECT_THAT(writes(), ElementsAre("StrobeEnable=1"));
}

TEST_F(FeaturesTest, triggerSwitchIsAnEnumeration)
{
    nodes_.nodes["TriggerMode"] = enumNode({"Off", "On"}, 1);
    bool on = false;
    EXPECT_EQ(features_.get(Switch::TriggerEnable, on), ORVALIS_OK);
    EXPECT_TRUE(on);
    EXPECT_EQ(features_.set(Switch::TriggerEnable, false), ORVALIS_OK);
    EXPECT_THAT(writes(), ElementsAre("TriggerMode=Off"));
}

TEST_F(FeaturesTest, choicesAreTheEntries)
{
    nodes_.nodes["TriggerSource"] = enumNode({"Software", "Line0"}, 1);
    std::vector<std::string> names;
    std::string name;
    EXPECT_EQ(features_.list(Choice::TriggerSource, names), ORVALIS_OK);
    EXPECT_THAT(names, ElementsAre("Software", "Line0"));
    EXPECT_EQ(features_.get(Choice::TriggerSource, name), ORVALIS_OK);
    EXPECT_EQ(name, "Line0");
    EXPECT_EQ(features_.set(Choice::TriggerSource, "Line9"), ORVALIS_ERROR_NOT_FOUND);
}

TEST_F(FeaturesTest, polarityMayBeAListOfItsOwn)
{
    nodes_.nodes["StrobePolarity"] = enumNode({"ActiveLow", "ActiveHigh"});
    EXPECT_EQ(features_.set(Choice::StrobePolarity, "ActiveHigh"), ORVALIS_OK);
    EXPECT_THAT(writes(), ElementsAre("StrobePolarity=ActiveHigh"));
}

TEST_F(FeaturesTest, polarityIsABooleanWithTwoNames)
{
    nodes_.nodes["LineSource"] = enumNode({"Off"});
    nodes_.nodes["LineInverter"] = booleanNode(true);
    std::vector<std::string> names;
    std::string name;
    EXPECT_EQ(features_.list(Choice::StrobePolarity, names), ORVALIS_OK);
    EXPECT_THAT(names, ElementsAre("ActiveHigh", "ActiveLow"));
    EXPECT_EQ(features_.get(Choice::StrobePolarity, name), ORVALIS_OK);
    EXPECT_EQ(name, "ActiveLow");
    EXPECT_EQ(features_.set(Choice::StrobePolarity, "Sideways"), ORVALIS_ERROR_NOT_FOUND);
}

TEST_F(FeaturesTest, softwareTriggerThatIsNotSetUpIsIgnored)
{
    nodes_.nodes["TriggerSoftware"] = commandNode();
    EXPECT_EQ(features_.fireSoftwareTrigger(true), ORVALIS_OK);
    EXPECT_THAT(writes(), ElementsAre("TriggerSoftware()"));
    nodes_.nodes["TriggerSource"] = enumNode({"Software", "Line0"}, 1);
    EXPECT_EQ(features_.fireSoftwareTrigger(true), ORVALIS_OK);
    nodes_.nodes["TriggerSource"].value = 0;
    EXPECT_EQ(features_.fireSoftwareTrigger(false), ORVALIS_OK);
    nodes_.nodes["TriggerMode"] = enumNode({"Off", "On"});
    EXPECT_EQ(features_.fireSoftwareTrigger(true), ORVALIS_OK);
    nodes_.nodes["TriggerMode"].value = 1;
    EXPECT_THAT(writes(), testing::SizeIs(1));
    EXPECT_EQ(features_.fireSoftwareTrigger(true), ORVALIS_OK);
    EXPECT_THAT(writes(), testing::SizeIs(2));
    nodes_.nodes["TriggerSoftware"].access = ORVALIS_ACCESS_NOT_AVAILABLE;
    EXPECT_EQ(features_.fireSoftwareTrigger(true), ORVALIS_OK);
}

TEST_F(FeaturesTest, defaultsAreLoadedAndTheSelectorRestored)
{
    nodes_.nodes["UserSetSelector"] = enumNode({"Default", "UserSet1"}, 1);
    nodes_.nodes["UserSetLoad"] = commandNode();
    EXPECT_EQ(features_.loadDefaults(), ORVALIS_OK);
    EXPECT_THAT(writes(), ElementsAre("UserSetSelector=Default", "UserSetLoad()",
                                      "UserSetSelector=UserSet1"));
}

TEST_F(FeaturesTest, defaultsMayBeCalledFactory)
{
    nodes_.nodes["UserSetSelector"] = enumNode({"Factory", "UserSet1"}, 1);
    nodes_.nodes["UserSetLoad"] = commandNode();
    EXPECT_EQ(features_.loadDefaults(), ORVALIS_OK);
    EXPECT_THAT(writes(), ElementsAre("UserSetSelector=Factory", "UserSetLoad()",
                                      "UserSetSelector=UserSet1"));
}

TEST_F(FeaturesTest, userSetsWithoutDefaultsLoadNothing)
{
    nodes_.nodes["UserSetSelector"] = enumNode({"UserSet1", "UserSet2"}, 1);
    nodes_.nodes["UserSetLoad"] = commandNode();
    EXPECT_EQ(features_.loadDefaults(), ORVALIS_ERROR_NOT_SUPPORTED);
    EXPECT_THAT(writes(), testing::IsEmpty());
}

TEST_F(FeaturesTest, presentFormatHasACodeByNumberOrName)
{
    nodes_.nodes["PixelFormat"] = enumNode({"Mono8", "Mono12", "Odd"});
    nodes_.nodes["PixelFormat"].entryValues = {0x01080001, 7, 9};
    PresentFormat present;
    EXPECT_EQ(features_.presentFormat(present), ORVALIS_OK);
    EXPECT_EQ(present.code, 0x01080001u);
    nodes_.nodes["PixelFormat"].value = 1;
    EXPECT_EQ(features_.presentFormat(present), ORVALIS_OK);
    EXPECT_EQ(present.code, 0x01100005u);
    nodes_.nodes["PixelFormat"].value = 2;
    EXPECT_EQ(features_.presentFormat(present), ORVALIS_OK);
    EXPECT_EQ(present.format, nullptr);
    EXPECT_EQ(present.code, 9u);
}

TEST_F(FeaturesTest, lossIsReported)
{
    nodes_.failure = ORVALIS_ERROR_CONNECTION_LOST;
    std::string name;
    bool on = false;
    OSizeInfo size{};
    EXPECT_EQ(resultOf(Number::Gain), ORVALIS_ERROR_CONNECTION_LOST);
    EXPECT_EQ(resultOf(Number::RedGain), ORVALIS_ERROR_CONNECTION_LOST);
    EXPECT_EQ(features_.set(Number::FrameRate, 1), ORVALIS_ERROR_CONNECTION_LOST);
    EXPECT_EQ(features_.get(Choice::StrobeMode, name), ORVALIS_ERROR_CONNECTION_LOST);
    EXPECT_EQ(features_.get(Switch::StrobeEnable, on), ORVALIS_ERROR_CONNECTION_LOST);
    EXPECT_EQ(features_.getRegion(size), ORVALIS_ERROR_CONNECTION_LOST);
    EXPECT_EQ(features_.setRegion(size), ORVALIS_ERROR_CONNECTION_LOST);
    EXPECT_EQ(features_.fireSoftwareTrigger(true), ORVALIS_ERROR_CONNECTION_LOST);
}
