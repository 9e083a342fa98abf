// SPDX-License-Identifier: MIT
// Start, stop and delivery of one stream.
#include "tests/library/core/AcquisitionFixture.h"

#include <new>
#include <thread>

using namespace orvalis;
using namespace orvalis::test;

namespace {

class AcquisitionTest : public AcquisitionFixture {};

} // namespace

TEST_F(AcquisitionTest, everyFrameReachesTheCallback)
{
    std::vector<int> seen;
    onFrame = [&](OImageFrame *frame) {
        seen.push_back(frame->raw[0]);
        frames_.add();
    };
    ASSERT_EQ(acquisition_.start(frameCallback), ORVALIS_OK);
    for (int i = 0; i < 5; ++i)
        script_->pushFrame(monoImage(static_cast<std::uint8_t>(i)));
    frames_.waitFor(5);
    acquisition_.stop();
    EXPECT_EQ(seen, (std::vector<int>{0, 1, 2, 3, 4}));
}

TEST_F(AcquisitionTest, secondStartIsBusy)
{
    ASSERT_EQ(acquisition_.start(frameCallback), ORVALIS_OK);
    EXPECT_EQ(acquisition_.start(frameCallback), ORVALIS_ERROR_BUSY);
    EXPECT_EQ(script_->starts.value(), 1);
}

TEST_F(AcquisitionTest, failedStartLeavesItIdle)
{
    script_->onStart = [] { return ORVALIS_ERROR_DEVICE; };
    EXPECT_EQ(acquisition_.start(frameCallback), ORVALIS_ERROR_DEVICE);
    EXPECT_FALSE(acquisition_.streaming());
    script_->onStart = nullptr;
    EXPECT_EQ(acquisition_.start(frameCallback), ORVALIS_OK);
}

TEST_F(AcquisitionTest, startThatThrowsLeavesItIdle)
{
    script_->onStart = []() -> OResult { throw std::bad_alloc(); };
    EXPECT_EQ(acquisition_.start(frameCallback), ORVALIS_ERROR_OUT_OF_MEMORY);
    EXPECT_FALSE(acquisition_.streaming());
    EXPECT_EQ(script_->stops.value(), 0);
}

TEST_F(AcquisitionTest, noCallbackAfterStop)
{
    ASSERT_EQ(acquisition_.start(frameCallback), ORVALIS_OK);
    script_->pushFrame(monoImage(1));
    frames_.waitFor(1);
    acquisition_.stop();
    script_->pushFrame(monoImage(2));
    EXPECT_EQ(frames_.value(), 1);
    EXPECT_EQ(script_->stops.value(), 1);
    EXPECT_FALSE(acquisition_.streaming());
}

TEST_F(AcquisitionTest, stopWaitsForTheCallback)
{
    Latch inside;
    Latch leave;
    std::atomic<bool> left{false};
    onFrame = [&](OImageFrame *) {
        inside.open();
        leave.wait();
        left = true;
    };
    ASSERT_EQ(acquisition_.start(frameCallback), ORVALIS_OK);
    script_->pushFrame(monoImage(1));
    inside.wait();
    std::thread stopper([&] {
        acquisition_.stop();
        EXPECT_TRUE(left);
    });
    script_->wakes.waitFor(1); // stop() is waiting
    leave.open();
    stopper.join();
}

TEST_F(AcquisitionTest, stopTwiceAndWithoutStartDoesNothing)
{
    acquisition_.stop();
    ASSERT_EQ(acquisition_.start(frameCallback), ORVALIS_OK);
    acquisition_.stop();
    acquisition_.stop();
    EXPECT_EQ(script_->stops.value(), 1);
}

TEST_F(AcquisitionTest, stopFromTheCallbackMakesItTheLast)
{
    onFrame = [&](OImageFrame *) {
        acquisition_.stop();
        frames_.add();
    };
    ASSERT_EQ(acquisition_.start(frameCallback), ORVALIS_OK);
    script_->pushFrame(monoImage(1));
    script_->pushFrame(monoImage(2));
    script_->stops.waitFor(1);
    acquisition_.stop();
    EXPECT_EQ(frames_.value(), 1);
}

