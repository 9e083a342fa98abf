// SPDX-License-Identifier: MIT
// The trigger of cameras with one for each entry of TriggerSelector, down to the registers.
#include "tests/library/genicam/DescribedFixture.h"

#include <gmock/gmock.h>

using namespace genicamtest;
using testing::ElementsAre;

namespace {

constexpr unsigned triggerModeAddress = 0x1200;
constexpr unsigned triggerSourceAddress = 0x1210;
constexpr unsigned activationAddress = 0x1220;
constexpr unsigned triggerDelayAddress = 0x1230;
constexpr unsigned fireAddress = 0x1240;
constexpr unsigned signalAddress = 0x1250;
constexpr unsigned pulseAddress = 0x1254;

enum Entry : std::uint32_t { AcquisitionStart, FrameStart, LineStart };

/// Three triggers, each with its own mode, source, activation and delay.
class DescribedTrigger : public Described {
protected:
    void SetUp() override
    {
        camera_.addEnumeration("TriggerSelector", selectorAddress,
                               {"AcquisitionStart", "FrameStart", "LineStart"});
        camera_.addEnumeration("TriggerMode", triggerModeAddress, {"Off", "On"}, "TriggerSelector");
        camera_.addEnumeration("TriggerSource", triggerSourceAddress, sources, "TriggerSelector");
        camera_.addEnumeration("TriggerActivation", activationAddress,
                               {"RisingEdge", "FallingEdge"}, "TriggerSelector");
        camera_.addInteger("TriggerDelay", triggerDelayAddress, 0, 4000, "TriggerSelector");
    }
    std::vector<std::uint32_t> entriesAt(unsigned address)
    {
        return {registerAt(address), registerAt(address + 4), registerAt(address + 8)};
    }
    void switchOn(Entry entry) { setRegisterAt(triggerModeAddress + 4 * entry, 1); }
    void present(Entry entry) { setRegisterAt(selectorAddress, entry); }
    bool fires()
    {
        setRegisterAt(fireAddress, 0);
        EXPECT_EQ(features_->fireSoftwareTrigger(true), ORVALIS_OK);
        return registerAt(fireAddress) == 1;
    }

