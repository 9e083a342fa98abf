// SPDX-License-Identifier: MIT
// Grabs with and without a stream.
#include "tests/library/core/AcquisitionFixture.h"

#include <thread>

using namespace orvalis;
using namespace orvalis::test;
using namespace std::chrono_literals;

namespace {

/// Longer than any test may take; no result depends on it.
Clock::time_point distantDeadline() { return Clock::now() + 10min; }

class GrabTest : public AcquisitionFixture {
protected:
    /// Runs a grab on its own thread.
    void grabInBackground()
    {
        grabber_ = std::thread([this] { result_ = acquisition_.grab(image_, distantDeadline()); });
    }
    OResult finishGrab()
    {
        grabber_.join();
        return result_;
    }

    /// Sends frames until the grab, which may begin late, has one.
    OResult feedUntilGrabbed()
    {
        std::atomic<bool> done{false};
        std::thread feeder([&] {
            for (int i = 1; !done; ++i) {
                script_->pushFrame(monoImage(5));
                frames_.waitFor(i);
            }
        });
        const OResult result = finishGrab();
        done = true;
        feeder.join();
        return result;
    }

    std::thread grabber_;
    GrabbedImage image_;
    OResult result_ = ORVALIS_ERROR_DEVICE;
};

} // namespace

TEST_F(GrabTest, idleCameraTakesAnImageForIt)
{
    script_->pushShot(monoImage(9));
    ASSERT_EQ(acquisition_.grab(image_, distantDeadline()), ORVALIS_OK);
    EXPECT_EQ(image_.data[0], 9);
    EXPECT_EQ(image_.width, 64u);
    EXPECT_EQ(script_->starts.value(), 0) << "without a stream";
}

TEST_F(GrabTest, deadlineInThePastTimesOut)
{
    EXPECT_EQ(acquisition_.grab(image_, Clock::now()), ORVALIS_ERROR_TIMEOUT);
    ASSERT_EQ(acquisition_.start(frameCallback), ORVALIS_OK);
    EXPECT_EQ(acquisition_.grab(image_, Clock::now()), ORVALIS_ERROR_TIMEOUT);
}

TEST_F(GrabTest, streamingCameraGivesItsNextFrame)
{
    ASSERT_EQ(acquisition_.start(frameCallback), ORVALIS_OK);
    grabInBackground();
    EXPECT_EQ(feedUntilGrabbed(), ORVALIS_OK);
    EXPECT_EQ(image_.data[0], 5);
    EXPECT_EQ(script_->takes.value(), 0) << "the stream is not disturbed";
}

TEST_F(GrabTest, startEndsAnIdleGrab)
{
    grabInBackground();
    script_->takes.waitFor(1);
    EXPECT_EQ(acquisition_.start(frameCallback), ORVALIS_OK);
    EXPECT_EQ(finishGrab(), ORVALIS_ERROR_ABORTED);
}

TEST_F(GrabTest, waitingGrabDoesNotDelayAStart)
{
    Latch begun;
    Latch go;
    script_->onStart = [&] {
        begun.open();
        go.wait();
        return ORVALIS_OK;
    };
    std::thread starter([&] { EXPECT_EQ(acquisition_.start(frameCallback), ORVALIS_OK); });
    begun.wait();
    grabInBackground();
    for (int i = 0; i < 1000; ++i) {
        const Acquisition::WriteScope write(acquisition_);
        std::this_thread::yield();
    }
    go.open();
    starter.join();
    EXPECT_EQ(feedUntilGrabbed(), ORVALIS_OK);
    EXPECT_EQ(script_->takes.value(), 0);
}

TEST_F(GrabTest, closeEndsAnIdleGrab)
{
    grabInBackground();
    script_->takes.waitFor(1);
    acquisition_.close();
    EXPECT_EQ(finishGrab(), ORVALIS_ERROR_ABORTED);
}

TEST_F(GrabTest, writeEndsAnIdleGrabAndDelaysNewOnes)
{
    grabInBackground();
    script_->takes.waitFor(1);
    std::thread second;
    {
        const Acquisition::WriteScope scope(acquisition_);
        EXPECT_EQ(finishGrab(), ORVALIS_ERROR_ABORTED);
        grabInBackground();
        EXPECT_EQ(script_->takes.value(), 1);
    }
    script_->pushShot(monoImage(3));
    EXPECT_EQ(finishGrab(), ORVALIS_OK);
}