TEST_F(AcquisitionTest, startAfterAStopFromTheCallback)
{
    onFrame = [&](OImageFrame *) {
        acquisition_.stop();
        frames_.add();
    };
    for (int i = 1; i <= 3; ++i) {
        ASSERT_EQ(acquisition_.start(frameCallback), ORVALIS_OK);
        script_->pushFrame(monoImage(1));
        frames_.waitFor(i); // start() waits for the end of the old stream
    }
    acquisition_.stop();
    EXPECT_EQ(script_->stops.value(), 3);
}

TEST_F(AcquisitionTest, startFromTheCallbackIsBusy)
{
    EXPECT_EQ(fromTheCallback([this] {
                  acquisition_.stop();
                  return acquisition_.start(frameCallback);
              }),
              ORVALIS_ERROR_BUSY);
}

TEST_F(AcquisitionTest, stopsFromSeveralThreadsAtOnce)
{
    for (int i = 0; i < 50; ++i) {
        ASSERT_EQ(acquisition_.start(frameCallback), ORVALIS_OK);
        script_->pushFrame(monoImage(1));
        std::thread other([&] { acquisition_.stop(); });
        acquisition_.stop();
        EXPECT_FALSE(acquisition_.streaming());
        other.join();
    }
    EXPECT_EQ(script_->stops.value(), 50);
}

TEST_F(AcquisitionTest, startAfterCloseFails)
{
    acquisition_.close();
    EXPECT_EQ(acquisition_.start(frameCallback), ORVALIS_ERROR_BAD_HANDLE);
}

TEST_F(AcquisitionTest, lossEndsTheStream)
{
    ASSERT_EQ(acquisition_.start(frameCallback), ORVALIS_OK);
    script_->lose();
    script_->stops.waitFor(1);
    acquisition_.stop();
    EXPECT_TRUE(lost_);
}

TEST_F(AcquisitionTest, exceptionsOfTheDeviceDoNotEndTheStream)
{
    std::atomic<int> calls{0};
    script_->onNextImage = [&] {
        if (++calls == 1)
            throw std::bad_alloc();
    };
    ASSERT_EQ(acquisition_.start(frameCallback), ORVALIS_OK);
    script_->pushFrame(monoImage(1));
    frames_.waitFor(1);
    acquisition_.stop();
    EXPECT_GE(calls, 2);
}

TEST_F(AcquisitionTest, imageThatDoesNotFitItsSizeIsDropped)
{
    RawImage broken = monoImage(1);
    broken.height *= 2;
    ASSERT_EQ(acquisition_.start(frameCallback), ORVALIS_OK);
    script_->pushFrame(broken);
    script_->pushFrame(monoImage(7));
    frames_.waitFor(1);
    acquisition_.stop();
    EXPECT_EQ(frames_.value(), 1);
}

TEST_F(AcquisitionTest, framesStayAfterStopUntilTheNextStart)
{
    OImageFrame *kept = nullptr;
    onFrame = [&](OImageFrame *frame) {
        kept = frame;
        frames_.add();
    };
    ASSERT_EQ(acquisition_.start(frameCallback), ORVALIS_OK);
    RawImage image = monoImage(42);
    const std::weak_ptr<const void> memory = image.owner;
    script_->pushFrame(std::move(image));
    frames_.waitFor(1);
    acquisition_.stop();
    EXPECT_EQ(kept->raw[100], 42);
    EXPECT_FALSE(memory.expired());
    ASSERT_EQ(acquisition_.start(frameCallback), ORVALIS_OK);
    EXPECT_TRUE(memory.expired());
}

TEST_F(AcquisitionTest, bayerConversionTakesEffectWithTheNextFrame)
{
    std::vector<bool> converted;
    onFrame = [&](OImageFrame *frame) {
        converted.push_back(frame->rgb != nullptr);
        frames_.add();
    };
    RawImage bayer = monoImage(10);
    bayer.pixelFormat = findPixelFormat("BayerGR8")->code;
    ASSERT_EQ(acquisition_.start(frameCallback), ORVALIS_OK);
    script_->pushFrame(bayer);
    frames_.waitFor(1);
    acquisition_.setBayerConversion(true);
    script_->pushFrame(bayer);
    frames_.waitFor(2);
    acquisition_.stop();
    EXPECT_EQ(converted, (std::vector<bool>{false, true}));
}
