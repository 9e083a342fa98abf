// SPDX-License-Identifier: MIT
// Typed features on cameras that have only one of their names, through Aravis' GenICam engine: from
// the caller's number to the camera's register.
#include "tests/library/genicam/DescribedFixture.h"

#include <cmath>

using namespace genicamtest;

namespace {

struct Name {
    Number number;
    std::size_t place; ///< in the row of the table
    const orvalis::NumberNode &node() const { return orvalis::row(number).nodes[place]; }
};

std::vector<Name> allNames()
{
    std::vector<Name> names;
    for (int i = 0; i <= static_cast<int>(Number::StrobeDuration); ++i) {
        const auto number = static_cast<Number>(i);
        const auto &nodes = orvalis::row(number).nodes;
        for (std::size_t place = 0; place < nodes.size() && nodes[place].name; ++place) {
            names.push_back({number, place});
        }
    }
    return names;
}

class OneName : public Described, public testing::WithParamInterface<Name> {
protected:
    /// The register of the feature: colours have one each.
    unsigned addressOf(Number number) const
    {
        return number == Number::GreenGain  ? valueAddress + 4
               : number == Number::BlueGain ? valueAddress + 8
                                            : valueAddress;
    }
    bool isColour() const
    {
        return GetParam().number >= Number::RedGain && GetParam().number <= Number::BlueGain;
    }
    std::string selector() const { return isColour() ? "BalanceRatioSelector" : ""; }
    void describe()
    {
        if (isColour()) {
            camera_.addEnumeration("BalanceRatioSelector", selectorAddress,
                                   {"Red", "Green", "Blue"});
        }
    }
};

TEST_P(OneName, isAWholeNumber)
{
    describe();
    camera_.addInteger(GetParam().node().name, valueAddress, 1000, 200'000, selector());
    open();
    const double units = GetParam().node().unitsPerNodeUnit;
    EXPECT_EQ(features_->set(GetParam().number, 150'000 * units), ORVALIS_OK);
    EXPECT_EQ(registerAt(addressOf(GetParam().number)), 150'000U);
    EXPECT_EQ(read(GetParam().number).value, 150'000 * units);
    EXPECT_EQ(read(GetParam().number).minimum, 1000 * units);
    EXPECT_EQ(read(GetParam().number).maximum, 200'000 * units);
    EXPECT_EQ(features_->set(GetParam().number, 201'000 * units), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(registerAt(addressOf(GetParam().number)), 150'000U);
}

TEST_P(OneName, isAFloat)
{
    describe();
    camera_.addFloat(GetParam().node().name, valueAddress, 0, 200'000, selector());
    open();
    const double units = GetParam().node().unitsPerNodeUnit;
    EXPECT_EQ(features_->set(GetParam().number, 150'000 * units), ORVALIS_OK);
    EXPECT_EQ(floatAt(addressOf(GetParam().number)), 150'000.0F);
    setFloatAt(addressOf(GetParam().number), 2.75F);
    const bool whole = orvalis::row(GetParam().number).rounding == orvalis::Rounding::Integer;
    EXPECT_EQ(read(GetParam().number).value, whole ? std::round(2.75 * units) : 2.75);
    EXPECT_EQ(features_->set(GetParam().number, 201'000 * units), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(floatAt(addressOf(GetParam().number)), 2.75F);
}

INSTANTIATE_TEST_SUITE_P(Table, OneName, testing::ValuesIn(allNames()), [](const auto &name) {
    return std::string(name.param.node().name) + "_" +
           std::to_string(static_cast<int>(name.param.number));
});

TEST_F(Described, rawTimesAreMultipliedByTheCamerasTimeBase)
{
    camera_.addInteger("ExposureTimeRaw", valueAddress, 1, 4095);
    camera_.addFloat("ExposureTimeBaseAbs", valueAddress + 4, 1, 100);
    open();
    setFloatAt(valueAddress + 4, 20);
    EXPECT_EQ(features_->set(Number::Shutter, 1010), ORVALIS_OK);
    EXPECT_EQ(registerAt(valueAddress), 51U) << "the nearest one";
    EXPECT_EQ(read(Number::Shutter).value, 1020);
    EXPECT_EQ(read(Number::Shutter).maximum, 81900);
}

TEST_F(Described, everyNameOfTheFrameRateSwitchIsSwitchedOn)
{
    for (const char *name : {"AcquisitionFrameRateEnable", "AcquisitionFrameRateEnabled",
                             "AcquisitionFrameRateControlEnabled"}) {
        camera_ = {};
        camera_.addFloat("AcquisitionFrameRateAbs", valueAddress, 0, 100);
        camera_.addBoolean(name, switchAddress);
        open();
        EXPECT_EQ(registerAt(switchAddress), 0U) << name;
        EXPECT_EQ(features_->set(Number::FrameRate, 25), ORVALIS_OK) << name;
        EXPECT_EQ(registerAt(switchAddress), 1U) << name;
        EXPECT_EQ(floatAt(valueAddress), 25) << name;
    }
}

TEST_F(Described, strobeIsOnTheOutputAndItsTimesOnTheTimer)
{
    camera_.addEnumeration("LineSelector", selectorAddress, {"Line0", "Line1"});
    camera_.addEnumeration("LineSource", selectorAddress + 4,
                           {"Off", "ExposureActive", "Timer1Active"});
    camera_.addBoolean("LineInverter", switchAddress);
    camera_.addEnumeration("TimerSelector", selectorAddress + 8, {"Timer0", "Timer1"});
    camera_.addInteger("TimerDelayRaw", valueAddress, 0, 1000, "TimerSelector");
    camera_.addInteger("TimerDurationRaw", valueAddress + 16, 0, 1000, "TimerSelector");
    open();
    EXPECT_EQ(features_->set(Choice::StrobeMode, "Timer1Active"), ORVALIS_OK);
    EXPECT_EQ(registerAt(selectorAddress + 4), 2U);
    EXPECT_EQ(features_->set(Number::StrobeDelay, 30), ORVALIS_OK);
    EXPECT_EQ(features_->set(Number::StrobeDuration, 40), ORVALIS_OK);
    EXPECT_EQ(registerAt(valueAddress + 4), 30U);
    EXPECT_EQ(registerAt(valueAddress + 20), 40U);
    EXPECT_EQ(registerAt(selectorAddress + 8), 0U) << "the selector is restored";
    EXPECT_EQ(features_->set(Choice::StrobePolarity, "ActiveLow"), ORVALIS_OK);
    EXPECT_EQ(registerAt(switchAddress), 1U);
    EXPECT_EQ(features_->set(Switch::StrobeEnable, false), ORVALIS_OK);
    EXPECT_EQ(registerAt(selectorAddress + 4), 0U);
}

TEST_F(Described, noiseFilterIsThatOfTheTriggersLine)
{
    camera_.addEnumeration("TriggerSource", switchAddress, {"Software", "Line0", "Line1"});
    camera_.addEnumeration("LineSelector", selectorAddress, {"Line0", "Line1"});
    camera_.addInteger("LineDebouncerTimeRaw", valueAddress, 0, 100, "LineSelector");
    open();
    setRegisterAt(selectorAddress, 1);
    for (const std::uint32_t line : {0U, 1U}) {
        setRegisterAt(switchAddress, line + 1);
        EXPECT_EQ(features_->set(Number::TriggerNoiseFilter, 7 + line), ORVALIS_OK);
        EXPECT_EQ(registerAt(valueAddress + 4 * line), 7U + line);
        EXPECT_EQ(registerAt(selectorAddress), 1U) << "the selector is restored";
    }
    EXPECT_EQ(registerAt(valueAddress), 7U) << "the other line keeps its own";
}

TEST_F(Described, userSetsAreLoadedAndTheSelectorRestored)
{
    camera_.addEnumeration("UserSetSelector", selectorAddress, {"Default", "UserSet1"});
    camera_.addCommand("UserSetLoad", switchAddress);
    open();
    EXPECT_EQ(device_->writeRegister(selectorAddress, 1), ORVALIS_OK);
    EXPECT_EQ(features_->loadDefaults(), ORVALIS_OK);
    EXPECT_EQ(registerAt(switchAddress), 1U);
    EXPECT_EQ(registerAt(selectorAddress), 1U);
}

TEST_F(Described, missingFeaturesAreNotSupported)
{
    camera_.addInteger("Width", 0x100, 1, 2048);
    open();
    NumberValue value;
    for (int i = 0; i <= static_cast<int>(Number::StrobeDuration); ++i) {
        EXPECT_EQ(features_->get(static_cast<Number>(i), value), ORVALIS_ERROR_NOT_SUPPORTED) << i;
        EXPECT_EQ(features_->set(static_cast<Number>(i), 1), ORVALIS_ERROR_NOT_SUPPORTED) << i;
    }
    std::string name;
    for (int i = 0; i <= static_cast<int>(Choice::StrobePolarity); ++i) {
        EXPECT_EQ(features_->get(static_cast<Choice>(i), name), ORVALIS_ERROR_NOT_SUPPORTED) << i;
    }
    bool on = false;
    EXPECT_EQ(features_->get(Switch::TriggerEnable, on), ORVALIS_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(features_->get(Switch::StrobeEnable, on), ORVALIS_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(features_->loadDefaults(), ORVALIS_ERROR_NOT_SUPPORTED);
}

} // namespace
