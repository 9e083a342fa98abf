// SPDX-License-Identifier: MIT
// Streams: counts, rate, waits and their ends.
#include "tests/library/simulated/Bench.h"

#include <cstring>
#include <future>
#include <set>
#include <vector>

namespace orvalis::test {
namespace {

using namespace std::chrono_literals;

class Streams : public Bench {
protected:
    void openSmall(const char *id)
    {
        open(id);
        region(0, 0, 64, 32);
        set("FrameNumberOverlay", true);
    }
};

TEST_F(Streams, numberEveryFrameOnce)
{
    openSmall(kFast);
    set("ExposureTime", 100.0);
    set("AcquisitionFrameRate", 500.0);
    ASSERT_EQ(start(), ORVALIS_OK);
    std::uint32_t last = 0;
    for (int i = 0; i < 300; ++i) {
        const std::uint32_t number = frameNumber(next());
        if (i > 0) {
            EXPECT_GT(number, last);
        }
        last = number;
    }
    EXPECT_EQ(integer("StreamDeliveredFrameCount"), 300);
    EXPECT_EQ(integer("StreamUnderrunCount"), last - 299);
    EXPECT_EQ(integer("StreamFailedFrameCount"), 0);
}

TEST_F(Streams, keepTheirRate)
{
    openSmall(kFast);
    set("ExposureTime", 100.0);
    set("AcquisitionFrameRate", 400.0);
    ASSERT_EQ(start(), ORVALIS_OK);
    next();
    const auto begin = Clock::now();
    for (int i = 0; i < 400; ++i)
        next();
    // Frames never arrive early; on a busy machine they may arrive late.
    EXPECT_GE(Clock::now() - begin, 980ms - 10ms * integer("StreamUnderrunCount"));
}

TEST_F(Streams, skipFramesThatAreNotFetched)
{
    openSmall(kFast);
    set("ExposureTime", 100.0);
    set("AcquisitionFrameRate", 1000.0);
    ASSERT_EQ(start(), ORVALIS_OK);
    EXPECT_EQ(frameNumber(next()), 0u);
    const auto late = Clock::now() + 600ms;
    while (Clock::now() < late)
        std::this_thread::sleep_until(late);
    next();
    EXPECT_GT(integer("StreamUnderrunCount"), 300);
    EXPECT_GT(frameNumber(next()), 300u);
}

TEST_F(Streams, deliverOneFrameInSingleFrameMode)
{
    openSmall(kMono);
    set("AcquisitionMode", "SingleFrame");
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(start(), ORVALIS_OK);
        EXPECT_EQ(frameNumber(next()), 0u);
        RawImage image;
        EXPECT_EQ(camera_->nextImage(image, Clock::now() + 100ms), ORVALIS_ERROR_TIMEOUT);
        EXPECT_EQ(image.data, nullptr);
        camera_->stopStream();
    }
}

TEST_F(Streams, deliverAsManyFramesAsMultiFrameModeSays)
{
    openSmall(kFast);
    set("AcquisitionMode", "MultiFrame");
    set("AcquisitionFrameCount", 5);
    ASSERT_EQ(start(), ORVALIS_OK);
    for (int i = 0; i < 5; ++i)
        next();
    RawImage image;
    EXPECT_EQ(camera_->nextImage(image, Clock::now() + 50ms), ORVALIS_ERROR_TIMEOUT);
}

TEST_F(Streams, cannotBeStartedTwice)
{
    open(kMono);
    ASSERT_EQ(start(), ORVALIS_OK);
    EXPECT_EQ(start(), ORVALIS_ERROR_BUSY);
    RawImage image;
    EXPECT_EQ(camera_->takeImage(image, soon()), ORVALIS_ERROR_BUSY);
    camera_->stopStream();
    EXPECT_EQ(start(), ORVALIS_OK);
}

TEST_F(Streams, keepHeldFramesUnchanged)
{
    openSmall(kFast);
    set("AcquisitionFrameRate", 1000.0);
    ASSERT_EQ(start(), ORVALIS_OK);
    const RawImage held = next();
    const std::vector<std::uint8_t> copy(held.data, held.data + held.size);
    for (int i = 0; i < 50; ++i)
        EXPECT_NE(next().data, held.data);
    camera_->stopStream();
    camera_.reset();
    bus_.reset();
    EXPECT_EQ(std::memcmp(held.data, copy.data(), copy.size()), 0);
}

TEST_F(Streams, reuseTheirBuffers)
{
    openSmall(kFast);
    ASSERT_EQ(start(), ORVALIS_OK);
    std::set<const std::uint8_t *> buffers;
    RawImage image;
    for (int i = 0; i < 50; ++i) {
        image = next();
        buffers.insert(image.data);
    }
    EXPECT_LE(buffers.size(), 2u);
}

TEST_F(Streams, endTheirWaitWhenWoken)
{
    open(kMono);
    set("TriggerMode", "On");
    ASSERT_EQ(start(), ORVALIS_OK);
    RawImage image;
    camera_->wake(); // before the wait
    EXPECT_EQ(camera_->nextImage(image, soon()), ORVALIS_ERROR_ABORTED);
    auto waiting =
        std::async(std::launch::async, [&] { return camera_->nextImage(image, soon()); });
    std::this_thread::sleep_for(20ms); // usually the wait has begun then; both cases are valid
    camera_->wake();
    EXPECT_EQ(waiting.get(), ORVALIS_ERROR_ABORTED);
}

TEST_F(Streams, discardALateWake)
{
    openSmall(kMono);
    ASSERT_EQ(start(), ORVALIS_OK);
    camera_->wake();
    camera_->stopStream();
    take();
    camera_->wake();
    ASSERT_EQ(start(), ORVALIS_OK);
    next();
}

TEST_F(Streams, timeOutWithoutATrigger)
{
    open(kMono);
    set("TriggerMode", "On");
    RawImage image;
    EXPECT_EQ(camera_->takeImage(image, atOnce()), ORVALIS_ERROR_TIMEOUT);
    ASSERT_EQ(start(), ORVALIS_OK);
    EXPECT_EQ(camera_->nextImage(image, atOnce()), ORVALIS_ERROR_TIMEOUT);
}

TEST_F(Streams, singleShotsDoNotLockSettings)
{
    open(kMono);
    set("TriggerMode", "On");
    RawImage image;
    auto waiting =
        std::async(std::launch::async, [&] { return camera_->takeImage(image, soon()); });
    set("Width", 640); // works before and during the wait
    OResult result = ORVALIS_ERROR_TIMEOUT;
    while (waiting.wait_for(5ms) != std::future_status::ready)
        EXPECT_EQ(nodes().execute("TriggerSoftware"), ORVALIS_OK);
    result = waiting.get();
    EXPECT_EQ(result, ORVALIS_OK);
    EXPECT_EQ(image.width, 640u);
}

TEST_F(Streams, singleShotsEndWhenWoken)
{
    open(kMono);
    set("TriggerMode", "On");
    RawImage image;
    auto waiting =
        std::async(std::launch::async, [&] { return camera_->takeImage(image, soon()); });
    std::this_thread::sleep_for(20ms);
    camera_->wake();
    EXPECT_EQ(waiting.get(), ORVALIS_ERROR_ABORTED);
}

TEST_F(Streams, endAWaitingSingleShot)
{
    open(kMono);
    set("TriggerMode", "On");
    RawImage image;
    auto waiting =
        std::async(std::launch::async, [&] { return camera_->takeImage(image, soon()); });
    while (waiting.wait_for(5ms) != std::future_status::ready) {
        ASSERT_EQ(start(), ORVALIS_OK);
        camera_->stopStream();
    }
    const OResult result = waiting.get();
    EXPECT_TRUE(result == ORVALIS_ERROR_ABORTED || result == ORVALIS_ERROR_BUSY) << result;
}

TEST_F(Streams, loseTheConfiguredFractionOfFrames)
{
    openSmall(kFast);
    set("ExposureTime", 50.0);
    set("AcquisitionFrameRate", 2000.0);
    set("SimulationFrameLoss", 25.0);
    ASSERT_EQ(start(), ORVALIS_OK);
    std::uint32_t last = 0;
    for (int i = 0; i < 600; ++i)
        last = frameNumber(next());
    const auto lost = integer("StreamFailedFrameCount");
    EXPECT_NEAR(double(lost) / double(lost + 600), 0.25, 0.08);
    EXPECT_EQ(lost + 599 + integer("StreamUnderrunCount"), last);
    EXPECT_EQ(integer("StreamMissingPacketCount"), lost);
    camera_->stopStream();
    set("SimulationFrameLoss", 100.0);
    ASSERT_EQ(start(), ORVALIS_OK);
    RawImage image;
    EXPECT_EQ(camera_->nextImage(image, Clock::now() + 50ms), ORVALIS_ERROR_TIMEOUT);
}

TEST_F(Streams, endWithTheirCamera)
{
    open(kMono);
    ASSERT_EQ(start(), ORVALIS_OK);
    camera_.reset(); // without a stop
    open(kMono);
    set("Width", 640); // is locked while a stream runs
    EXPECT_EQ(integer("Width"), 640);
}

TEST_F(Streams, restartTheirCountersAtEachStart)
{
    openSmall(kFast);
    ASSERT_EQ(start(), ORVALIS_OK);
    next();
    camera_->stopStream();
    EXPECT_EQ(integer("StreamDeliveredFrameCount"), 1);
    ASSERT_EQ(start(), ORVALIS_OK);
    EXPECT_EQ(integer("StreamDeliveredFrameCount"), 0);
    next();
    EXPECT_EQ(nodes().execute("StreamStatisticsReset"), ORVALIS_OK);
    EXPECT_EQ(integer("StreamDeliveredFrameCount"), 0);
}

TEST_F(Streams, followChangesOfTheExposure)
{
    openStill(kMono);
    region(0, 0, 64, 64);
    ASSERT_EQ(start(), ORVALIS_OK);
    const int before = next().data[2000];
    set("ExposureTime", 20000.0);
    next(); // may have been exposed earlier
    EXPECT_GT(int(next().data[2000]), before + 20);
}

TEST_F(Streams, areNotDelayedBySlowAnswers)
{
    openSmall(kFast);
    set("AcquisitionFrameRate", 200.0);
    set("SimulationAnswerDelay", 300);
    ASSERT_EQ(start(), ORVALIS_OK);
    auto answer = std::async(std::launch::async, [&] { return integer("Width"); });
    int frames = 0;
    while (answer.wait_for(0ms) != std::future_status::ready) {
        next();
        ++frames;
    }
    EXPECT_EQ(answer.get(), 64);
    EXPECT_GE(frames, 10);
}

} // namespace
} // namespace orvalis::test
