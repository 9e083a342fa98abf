// SPDX-License-Identifier: MIT
// The strobe of cameras that select it by line, down to the registers.
#include "tests/library/genicam/DescribedFixture.h"

#include <gmock/gmock.h>

using namespace genicamtest;
using testing::ElementsAre;

namespace {

constexpr unsigned strobeModeAddress = 0x1200;
constexpr unsigned strobeEnableAddress = 0x1210;
constexpr unsigned strobeSourceAddress = 0x1220;
constexpr unsigned inverterAddress = 0x1230;
constexpr unsigned strobeDelayAddress = 0x1240;
constexpr unsigned durationAddress = 0x1250;

enum LineMode : std::uint32_t { Input, Output, Strobe };

class DescribedStrobe : public Described {
protected:
    void describeLines()
    {
        camera_.addEnumeration("LineSelector", selectorAddress, {"Line0", "Line1", "Line2"});
        camera_.addEnumeration("LineMode", strobeModeAddress, {"Input", "Output", "Strobe"},
                               "LineSelector");
    }
    void setModes(LineMode first, LineMode second, LineMode third)
    {
        setRegisterAt(strobeModeAddress, first);
        setRegisterAt(strobeModeAddress + 4, second);
        setRegisterAt(strobeModeAddress + 8, third);
    }
    std::vector<std::uint32_t> linesAt(unsigned address)
    {
        return {registerAt(address), registerAt(address + 4), registerAt(address + 8)};
    }
    void present(std::uint32_t line) { setRegisterAt(selectorAddress, line); }
};

TEST_F(DescribedStrobe, isOnTheLineInStrobeMode)
{
    describeLines();
    camera_.addBoolean("StrobeEnable", strobeEnableAddress, "LineSelector");
    camera_.addBoolean("LineInverter", inverterAddress, "LineSelector");
    camera_.addInteger("StrobeLineDelay", strobeDelayAddress, 0, 3900, "LineSelector");
    camera_.addInteger("StrobeLineDuration", durationAddress, 0, 50000, "LineSelector");
    open();
    setModes(Input, Output, Strobe);
    for (const std::uint32_t line : {0U, 1U, 2U}) {
        present(line);
        for (const unsigned address : {strobeEnableAddress, inverterAddress, strobeDelayAddress}) {
            setRegisterAt(address + 8, 0);
        }
        EXPECT_FALSE(isOn(Switch::StrobeEnable));
        EXPECT_EQ(features_->set(Switch::StrobeEnable, true), ORVALIS_OK);
        EXPECT_EQ(features_->set(Choice::StrobePolarity, "ActiveLow"), ORVALIS_OK);
        EXPECT_EQ(features_->set(Number::StrobeDelay, 30), ORVALIS_OK);
        EXPECT_EQ(features_->set(Number::StrobeDuration, 400), ORVALIS_OK);
        EXPECT_THAT(linesAt(strobeEnableAddress), ElementsAre(0, 0, 1));
        EXPECT_THAT(linesAt(inverterAddress), ElementsAre(0, 0, 1));
        EXPECT_THAT(linesAt(strobeDelayAddress), ElementsAre(0, 0, 30));
        EXPECT_THAT(linesAt(durationAddress), ElementsAre(0, 0, 400));
        EXPECT_TRUE(isOn(Switch::StrobeEnable));
        EXPECT_EQ(registerAt(selectorAddress), line) << "the selector is restored";
    }
}

TEST_F(DescribedStrobe, withItsOwnSwitchIsOnTheFirstOutput)
{
    describeLines();
    camera_.addBoolean("StrobeEnable", strobeEnableAddress, "LineSelector");
    camera_.addInteger("StrobeDelay", strobeDelayAddress, 0, 3900, "LineSelector");
    camera_.addInteger("StrobeDuration", durationAddress, 0, 50000, "LineSelector");
    open();
    setModes(Input, Output, Output);
    EXPECT_EQ(features_->set(Switch::StrobeEnable, true), ORVALIS_OK);
    EXPECT_EQ(features_->set(Number::StrobeDelay, 30), ORVALIS_OK);
    EXPECT_EQ(features_->set(Number::StrobeDuration, 400), ORVALIS_OK);
    EXPECT_THAT(linesAt(strobeEnableAddress), ElementsAre(0, 1, 0));
    EXPECT_THAT(linesAt(strobeDelayAddress), ElementsAre(0, 30, 0));
    EXPECT_THAT(linesAt(durationAddress), ElementsAre(0, 400, 0));
}

TEST_F(DescribedStrobe, staysOnItsLineWhateverIsSelected)
{
    describeLines();
    camera_.addEnumeration("LineSource", strobeSourceAddress,
                           {"Off", "ExposureActive", "UserOutput1"}, "LineSelector");
    open();
    setModes(Input, Output, Output);
    present(2);
    EXPECT_EQ(features_->set(Choice::StrobeMode, "ExposureActive"), ORVALIS_OK);
    EXPECT_THAT(linesAt(strobeSourceAddress), ElementsAre(0, 1, 0)) << "the first output";
    EXPECT_TRUE(isOn(Switch::StrobeEnable));
    setModes(Input, Output, Strobe);
    EXPECT_FALSE(isOn(Switch::StrobeEnable)) << "a line in the mode of a strobe comes first";
    EXPECT_EQ(features_->set(Switch::StrobeEnable, true), ORVALIS_OK);
    EXPECT_THAT(linesAt(strobeSourceAddress), ElementsAre(0, 1, 1));
}

TEST_F(DescribedStrobe, neverDrivesAnInput)
{
    describeLines();
    camera_.addEnumeration("LineSource", strobeSourceAddress, {"Off", "ExposureActive"},
                           "LineSelector");
    open();
    setModes(Input, Input, Input);
    EXPECT_EQ(features_->set(Choice::StrobeMode, "ExposureActive"), ORVALIS_ERROR_NOT_SUPPORTED);
    EXPECT_EQ(features_->set(Switch::StrobeEnable, true), ORVALIS_ERROR_NOT_SUPPORTED);
    EXPECT_THAT(linesAt(strobeSourceAddress), ElementsAre(0, 0, 0));
}

TEST_F(DescribedStrobe, ofAFlashHasItsOwnSourceAndTimes)
{
    camera_.addEnumeration("FlashReference", strobeSourceAddress, {"Off", "ExposureActive"});
    camera_.addInteger("FlashStartDelay", strobeDelayAddress, 0, 3900);
    camera_.addInteger("FlashDuration", durationAddress, 0, 50000);
    open();
    EXPECT_FALSE(isOn(Switch::StrobeEnable));
    EXPECT_EQ(features_->set(Switch::StrobeEnable, true), ORVALIS_OK);
    EXPECT_EQ(registerAt(strobeSourceAddress), 1U);
    EXPECT_EQ(chosen(Choice::StrobeMode), "ExposureActive");
    EXPECT_EQ(features_->set(Number::StrobeDelay, 30), ORVALIS_OK);
    EXPECT_EQ(features_->set(Number::StrobeDuration, 400), ORVALIS_OK);
    EXPECT_EQ(registerAt(strobeDelayAddress), 30U);
    EXPECT_EQ(registerAt(durationAddress), 400U);
    EXPECT_EQ(features_->set(Switch::StrobeEnable, false), ORVALIS_OK);
    EXPECT_EQ(registerAt(strobeSourceAddress), 0U);
}

/// A strobe with its own source, which one of several outputs passes to the lamp.
class DescribedSyncOut : public Described {
protected:
    void SetUp() override
    {
        camera_.addEnumeration("StrobeSource", strobeSourceAddress, {"FrameTrigger", "Exposing"});
        camera_.addEnumeration("StrobeDurationMode", strobeModeAddress, {"Source", "Controlled"});
        camera_.addInteger("StrobeDelay", strobeDelayAddress, 0, 3900);
        camera_.addInteger("StrobeDuration", durationAddress, 0, 50000);
        camera_.addEnumeration("SyncOutSelector", selectorAddress, {"SyncOut1", "SyncOut2"});
        camera_.addEnumeration("SyncOutSource", strobeEnableAddress, {"GPO", "Exposing", "Strobe1"},
                               "SyncOutSelector");
        camera_.addEnumeration("SyncOutPolarity", inverterAddress, {"Normal", "Invert"},
                               "SyncOutSelector");
        open();
    }
};

TEST_F(DescribedSyncOut, isOnWhileTheStrobeDrivesAnOutput)
{
    setRegisterAt(strobeEnableAddress, 1);
    EXPECT_FALSE(isOn(Switch::StrobeEnable)) << "driven by something else";
    setRegisterAt(strobeEnableAddress + 4, 2);
    EXPECT_TRUE(isOn(Switch::StrobeEnable));
    EXPECT_EQ(features_->set(Switch::StrobeEnable, false), ORVALIS_OK);
    EXPECT_EQ(registerAt(strobeEnableAddress + 4), 0U) << "general purpose";
    EXPECT_EQ(registerAt(strobeEnableAddress), 1U) << "the other output is not the strobe's";
    EXPECT_FALSE(isOn(Switch::StrobeEnable));
    EXPECT_EQ(registerAt(selectorAddress), 0U) << "the selector is restored";
}

TEST_F(DescribedSyncOut, isSwitchedOnAtTheSelectedOutput)
{
    setRegisterAt(selectorAddress, 1);
    EXPECT_EQ(features_->set(Switch::StrobeEnable, true), ORVALIS_OK);
    EXPECT_EQ(registerAt(strobeEnableAddress), 0U);
    EXPECT_EQ(registerAt(strobeEnableAddress + 4), 2U);
}

TEST_F(DescribedSyncOut, hasItsSourceAndThePolarityOfItsOutput)
{
    setRegisterAt(strobeEnableAddress + 4, 2);
    EXPECT_EQ(features_->set(Choice::StrobeMode, "Exposing"), ORVALIS_OK);
    EXPECT_EQ(registerAt(strobeSourceAddress), 1U);
    EXPECT_EQ(features_->set(Choice::StrobePolarity, "Invert"), ORVALIS_OK);
    EXPECT_EQ(registerAt(inverterAddress), 0U);
    EXPECT_EQ(registerAt(inverterAddress + 4), 1U);
}

TEST_F(DescribedSyncOut, usesItsDurationOnceThatIsChanged)
{
    setRegisterAt(durationAddress, 500);
    EXPECT_EQ(features_->set(Number::StrobeDuration, 500), ORVALIS_OK);
    EXPECT_EQ(registerAt(strobeModeAddress), 0U) << "a panel that sends back what it has read";
    EXPECT_EQ(features_->set(Number::StrobeDuration, 750), ORVALIS_OK);
    EXPECT_EQ(registerAt(strobeModeAddress), 1U);
    EXPECT_EQ(registerAt(durationAddress), 750U);
}

} // namespace