    const std::vector<std::string> sources{"Software", "Line0", "All", "Any", "SoftwareSignal1"};
};

TEST_F(DescribedTrigger, isOnIfAnyEntryIsOn)
{
    open();
    EXPECT_FALSE(isOn(Switch::TriggerEnable));
    for (const Entry entry : {AcquisitionStart, FrameStart, LineStart}) {
        setRegisterAt(triggerModeAddress + 4 * entry, 1);
        EXPECT_TRUE(isOn(Switch::TriggerEnable)) << entry;
        EXPECT_EQ(registerAt(selectorAddress), AcquisitionStart) << "the selector is restored";
        setRegisterAt(triggerModeAddress + 4 * entry, 0);
    }
}

TEST_F(DescribedTrigger, switchedOnLeavesOnlyTheSelectedEntryOn)
{
    open();
    switchOn(AcquisitionStart);
    switchOn(LineStart);
    present(FrameStart);
    EXPECT_EQ(features_->set(Switch::TriggerEnable, true), ORVALIS_OK);
    EXPECT_THAT(entriesAt(triggerModeAddress), ElementsAre(0, 1, 0));
    EXPECT_EQ(registerAt(selectorAddress), FrameStart);
}

TEST_F(DescribedTrigger, switchedOffLeavesNoEntryOn)
{
    open();
    switchOn(AcquisitionStart);
    switchOn(LineStart);
    present(FrameStart);
    EXPECT_EQ(features_->set(Switch::TriggerEnable, false), ORVALIS_OK);
    EXPECT_THAT(entriesAt(triggerModeAddress), ElementsAre(0, 0, 0));
    EXPECT_EQ(registerAt(selectorAddress), FrameStart);
    EXPECT_FALSE(isOn(Switch::TriggerEnable));
}

TEST_F(DescribedTrigger, modeMovesTheSwitch)
{
    open();
    EXPECT_EQ(features_->set(Switch::TriggerEnable, true), ORVALIS_OK);
    EXPECT_EQ(features_->set(Choice::TriggerMode, "LineStart"), ORVALIS_OK);
    EXPECT_THAT(entriesAt(triggerModeAddress), ElementsAre(0, 0, 1));
    EXPECT_EQ(registerAt(selectorAddress), LineStart);
    EXPECT_EQ(chosen(Choice::TriggerMode), "LineStart");
    EXPECT_EQ(features_->set(Switch::TriggerEnable, false), ORVALIS_OK);
    EXPECT_EQ(features_->set(Choice::TriggerMode, "FrameStart"), ORVALIS_OK);
    EXPECT_THAT(entriesAt(triggerModeAddress), ElementsAre(0, 0, 0)) << "an off trigger stays off";
}

TEST_F(DescribedTrigger, namesAreInTheOrderOfTheCamerasDescription)
{
    open();
    std::vector<std::string> names;
    EXPECT_EQ(features_->list(Choice::TriggerMode, names), ORVALIS_OK);
    EXPECT_THAT(names, ElementsAre("AcquisitionStart", "FrameStart", "LineStart"));
    EXPECT_EQ(features_->list(Choice::TriggerSource, names), ORVALIS_OK);
    EXPECT_EQ(names, sources);
}

TEST_F(DescribedTrigger, modeThatIsNotOfferedChangesNothing)
{
    open();
    switchOn(FrameStart);
    EXPECT_EQ(features_->set(Choice::TriggerMode, "FrameEnd"), ORVALIS_ERROR_NOT_FOUND);
    EXPECT_THAT(entriesAt(triggerModeAddress), ElementsAre(0, 1, 0));
    EXPECT_EQ(registerAt(selectorAddress), AcquisitionStart);
}

TEST_F(Described, triggersMayShareOneSwitch)
{
    camera_.addEnumeration("TriggerSelector", selectorAddress, {"FrameStart", "LineStart"});
    camera_.addEnumeration("TriggerMode", triggerModeAddress, {"Off", "On"});
    open();
    EXPECT_EQ(features_->set(Switch::TriggerEnable, true), ORVALIS_OK);
    EXPECT_TRUE(isOn(Switch::TriggerEnable));
    EXPECT_EQ(features_->set(Switch::TriggerEnable, true), ORVALIS_OK);
    EXPECT_EQ(registerAt(triggerModeAddress), 1U);
    EXPECT_EQ(features_->set(Choice::TriggerMode, "LineStart"), ORVALIS_OK);
    EXPECT_EQ(registerAt(triggerModeAddress), 1U);
    EXPECT_EQ(features_->set(Switch::TriggerEnable, false), ORVALIS_OK);
    EXPECT_EQ(registerAt(triggerModeAddress), 0U);
    EXPECT_EQ(registerAt(selectorAddress), 1U);
}

TEST_F(DescribedTrigger, settingsAreThoseOfTheSelectedEntryOnly)
{
    open();
    EXPECT_EQ(features_->set(Choice::TriggerMode, "LineStart"), ORVALIS_OK);
    EXPECT_EQ(features_->set(Choice::TriggerSource, "Line0"), ORVALIS_OK);
    EXPECT_EQ(features_->set(Choice::TriggerPolarity, "FallingEdge"), ORVALIS_OK);
    EXPECT_EQ(features_->set(Number::TriggerDelay, 7), ORVALIS_OK);
    EXPECT_THAT(entriesAt(triggerSourceAddress), ElementsAre(0, 0, 1));
    EXPECT_THAT(entriesAt(activationAddress), ElementsAre(0, 0, 1));
    EXPECT_THAT(entriesAt(triggerDelayAddress), ElementsAre(0, 0, 7));
}

TEST_F(DescribedTrigger, firesForEverySourceThatSoftwareCanFire)
{
    camera_.addCommand("TriggerSoftware", fireAddress);
    open();
    switchOn(AcquisitionStart);
    for (const char *source : {"Software", "All", "Any"}) {
        EXPECT_EQ(features_->set(Choice::TriggerSource, source), ORVALIS_OK);
        EXPECT_TRUE(fires()) << source;
    }
    EXPECT_EQ(features_->set(Choice::TriggerSource, "Line0"), ORVALIS_OK);
    EXPECT_FALSE(fires()) << "a line does not come from software";
}

TEST_F(DescribedTrigger, firesTheSoftwareSignalThatTheTriggerWaitsFor)
{
    camera_.addCommand("TriggerSoftware", fireAddress);
    camera_.addEnumeration("SoftwareSignalSelector", signalAddress,
                           {"SoftwareSignal0", "SoftwareSignal1"});
    camera_.addNode("<Command Name=\"SoftwareSignalPulse\"><pValue>PulseRegister</pValue>"
                    "<CommandValue>1</CommandValue></Command>",
                    "SoftwareSignalPulse");
    camera_.addNode("<IntReg Name=\"PulseRegister\"><Address>4692</Address>" // pulseAddress
                    "<pIndex Offset=\"4\">SoftwareSignalSelectorRegister</pIndex>"
                    "<Length>4</Length><AccessMode>RW</AccessMode><pPort>Device</pPort>"
                    "<Endianess>BigEndian</Endianess></IntReg>");
    open();
    switchOn(AcquisitionStart);
    EXPECT_EQ(features_->set(Choice::TriggerSource, "SoftwareSignal1"), ORVALIS_OK);
    EXPECT_FALSE(fires()) << "with its own command";
    EXPECT_EQ(registerAt(pulseAddress), 0U);
    EXPECT_EQ(registerAt(pulseAddress + 4), 1U);
    EXPECT_EQ(registerAt(signalAddress), 0U) << "the selector is restored";
}

TEST_F(Described, triggerWithoutASelectorIsSwitchedAndFired)
{
    camera_.addEnumeration("TriggerMode", triggerModeAddress, {"Off", "On"});
    camera_.addCommand("TriggerSoftware", fireAddress);
    open();
    EXPECT_EQ(features_->fireSoftwareTrigger(true), ORVALIS_OK);
    EXPECT_EQ(registerAt(fireAddress), 0U) << "it is off";
    EXPECT_EQ(features_->set(Switch::TriggerEnable, true), ORVALIS_OK);
    EXPECT_EQ(registerAt(triggerModeAddress), 1U);
    EXPECT_EQ(features_->fireSoftwareTrigger(false), ORVALIS_OK);
    EXPECT_EQ(registerAt(fireAddress), 0U) << "nothing streams";
    EXPECT_EQ(features_->fireSoftwareTrigger(true), ORVALIS_OK);
    EXPECT_EQ(registerAt(fireAddress), 1U);
    EXPECT_EQ(features_->set(Switch::TriggerEnable, false), ORVALIS_OK);
    EXPECT_EQ(registerAt(triggerModeAddress), 0U);
}

TEST_F(DescribedTrigger, entryWithoutASwitchLeavesTheOthersAlone)
{
    camera_ = {};
    camera_.addEnumeration("TriggerSelector", selectorAddress, {"FrameStart", "ExposureEnd"});
    camera_.addNode("<IntSwissKnife Name=\"HasMode\">"
                    "<pVariable Name=\"S\">TriggerSelectorRegister</pVariable>"
                    "<Formula>S = 0</Formula></IntSwissKnife>");
    camera_.withNext("<pIsAvailable>HasMode</pIsAvailable>");
    camera_.addEnumeration("TriggerMode", triggerModeAddress, {"Off", "On"}, "TriggerSelector");
    open();
    EXPECT_EQ(features_->set(Switch::TriggerEnable, true), ORVALIS_OK);
    EXPECT_EQ(features_->set(Choice::TriggerMode, "ExposureEnd"), ORVALIS_OK);
    EXPECT_EQ(registerAt(selectorAddress), 1U);
    EXPECT_EQ(registerAt(triggerModeAddress), 1U);
    EXPECT_TRUE(isOn(Switch::TriggerEnable)) << "found at the entry that has one";
    EXPECT_EQ(features_->set(Switch::TriggerEnable, false), ORVALIS_OK);
    EXPECT_EQ(registerAt(triggerModeAddress), 0U);
}

TEST_F(DescribedTrigger, firesTheEntryThatIsOn)
{
    camera_.addCommand("TriggerSoftware", fireAddress);
    open();
    EXPECT_FALSE(fires()) << "no entry is on";
    switchOn(LineStart);
    EXPECT_TRUE(fires());
    EXPECT_EQ(registerAt(selectorAddress), AcquisitionStart) << "the selector is restored";
    setRegisterAt(triggerSourceAddress + 4 * LineStart, 1);
    EXPECT_FALSE(fires()) << "its source is a line";
}

} // namespace
