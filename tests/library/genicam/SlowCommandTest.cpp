// SPDX-License-Identifier: MIT
// Commands that are still running when the camera has acknowledged them: their register keeps the
// command's value until they are done.
#include "tests/library/genicam/DescribedLibrary.h"

#include <atomic>
#include <future>

using namespace genicamtest;

namespace {

constexpr unsigned selectorAddress = 0x1000;
constexpr unsigned commandAddress = 0x1010;
constexpr unsigned userSet1 = 1;

class SlowCommand : public DescribedLibrary {
protected:
    /// `polls` is the number of reads of the register until the command is done.
    void openWith(unsigned polls)
    {
        camera.addEnumeration("UserSetSelector", selectorAddress, {"Default", "UserSet1"});
        camera.addCommand("UserSetLoad", commandAddress);
        camera.addCommand("UserSetSave", commandAddress);
        camera.addCommand("TriggerSoftware", commandAddress);
        camera.addNode("<Command Name=\"Blind\"><pValue>BlindRegister</pValue>"
                       "<CommandValue>1</CommandValue></Command>",
                       "Blind");
        camera.addNode("<IntReg Name=\"BlindRegister\"><Address>4128</Address><Length>4</Length>"
                       "<AccessMode>WO</AccessMode><pPort>Device</pPort>"
                       "<Endianess>BigEndian</Endianess></IntReg>");
        open();
        setWord(selectorAddress, userSet1);
        polls_ = polls;
        traffic->onWrite = [this](std::uint64_t address, std::uint32_t value) {
            if (address == commandAddress && value == 1) {
                left_ = polls_;
            } else if (address == selectorAddress && left_ > 0) {
                turnedTooEarly = true;
            }
        };
        traffic->onRead = [this](ArvDevice *device, std::uint64_t address) {
            if (address != commandAddress || left_ == 0) {
                return;
            }
            if (const auto first = std::exchange(onPoll, nullptr)) {
                first();
            }
            if (--left_ == 0) {
                FakeTraffic::poke(device, commandAddress, 0);
            }
        };
        traffic->reset();
    }
    bool done() const { return left_ == 0; }
    void finishSoon() { left_ = 1; }

    std::atomic<bool> turnedTooEarly{false};
    std::function<void()> onPoll; ///< at the first poll

private:
    unsigned polls_ = 0;
    std::atomic<unsigned> left_{0};
};

TEST_F(SlowCommand, isDoneWhenTheCallReturns)
{
    openWith(5);
    for (const char *name : {"UserSetLoad", "UserSetSave", "TriggerSoftware"}) {
        EXPECT_EQ(OrvalisSetNodeCommand(handle, name), ORVALIS_OK) << name;
        EXPECT_TRUE(done()) << name;
    }
    EXPECT_EQ(traffic->writes, 3U) << "each is sent once";
}

TEST_F(SlowCommand, isAwaitedBeforeTheSelectorIsRestored)
{
    openWith(5);
    EXPECT_EQ(OrvalisSetUserDefault(handle), ORVALIS_OK);
    EXPECT_TRUE(done());
    EXPECT_FALSE(turnedTooEarly);
    EXPECT_EQ(word(selectorAddress), userSet1) << "the selector is restored";
}

TEST_F(SlowCommand, locksTheSelectorMeanwhile)
{
    openWith(20);
    std::future<std::int32_t> other;
    std::promise<void> begun;
    onPoll = [&] {
        other = std::async(std::launch::async, [&] {
            begun.set_value();
            return OrvalisSetNodeEnum(handle, "UserSetSelector", "Default");
        });
        begun.get_future().wait();
    };
    EXPECT_EQ(OrvalisSetNodeCommand(handle, "UserSetLoad"), ORVALIS_OK);
    ASSERT_TRUE(other.valid());
    EXPECT_EQ(other.get(), ORVALIS_OK);
    EXPECT_FALSE(turnedTooEarly);
    EXPECT_EQ(word(selectorAddress), 0U);
}

/// The command is done when another thread has read a register.
TEST_F(SlowCommand, permitsRegisterAccessMeanwhile)
{
    openWith(0xFFFFFFFF);
    std::future<std::int32_t> other;
    onPoll = [&] {
        other = std::async(std::launch::async, [&] {
            std::uint32_t value = 0;
            const std::int32_t result = OrvalisReadRegister(handle, selectorAddress, &value);
            finishSoon();
            return result;
        });
    };
    EXPECT_EQ(OrvalisSetNodeCommand(handle, "UserSetLoad"), ORVALIS_OK);
    ASSERT_TRUE(other.valid());
    EXPECT_EQ(other.get(), ORVALIS_OK);
    EXPECT_TRUE(done());
}

TEST_F(SlowCommand, thatNeverEndsTimesOutAndIsNotAwaitedAgain)
{
    openWith(0xFFFFFFFF);
    const auto begin = Clock::now();
    EXPECT_EQ(OrvalisSetNodeCommand(handle, "TriggerSoftware"), ORVALIS_OK);
    EXPECT_LT(Clock::now() - begin, 60s);
    EXPECT_FALSE(done());
    traffic->reset();
    EXPECT_EQ(OrvalisSetNodeCommand(handle, "TriggerSoftware"), ORVALIS_OK);
    EXPECT_EQ(traffic->writes, 1U);
    EXPECT_LE(traffic->reads, 1U);
}

TEST_F(SlowCommand, withAWriteOnlyRegisterIsDoneAtOnce)
{
    openWith(1);
    EXPECT_EQ(OrvalisSetNodeCommand(handle, "Blind"), ORVALIS_OK);
    EXPECT_EQ(traffic->writes, 1U);
    EXPECT_EQ(traffic->reads, 0U);
}

} // namespace
