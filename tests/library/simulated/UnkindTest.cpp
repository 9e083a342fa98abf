// SPDX-License-Identifier: MIT
// Simulated deviations: the effect of each switch of SimulationControl.
#include "tests/library/simulated/Bench.h"

#include <future>

namespace orvalis::test {
namespace {

using namespace std::chrono_literals;

class SimulatedDeviation : public Bench {
protected:
    FloatValue bounds(const char *name)
    {
        FloatValue value;
        EXPECT_EQ(nodes().getFloat(name, value), ORVALIS_OK) << name;
        return value;
    }
    bool silent()
    {
        RawImage image;
        return camera_->nextImage(image, Clock::now() + 60ms) == ORVALIS_ERROR_TIMEOUT;
    }
    bool flag(const char *name)
    {
        bool value = false;
        EXPECT_EQ(nodes().getBoolean(name, value), ORVALIS_OK) << name;
        return value;
    }
    OResult fire() { return nodes().execute("TriggerSoftware"); }
    void trigger(const char *selector, const char *mode)
    {
        set("TriggerSelector", selector);
        set("TriggerMode", mode);
    }
};

TEST_F(SimulatedDeviation, triggersShareTheirNodesByDefault)
{
    open(kFast);
    trigger("FrameStart", "On");
    set("TriggerSelector", "FrameBurstStart");
    EXPECT_EQ(entry("TriggerMode"), "On");
}

TEST_F(SimulatedDeviation, everyTriggerMayHaveItsOwnNodes)
{
    open(kFast);
    set("SimulationTriggerPerSelector", true);
    trigger("FrameBurstStart", "On");
    set("TriggerSource", "Line1");
    set("TriggerActivation", "FallingEdge");
    set("TriggerDelay", 250.0);
    set("TriggerSelector", "FrameStart");
    EXPECT_EQ(entry("TriggerMode"), "Off");
    EXPECT_EQ(entry("TriggerSource"), "Software");
    EXPECT_EQ(entry("TriggerActivation"), "RisingEdge");
    EXPECT_EQ(real("TriggerDelay"), 0);
    set("TriggerSelector", "FrameBurstStart");
    EXPECT_EQ(entry("TriggerMode"), "On");
    EXPECT_EQ(real("TriggerDelay"), 250);
}

TEST_F(SimulatedDeviation, anotherTriggerThatIsOnSuspendsFrames)
{
    open(kFast);
    set("SimulationTriggerPerSelector", true);
    trigger("FrameBurstStart", "On");
    trigger("FrameStart", "Off");
    ASSERT_EQ(start(), ORVALIS_OK);
    EXPECT_TRUE(silent());
    EXPECT_EQ(fire(), ORVALIS_OK); // FrameStart, which nothing waits for
    EXPECT_TRUE(silent());
    set("AcquisitionBurstFrameCount", 3);
    set("TriggerSelector", "FrameBurstStart");
    EXPECT_EQ(fire(), ORVALIS_OK);
    for (int i = 0; i < 3; ++i)
        next();
    EXPECT_TRUE(silent());
    set("TriggerMode", "Off");
    next();
    camera_->stopStream();
}

TEST_F(SimulatedDeviation, aFrameTriggerGivesOneFrameWhateverIsSelected)
{
    open(kFast);
    set("SimulationTriggerPerSelector", true);
    set("AcquisitionBurstFrameCount", 3);
    trigger("FrameStart", "On");
    ASSERT_EQ(start(), ORVALIS_OK);
    EXPECT_EQ(fire(), ORVALIS_OK);
    set("TriggerSelector", "FrameBurstStart");
    next();
    EXPECT_TRUE(silent());
    camera_->stopStream();
}

TEST_F(SimulatedDeviation, aFrameRateIsUnavailableUntilEnabled)
{
    open(kFast);
    set("AcquisitionFrameRateEnable", false);
    EXPECT_EQ(access("AcquisitionFrameRate"), ORVALIS_ACCESS_READ_WRITE);
    set("SimulationFrameRateNeedsEnable", true);
    EXPECT_EQ(access("AcquisitionFrameRate"), ORVALIS_ACCESS_NOT_AVAILABLE);
    EXPECT_EQ(nodes().setFloat("AcquisitionFrameRate", 10), ORVALIS_ERROR_ACCESS_DENIED);
    FloatValue value;
    EXPECT_EQ(nodes().getFloat("AcquisitionFrameRate", value), ORVALIS_ERROR_ACCESS_DENIED);
    set("AcquisitionFrameRateEnable", true);
    set("AcquisitionFrameRate", 10.0);
    EXPECT_EQ(real("AcquisitionFrameRate"), 10);
}

TEST_F(SimulatedDeviation, exposureMayTakeHalfAMinute)
{
    open(kMono);
    EXPECT_EQ(bounds("ExposureTime").maximum, 2e6);
    set("SimulationLongExposure", true);
    EXPECT_EQ(bounds("ExposureTime").maximum, 3e7);
    set("ExposureTime", 7e6);
    EXPECT_NEAR(real("ResultingFrameRate"), 1 / 7.0, 0.001);
    RawImage image;
    EXPECT_EQ(camera_->takeImage(image, Clock::now() + 100ms), ORVALIS_ERROR_TIMEOUT);
    set("SimulationLongExposure", false);
    EXPECT_EQ(real("ExposureTime"), 2e6);
}

TEST_F(SimulatedDeviation, aCommandTakesTimeAndActsAtItsEnd)
{
    open(kFast);
    set("SimulationCommandDuration", 80);
    set("Gain", 6.0);
    const auto before = Clock::now();
    ASSERT_EQ(nodes().execute("UserSetLoad"), ORVALIS_OK);
    EXPECT_GE(Clock::now() - before, 80ms);
    EXPECT_EQ(real("Gain"), 0);
}

TEST_F(SimulatedDeviation, aPendingCommandEndsWithTheCamera)
{
    open(kFast);
    set("SimulationCommandDuration", 300);
    auto unplug =
        std::async(std::launch::async, [this] { return nodes().execute("SimulationLeaveBus"); });
    OResult result = ORVALIS_OK; // eventually a command is pending when the camera disappears
    while (result == ORVALIS_OK)
        result = nodes().execute("UserSetLoad");
    EXPECT_EQ(result, ORVALIS_ERROR_CONNECTION_LOST);
    EXPECT_EQ(unplug.get(), ORVALIS_OK);
}

TEST_F(SimulatedDeviation, anotherProgramControlsTheCameraAfterTheClose)
{
    open(kMono);
    set("SimulationHoldElsewhere", 100);
    camera_.reset();
    EXPECT_EQ(bus_->open(kMono, camera_), ORVALIS_ERROR_BUSY);
    EXPECT_EQ(bus_->discover().size(), 4u);
    while (bus_->open(kMono, camera_) == ORVALIS_ERROR_BUSY)
        std::this_thread::yield();
    ASSERT_NE(camera_, nullptr);
    EXPECT_EQ(integer("SimulationHoldElsewhere"), 0); // once
}

TEST_F(SimulatedDeviation, strobesAreSelectedByLine)
{
    open(kFast);
    set("StrobeEnable", true);
    set("LineSelector", "Line0");
    EXPECT_TRUE(flag("StrobeEnable"));
    set("SimulationStrobePerLine", true);
    EXPECT_EQ(access("StrobeEnable"), ORVALIS_ACCESS_NOT_AVAILABLE); // an input
    set("LineSelector", "Line2");
    EXPECT_FALSE(flag("StrobeEnable"));
    set("StrobeEnable", true);
    EXPECT_TRUE(flag("StrobeEnable"));
}

TEST_F(SimulatedDeviation, payloadsDifferFromAnImage)
{
    open(kFast);
    const RawImage whole = take();
    set("SimulationPayload", "TrailingData");
    EXPECT_GT(take().size, whole.size);
    set("SimulationPayload", "MissingRows");
    RawImage image = take();
    EXPECT_LT(image.size, whole.size);
    EXPECT_EQ(image.height, whole.height);
    set("SimulationPayload", "UnknownFormat");
    EXPECT_NE(take().pixelFormat, whole.pixelFormat);
    set("SimulationPayload", "Image");
    EXPECT_EQ(take().size, whole.size);
}

TEST_F(SimulatedDeviation, streamStallsTemporarily)
{
    open(kFast);
    ASSERT_EQ(start(), ORVALIS_OK);
    next();
    set("SimulationStallDuration", 300);
    const auto before = Clock::now();
    ASSERT_EQ(nodes().execute("SimulationStall"), ORVALIS_OK);
    next();
    EXPECT_GE(Clock::now() - before, 300ms);
    EXPECT_EQ(integer("StreamFailedFrameCount"), 0);
    camera_->stopStream();
}

} // namespace
} // namespace orvalis::test
