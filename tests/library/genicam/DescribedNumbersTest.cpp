// SPDX-License-Identifier: MIT
// Numbers that depend on other nodes: a switch, a selector, a unit, a bounding size.
#include "tests/library/genicam/DescribedFixture.h"

using namespace genicamtest;

namespace {

constexpr unsigned rateAddress = 0x1300;
constexpr unsigned rateEnableAddress = 0x1310;
constexpr unsigned autoAddress = 0x1314;

class DescribedRate : public Described {
protected:
    /// Describes a frame rate from 1 to 100, with value 10 and the state elements `state`.
    void describe(const std::string &state)
    {
        camera_.addBoolean("AcquisitionFrameRateEnable", rateEnableAddress);
        camera_.withNext(state);
        camera_.addFloat("AcquisitionFrameRate", rateAddress, 1, 100);
        open();
        setFloatAt(rateAddress, 10);
    }
    void expectReadEnabledAndSet()
    {
        const NumberValue rate = read(Number::FrameRate);
        EXPECT_EQ(rate.value, 10);
        EXPECT_EQ(rate.minimum, 1);
        EXPECT_EQ(rate.maximum, 100);
        EXPECT_EQ(registerAt(rateEnableAddress), 0U) << "reading switches nothing";
        EXPECT_EQ(features_->set(Number::FrameRate, 101), ORVALIS_ERROR_OUT_OF_RANGE);
        EXPECT_EQ(registerAt(rateEnableAddress), 0U) << "a refused rate switches nothing";
        EXPECT_EQ(features_->set(Number::FrameRate, 25), ORVALIS_OK);
        EXPECT_EQ(registerAt(rateEnableAddress), 1U);
        EXPECT_EQ(floatAt(rateAddress), 25);
        EXPECT_EQ(read(Number::FrameRate).value, 25);
    }
};

TEST_F(DescribedRate, thatIsNotAvailableBeforeItIsEnabled)
{
    describe("<pIsAvailable>AcquisitionFrameRateEnableRegister</pIsAvailable>");
    expectReadEnabledAndSet();
}

TEST_F(DescribedRate, thatIsLockedBeforeItIsEnabled)
{
    camera_.addNode("<IntSwissKnife Name=\"NotEnabled\">"
                    "<pVariable Name=\"ON\">AcquisitionFrameRateEnableRegister</pVariable>"
                    "<Formula>ON = 0</Formula></IntSwissKnife>");
    describe("<pIsLocked>NotEnabled</pIsLocked>");
    expectReadEnabledAndSet();
}

TEST_F(DescribedRate, thatIsNotAvailableForAnotherReasonIsNotSupported)
{
    camera_.addBoolean("Other", autoAddress);
    describe("<pIsAvailable>OtherRegister</pIsAvailable>");
    setRegisterAt(rateEnableAddress, 1);
    NumberValue rate;
    EXPECT_EQ(features_->get(Number::FrameRate, rate), ORVALIS_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(features_->set(Number::FrameRate, 25), ORVALIS_ERROR_NOT_SUPPORTED);
}

TEST_F(DescribedRate, thatCannotBeSetRestoresItsSwitch)
{
    camera_.addBoolean("Other", autoAddress);
    describe("<pIsAvailable>OtherRegister</pIsAvailable>");
    EXPECT_EQ(features_->set(Number::FrameRate, 25), ORVALIS_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(registerAt(rateEnableAddress), 0U);
}

TEST_F(DescribedRate, whoseAutomaticAppearsWithItsSwitch)
{
    camera_.addBoolean("AcquisitionFrameRateEnabled", rateEnableAddress);
    camera_.withNext("<pIsAvailable>AcquisitionFrameRateEnabledRegister</pIsAvailable>");
    camera_.addEnumeration("AcquisitionFrameRateAuto", autoAddress, {"Off", "Continuous"});
    camera_.withNext("<pIsLocked>AcquisitionFrameRateAutoRegister</pIsLocked>");
    camera_.addFloat("AcquisitionFrameRate", rateAddress, 1, 100);
    open();
    setFloatAt(rateAddress, 10);
    setRegisterAt(autoAddress, 1);
    EXPECT_EQ(features_->set(Number::FrameRate, 25), ORVALIS_OK);
    EXPECT_EQ(registerAt(rateEnableAddress), 1U);
    EXPECT_EQ(registerAt(autoAddress), 0U);
    EXPECT_EQ(floatAt(rateAddress), 25);
}

TEST_F(DescribedRate, whoseSwitchIsAMode)
{
    camera_.addEnumeration("AcquisitionFrameRateMode", rateEnableAddress, {"Off", "Basic"});
    camera_.addFloat("AcquisitionFrameRate", rateAddress, 1, 100);
    open();
    EXPECT_EQ(features_->set(Number::FrameRate, 25), ORVALIS_OK);
    EXPECT_EQ(registerAt(rateEnableAddress), 1U);
}

TEST_F(Described, timesAreConvertedFromTheirNodesUnit)
{
    const struct {
        const char *unit;
        double microseconds;
    } units[] = {{"ns", 0.001}, {"us", 1},  {"\xC2\xB5s", 1}, {"\xCE\xBCs", 1},
                 {"ms", 1000},  {"s", 1e6}, {"", 1},          {"Steps", 1}};
    for (const auto &[unit, microseconds] : units) {
        camera_ = {};
        camera_.withNext(std::string("<Unit>") + unit + "</Unit>");
        camera_.addFloat("ExposureTime", valueAddress, 0, 20000);
        open();
        setFloatAt(valueAddress, 2000);
        EXPECT_EQ(read(Number::Shutter).value, 2000 * microseconds) << unit;
        EXPECT_EQ(read(Number::Shutter).maximum, 20000 * microseconds) << unit;
        EXPECT_EQ(features_->set(Number::Shutter, 1000 * microseconds), ORVALIS_OK) << unit;
        EXPECT_FLOAT_EQ(floatAt(valueAddress), 1000) << unit;
    }
}

TEST_F(Described, glitchFilterOfTheTriggersInputIsInNanoseconds)
{
    camera_.addEnumeration("TriggerSource", switchAddress, {"Software", "Line1", "Line2"});
    camera_.addEnumeration("SyncInSelector", selectorAddress, {"SyncIn1", "SyncIn2"});
    camera_.addInteger("SyncInGlitchFilter", valueAddress, 0, 50000, "SyncInSelector");
    open();
    setRegisterAt(switchAddress, 2);
    EXPECT_EQ(features_->set(Number::TriggerNoiseFilter, 12), ORVALIS_OK);
    EXPECT_EQ(registerAt(valueAddress), 0U);
    EXPECT_EQ(registerAt(valueAddress + 4), 12000U);
    EXPECT_EQ(read(Number::TriggerNoiseFilter).maximum, 50);
    EXPECT_EQ(registerAt(selectorAddress), 0U) << "the selector is restored";
}

TEST_F(Described, lineFilterAgainstShortPulsesKeepsItsUnits)
{
    camera_.addEnumeration("TriggerSource", switchAddress, {"Software", "Line0", "Line1"});
    camera_.addEnumeration("LineSelector", selectorAddress, {"Line0", "Line1"});
    camera_.addEnumeration("LineFilterSelector", selectorAddress + 4, {"Debounce", "Deglitch"});
    camera_.addNode("<Integer Name=\"LineFilterWidth\"><pValue>WidthRegister</pValue>"
                    "<Min>0</Min><Max>4000</Max></Integer>",
                    "LineFilterWidth");
    camera_.addNode("<IntReg Name=\"WidthRegister\"><Address>4096</Address>" // valueAddress
                    "<pIndex Offset=\"8\">LineSelectorRegister</pIndex>"
                    "<pIndex Offset=\"4\">LineFilterSelectorRegister</pIndex><Length>4</Length>"
                    "<AccessMode>RW</AccessMode><pPort>Device</pPort>"
                    "<Endianess>BigEndian</Endianess></IntReg>");
    open();
    setRegisterAt(switchAddress, 2);
    EXPECT_EQ(features_->set(Number::TriggerNoiseFilter, 12), ORVALIS_OK);
    EXPECT_EQ(registerAt(valueAddress + 12), 12U) << "Line1, Deglitch";
    EXPECT_EQ(registerAt(valueAddress + 8), 0U);
    EXPECT_EQ(registerAt(selectorAddress), 0U) << "the selector is restored";
    EXPECT_EQ(registerAt(selectorAddress + 4), 0U) << "the selector is restored";
}

TEST_F(Described, bothTimesOfADebouncerAreSet)
{
    camera_.addEnumeration("TriggerSource", switchAddress, {"Software", "Line0", "Line1"});
    camera_.addEnumeration("LineSelector", selectorAddress, {"Line0", "Line1"});
    camera_.addFloat("LineDebouncerHighTimeAbs", valueAddress, 0, 1000, "LineSelector");
    camera_.addFloat("LineDebouncerLowTimeAbs", valueAddress + 8, 0, 500, "LineSelector");
    open();
    setRegisterAt(switchAddress, 2);
    EXPECT_EQ(features_->set(Number::TriggerNoiseFilter, 12), ORVALIS_OK);
    EXPECT_EQ(floatAt(valueAddress + 4), 12);
    EXPECT_EQ(floatAt(valueAddress + 12), 12);
    EXPECT_EQ(features_->set(Number::TriggerNoiseFilter, 700), ORVALIS_OK);
    EXPECT_EQ(floatAt(valueAddress + 4), 700);
    EXPECT_EQ(floatAt(valueAddress + 12), 500) << "clamped to its bounds";
    EXPECT_EQ(floatAt(valueAddress), 0);
}

TEST_F(Described, largestSizeFollowsBinningAndDecimation)
{
    for (const char *name : {"Width", "Height"}) {
        const std::string axis = name[0] == 'W' ? "Horizontal" : "Vertical";
        const unsigned address = name[0] == 'W' ? 0x1400 : 0x1500;
        camera_.addInteger("Sensor" + std::string(name), address, 1, 4096);
        camera_.addInteger("Binning" + axis, address + 4, 1, 4);
        camera_.addInteger("Decimation" + axis, address + 8, 1, 4);
        camera_.addNode("<IntSwissKnife Name=\"" + std::string(name) + "Formula\">" +
                        "<pVariable Name=\"S\">Sensor" + name + "</pVariable>" +
                        "<pVariable Name=\"B\">Binning" + axis + "</pVariable>" +
                        "<pVariable Name=\"D\">Decimation" + axis + "</pVariable>" +
                        "<Formula>S / (B * D)</Formula></IntSwissKnife>");
        camera_.addNode("<Integer Name=\"" + std::string(name) + "Max\"><pValue>" + name +
                            "Formula</pValue></Integer>",
                        std::string(name) + "Max");
        camera_.addInteger(name, address + 12, 1, 4096);
        camera_.addInteger(name[0] == 'W' ? "OffsetX" : "OffsetY", address + 16, 0, 4096);
    }
    open();
    for (const unsigned address : {0x1400U, 0x1500U}) {
        setRegisterAt(address, address == 0x1400 ? 2048 : 1024);
        setRegisterAt(address + 4, 1);
        setRegisterAt(address + 8, 1);
        setRegisterAt(address + 12, 512);
    }
    OSizeInfo size{};
    EXPECT_EQ(features_->getRegion(size), ORVALIS_OK);
    EXPECT_EQ(size.maxWidth, 2048);
    EXPECT_EQ(size.maxHeight, 1024);
    setRegisterAt(0x1404, 2);
    setRegisterAt(0x1508, 4);
    EXPECT_EQ(features_->getRegion(size), ORVALIS_OK);
    EXPECT_EQ(size.maxWidth, 1024) << "binned";
    EXPECT_EQ(size.maxHeight, 256) << "decimated";
}

} // namespace
