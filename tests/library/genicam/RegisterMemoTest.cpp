// SPDX-License-Identifier: MIT
// Registers are cached for one call at most, and never after a write.
#include "tests/library/genicam/DescribedLibrary.h"

using namespace genicamtest;

namespace {

constexpr unsigned memoSelectorAddress = 0x1000;
constexpr unsigned valueAddress = 0x1010; ///< one for each of three entries
constexpr unsigned stateAddress = 0x1020;

class RegisterMemo : public DescribedLibrary {
protected:
    void openSelected()
    {
        camera.addEnumeration("TriggerSelector", memoSelectorAddress,
                              {"AcquisitionStart", "FrameStart", "LineStart"});
        camera.addEnumeration("TriggerMode", valueAddress, {"Off", "On"}, "TriggerSelector");
        camera.withNext("<pIsAvailable>State</pIsAvailable>");
        camera.addInteger("Guarded", stateAddress + 4, 0, 100);
        camera.addNode("<IntReg Name=\"State\"><Address>4128</Address><Length>4</Length>"
                       "<AccessMode>RO</AccessMode><pPort>Device</pPort>"
                       "<Endianess>BigEndian</Endianess></IntReg>");
        open();
        FakeTraffic *const watched = traffic.get();
        watched->onRead = [this](ArvDevice *opened, std::uint64_t) { device = opened; };
        static_cast<void>(word(memoSelectorAddress));
        watched->reset();
    }
    std::string mode()
    {
        char name[ORVALIS_TEXT_SIZE] = {};
        EXPECT_EQ(OrvalisGetNodeString(handle, "TriggerMode", name), ORVALIS_OK);
        return name;
    }
    /// Changes a register as the camera itself would.
    void change(unsigned address, std::uint32_t value) const
    {
        FakeTraffic::poke(device, address, value);
    }

    ArvDevice *device = nullptr;
};

TEST_F(RegisterMemo, nextCallReadsWhatTheCameraChanged)
{
    openSelected();
    EXPECT_EQ(mode(), "Off");
    change(valueAddress, 1);
    EXPECT_EQ(mode(), "On");
    change(memoSelectorAddress, 1);
    EXPECT_EQ(mode(), "Off");
    change(valueAddress + 4, 1);
    EXPECT_EQ(mode(), "On");
    ONodeInfo info{};
    EXPECT_EQ(OrvalisGetNodeInfo(handle, "Guarded", &info), ORVALIS_OK);
    EXPECT_EQ(info.accessMode, ORVALIS_ACCESS_NOT_AVAILABLE);
    change(stateAddress, 1);
    EXPECT_EQ(OrvalisGetNodeInfo(handle, "Guarded", &info), ORVALIS_OK);
    EXPECT_EQ(info.accessMode, ORVALIS_ACCESS_READ_WRITE);
}

/// Without the memo, the engine would return the value of the first entry for all of them.
TEST_F(RegisterMemo, eachEntryOfASelectorHasItsOwnValue)
{
    openSelected();
    change(valueAddress + 8, 1);
    bool on = false;
    EXPECT_EQ(OrvalisGetTriggerEnable(handle, &on), ORVALIS_OK);
    EXPECT_TRUE(on) << "the third one is";
    for (const char *entry : {"AcquisitionStart", "FrameStart", "LineStart", "FrameStart"}) {
        EXPECT_EQ(OrvalisSetNodeEnum(handle, "TriggerSelector", entry), ORVALIS_OK);
        EXPECT_EQ(mode(), std::string(entry) == "LineStart" ? "On" : "Off") << entry;
    }
}

TEST_F(RegisterMemo, writtenValuesAreReadBack)
{
    openSelected();
    EXPECT_EQ(mode(), "Off");
    setWord(valueAddress, 1);
    EXPECT_EQ(mode(), "On");
    EXPECT_EQ(OrvalisSetNodeEnum(handle, "TriggerMode", "Off"), ORVALIS_OK);
    EXPECT_EQ(mode(), "Off");
    EXPECT_EQ(word(valueAddress), 0U);
}

TEST_F(RegisterMemo, oneCallReadsARegisterOnce)
{
    openSelected();
    change(stateAddress, 1);
    OIntNode node{};
    EXPECT_EQ(OrvalisGetNodeInt(handle, "Guarded", &node), ORVALIS_OK);
    EXPECT_EQ(traffic->readsAt[stateAddress], 1U);
    char text[ORVALIS_TEXT_SIZE] = {};
    traffic->reset();
    EXPECT_EQ(OrvalisGetNodeString(handle, "Guarded", text), ORVALIS_OK);
    EXPECT_EQ(traffic->readsAt[stateAddress], 1U) << "what it is, and what it holds";
    EXPECT_EQ(traffic->readsAt[stateAddress + 4], 1U);
}

TEST_F(RegisterMemo, itsOwnNodeIsHidden)
{
    openSelected();
    ONodeInfo info{};
    EXPECT_EQ(OrvalisGetNodeInfo(handle, "OrvalisRegisterEpoch", &info), ORVALIS_ERROR_NOT_FOUND);
}

} // namespace