TEST_F(GrabTest, wakeBeforeTheGrabReachesTheDeviceIsRepeated)
{
    Latch inside;
    Latch go;
    script_->onTakeImage = [&] {
        inside.open();
        go.wait();
    };
    grabInBackground();
    inside.wait();
    std::thread writer([&] { const Acquisition::WriteScope scope(acquisition_); });
    script_->wakes.waitFor(1);
    go.open();
    EXPECT_EQ(finishGrab(), ORVALIS_ERROR_ABORTED);
    writer.join();
}

TEST_F(GrabTest, unrelatedWakeDoesNotEndAGrab)
{
    device_.wake();
    script_->pushShot(monoImage(4));
    ASSERT_EQ(acquisition_.grab(image_, distantDeadline()), ORVALIS_OK);
    EXPECT_EQ(image_.data[0], 4);
}

TEST_F(GrabTest, writeDoesNotEndAGrabFromTheStream)
{
    ASSERT_EQ(acquisition_.start(frameCallback), ORVALIS_OK);
    grabInBackground();
    {
        const Acquisition::WriteScope scope(acquisition_);
    }
    EXPECT_EQ(script_->wakes.value(), 0);
    std::atomic<bool> done{false};
    std::thread feeder([&] {
        for (int i = 1; !done; ++i) {
            script_->pushFrame(monoImage(6));
            frames_.waitFor(i);
        }
    });
    EXPECT_EQ(finishGrab(), ORVALIS_OK);
    done = true;
    feeder.join();
}

TEST_F(GrabTest, idleGrabsAreSerialised)
{
    std::atomic<int> inside{0};
    std::atomic<int> most{0};
    script_->onTakeImage = [&] {
        const int now = ++inside;
        most = std::max(most.load(), now);
        --inside;
    };
    script_->pushShot(monoImage(1));
    script_->pushShot(monoImage(2));
    grabInBackground();
    GrabbedImage other;
    EXPECT_EQ(acquisition_.grab(other, distantDeadline()), ORVALIS_OK);
    EXPECT_EQ(finishGrab(), ORVALIS_OK);
    EXPECT_EQ(most, 1);
    EXPECT_NE(other.data[0], image_.data[0]);
}

TEST_F(GrabTest, grabInsideTheCallbackTimesOutAtOnce)
{
    EXPECT_EQ(fromTheCallback([this] { return acquisition_.grab(image_, distantDeadline()); }),
              ORVALIS_ERROR_TIMEOUT);
}

TEST_F(GrabTest, lossIsReported)
{
    script_->lose();
    EXPECT_EQ(acquisition_.grab(image_, distantDeadline()), ORVALIS_ERROR_CONNECTION_LOST);
}

TEST_F(GrabTest, grabThatThrowsIsAFailure)
{
    script_->onTakeImage = [] { throw std::bad_alloc(); };
    EXPECT_EQ(acquisition_.grab(image_, distantDeadline()), ORVALIS_ERROR_OUT_OF_MEMORY);
    script_->onTakeImage = nullptr;
    script_->pushShot(monoImage(8));
    EXPECT_EQ(acquisition_.grab(image_, distantDeadline()), ORVALIS_OK);
}

TEST_F(GrabTest, grabbedFrameOutlivesTheStream)
{
    ASSERT_EQ(acquisition_.start(frameCallback), ORVALIS_OK);
    grabInBackground();
    std::atomic<bool> done{false};
    std::thread feeder([&] {
        for (int i = 1; !done; ++i) {
            script_->pushFrame(monoImage(5));
            frames_.waitFor(i);
        }
    });
    ASSERT_EQ(finishGrab(), ORVALIS_OK);
    done = true;
    feeder.join();
    acquisition_.stop();
    ASSERT_EQ(acquisition_.start(frameCallback), ORVALIS_OK);
    EXPECT_EQ(image_.data[0], 5);
}
