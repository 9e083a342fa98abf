// SPDX-License-Identifier: MIT
// Triggers of an open camera.
#include "tests/library/simulated/Bench.h"

namespace orvalis::test {
namespace {

using namespace std::chrono_literals;

class Triggers : public Bench {
protected:
    void SetUp() override
    {
        Bench::SetUp();
        open(kFast);
        region(0, 0, 64, 32);
        set("FrameNumberOverlay", true);
        set("TriggerMode", "On");
    }
    bool silent()
    {
        RawImage image;
        return camera_->nextImage(image, Clock::now() + 60ms) == ORVALIS_ERROR_TIMEOUT;
    }
    void fire() { EXPECT_EQ(nodes().execute("TriggerSoftware"), ORVALIS_OK); }
};

TEST_F(Triggers, startOneFrameEach)
{
    ASSERT_EQ(start(), ORVALIS_OK);
    EXPECT_TRUE(silent());
    for (std::uint32_t i = 0; i < 5; ++i) {
        fire();
        EXPECT_EQ(frameNumber(next()), i);
        EXPECT_TRUE(silent());
    }
}

TEST_F(Triggers, inQuickSuccessionAreQueued)
{
    ASSERT_EQ(start(), ORVALIS_OK);
    for (int i = 0; i < 5; ++i)
        fire();
    for (std::uint32_t i = 0; i < 5; ++i)
        EXPECT_EQ(frameNumber(next()), i);
    EXPECT_TRUE(silent());
}

TEST_F(Triggers, areIgnoredWhileTheCameraDoesNotWait)
{
    fire(); // no stream
    ASSERT_EQ(start(), ORVALIS_OK);
    EXPECT_TRUE(silent());
    set("TriggerSource", "Line0");
    set("SimulationLine0Rate", 0.1);
    fire(); // another source
    set("TriggerSource", "Software");
    EXPECT_TRUE(silent());
}

TEST_F(Triggers, giveBurstsOnDemand)
{
    set("TriggerSelector", "FrameBurstStart");
    set("AcquisitionBurstFrameCount", 4);
    ASSERT_EQ(start(), ORVALIS_OK);
    fire();
    for (std::uint32_t i = 0; i < 4; ++i)
        EXPECT_EQ(frameNumber(next()), i);
    EXPECT_TRUE(silent());
    set("TriggerSelector", "FrameStart");
    fire();
    next();
    EXPECT_TRUE(silent());
}

TEST_F(Triggers, comeFromTheLines)
{
    set("TriggerSource", "Line0");
    set("SimulationLine0Rate", 100.0);
    ASSERT_EQ(start(), ORVALIS_OK);
    const auto begin = Clock::now();
    for (int i = 0; i < 30; ++i)
        next();
    EXPECT_GE(Clock::now() - begin, 250ms); // 29 pulses, minus those that a late host catches up
    set("LineDebouncerTime", 1023);
    set("SimulationLine0Rate", 1000.0); // pulses of 500 us
    EXPECT_TRUE(silent() || silent());  // a last frame may have been pending
}

TEST_F(Triggers, areAwaitedBySingleShots)
{
    set("TriggerSource", "Line0");
    take();
    EXPECT_EQ(entry("TriggerMode"), "On");
}

TEST_F(Triggers, areNotNeededAfterSwitchingOff)
{
    ASSERT_EQ(start(), ORVALIS_OK);
    EXPECT_TRUE(silent());
    set("TriggerMode", "Off");
    next();
}

TEST_F(Triggers, giveOneFrameInSingleFrameMode)
{
    set("AcquisitionMode", "SingleFrame");
    ASSERT_EQ(start(), ORVALIS_OK);
    fire();
    fire();
    next();
    EXPECT_TRUE(silent());
}

TEST_F(Triggers, keepTheStrobeSettings)
{
    set("LineSelector", "Line2");
    set("StrobeEnable", true);
    set("LineSource", "Timer0Active");
    set("LineInverter", true);
    set("TimerSelector", "Timer0");
    set("TimerDelay", 3900.0);
    set("TimerDuration", 250.0);
    EXPECT_EQ(entry("LineSource"), "Timer0Active");
    EXPECT_EQ(real("TimerDelay"), 3900.0);
    EXPECT_EQ(real("TimerDuration"), 250.0);
}

} // namespace
} // namespace orvalis::test
