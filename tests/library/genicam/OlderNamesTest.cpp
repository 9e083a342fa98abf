// SPDX-License-Identifier: MIT
// Typed features on cameras that have them under one name alone, through Aravis' GenICam engine:
// from the number that a caller gives to the register of the camera.
#include "library/core/Features.h"
#include "tests/library/genicam/DescribedCamera.h"

#include <bit>
#include <cmath>

using namespace genicamtest;
using orvalis::Choice;
using orvalis::Features;
using orvalis::Number;
using orvalis::NumberValue;
using orvalis::Switch;

namespace {

constexpr unsigned valueAddress = 0x1000; // one for each entry of the selector
constexpr unsigned selectorAddress = 0x1100;
constexpr unsigned switchAddress = 0x1200;

class Described : public testing::Test {
protected:
    void open()
    {
        device_ = camera_.open(*backend_);
        ASSERT_TRUE(device_);
        features_ = std::make_unique<Features>(device_->nodes(), mutex_);
    }
    std::uint32_t registerAt(unsigned address)
    {
        std::uint32_t value = 0;
        EXPECT_EQ(device_->readRegister(address, value), ORVALIS_OK);
        return value;
    }
    float floatAt(unsigned address) { return std::bit_cast<float>(registerAt(address)); }
    void setFloatAt(unsigned address, float value)
    {
        EXPECT_EQ(device_->writeRegister(address, std::bit_cast<std::uint32_t>(value)), ORVALIS_OK);
    }
    NumberValue read(Number number)
    {
        NumberValue value;
        EXPECT_EQ(features_->get(number, value), ORVALIS_OK);
        return value;
    }

    DescribedCamera camera_;
    std::unique_ptr<Backend> backend_ = orvalis::makeGenicamBackend(true);
    std::unique_ptr<Device> device_;
    std::mutex mutex_;
    std::unique_ptr<Features> features_;
};

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
    /// The register that the feature is kept in: colours have one each.
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
    camera_.addInteger(GetParam().node().name, valueAddress, 1, 200, selector());
    open();
    const double units = GetParam().node().unitsPerNodeUnit;
    EXPECT_EQ(features_->set(GetParam().number, 150 * units), ORVALIS_OK);
    EXPECT_EQ(registerAt(addressOf(GetParam().number)), 150U);
    EXPECT_EQ(read(GetParam().number).value, 150 * units);
    EXPECT_EQ(read(GetParam().number).minimum, units);
    EXPECT_EQ(read(GetParam().number).maximum, 200 * units);
    EXPECT_EQ(features_->set(GetParam().number, 201 * units), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(registerAt(addressOf(GetParam().number)), 150U);
}

TEST_P(OneName, isAFloat)
{
    describe();
    camera_.addFloat(GetParam().node().name, valueAddress, 0, 200, selector());
    open();
    const double units = GetParam().node().unitsPerNodeUnit;
    EXPECT_EQ(features_->set(GetParam().number, 150 * units), ORVALIS_OK);
    EXPECT_EQ(floatAt(addressOf(GetParam().number)), 150.0F);
    setFloatAt(addressOf(GetParam().number), 2.75F);
    const bool whole = orvalis::row(GetParam().number).rounding == orvalis::Rounding::Integer;
    EXPECT_EQ(read(GetParam().number).value, whole ? std::round(2.75 * units) : 2.75);
    EXPECT_EQ(features_->set(GetParam().number, 201 * units), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_EQ(floatAt(addressOf(GetParam().number)), 2.75F);
}

INSTANTIATE_TEST_SUITE_P(Table, OneName, testing::ValuesIn(allNames()), [](const auto &name) {
    return std::string(name.param.node().name) + "_" +
           std::to_string(static_cast<int>(name.param.number));
});

TEST_F(Described, rawTimesAreInStepsThatTheCameraTells)
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

TEST_F(Described, everySpellingOfTheFrameRateSwitchIsPutOn)
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

TEST_F(Described, theStrobeIsOnTheOutputAndItsTimesOnTheTimerBehindIt)
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
    EXPECT_EQ(registerAt(selectorAddress + 8), 0U) << "the selector is put back";
    EXPECT_EQ(features_->set(Choice::StrobePolarity, "ActiveLow"), ORVALIS_OK);
    EXPECT_EQ(registerAt(switchAddress), 1U);
    EXPECT_EQ(features_->set(Switch::StrobeEnable, false), ORVALIS_OK);
    EXPECT_EQ(registerAt(selectorAddress + 4), 0U);
}

TEST_F(Described, theTriggerIsThatOfTheSelector)
{
    camera_.addEnumeration("TriggerSelector", selectorAddress, {"FrameStart", "LineStart"});
    camera_.addEnumeration("TriggerMode", switchAddress, {"Off", "On"});
    camera_.addEnumeration("TriggerSource", switchAddress + 4, {"Software", "Line0"});
    camera_.addEnumeration("TriggerActivation", switchAddress + 8, {"RisingEdge", "FallingEdge"});
    camera_.addEnumeration("LineSelector", selectorAddress + 4, {"Line0", "Line1"});
    camera_.addInteger("LineDebouncerTimeRaw", valueAddress, 0, 100, "LineSelector");
    open();
    EXPECT_EQ(features_->set(Switch::TriggerEnable, true), ORVALIS_OK);
    EXPECT_EQ(features_->set(Choice::TriggerMode, "LineStart"), ORVALIS_OK);
    EXPECT_EQ(features_->set(Choice::TriggerSource, "Line0"), ORVALIS_OK);
    EXPECT_EQ(features_->set(Choice::TriggerPolarity, "FallingEdge"), ORVALIS_OK);
    EXPECT_EQ(registerAt(switchAddress), 1U);
    EXPECT_EQ(registerAt(selectorAddress), 1U);
    EXPECT_EQ(registerAt(switchAddress + 4), 1U);
    EXPECT_EQ(registerAt(switchAddress + 8), 1U);
    EXPECT_EQ(device_->writeRegister(selectorAddress + 4, 1), ORVALIS_OK);
    EXPECT_EQ(features_->set(Number::TriggerNoiseFilter, 7), ORVALIS_OK);
    EXPECT_EQ(registerAt(valueAddress), 7U) << "of the line that triggers come from";
    EXPECT_EQ(registerAt(selectorAddress + 4), 1U) << "the selector is put back";
}

TEST_F(Described, userSetsAreLoadedAndTheSelectorPutBack)
{
    camera_.addEnumeration("UserSetSelector", selectorAddress, {"Default", "UserSet1"});
    camera_.addCommand("UserSetLoad", switchAddress);
    open();
    EXPECT_EQ(device_->writeRegister(selectorAddress, 1), ORVALIS_OK);
    EXPECT_EQ(features_->loadDefaults(), ORVALIS_OK);
    EXPECT_EQ(registerAt(switchAddress), 1U);
    EXPECT_EQ(registerAt(selectorAddress), 1U);
}

TEST_F(Described, whatACameraLacksIsNotSupported)
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
