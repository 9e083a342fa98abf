// SPDX-License-Identifier: MIT
// The lock of a camera link, and what the loss of the camera does to waiting callers.
#include "library/genicam/CameraLink.h"

#include <gtest/gtest.h>

#include <future>
#include <optional>

using namespace std::chrono_literals;
using orvalis::CameraLink;
using orvalis::Clock;

namespace {

class Link : public testing::Test {
protected:
    CameraLink link_{arv_fake_device_new("1", nullptr)};
};

TEST_F(Link, locksExcludeEachOther)
{
    std::optional<CameraLink::Lock> first(link_.acquire());
    ASSERT_TRUE(*first);
    std::atomic<bool> released{false};
    auto second = std::async(std::launch::async, [&] {
        const CameraLink::Lock lock = link_.acquire();
        return lock && released;
    });
    EXPECT_EQ(second.wait_for(20ms), std::future_status::timeout);
    released = true;
    first.reset();
    EXPECT_TRUE(second.get());
}

TEST_F(Link, lossRefusesWaitingCallers)
{
    const CameraLink::Lock first = link_.acquire();
    auto second = std::async(std::launch::async, [&] { return bool(link_.acquire()); });
    link_.markLost("a test says so");
    EXPECT_FALSE(second.get());
    EXPECT_FALSE(link_.acquire());
}

TEST_F(Link, controlLostSignalMarksTheCameraLost)
{
    g_signal_emit_by_name(link_.device(), "control-lost");
    EXPECT_TRUE(link_.lost());
    EXPECT_EQ(link_.waitForBuffer(Clock::time_point::max()), CameraLink::Event::Lost);
}

TEST_F(Link, aTimeoutIsNoLossIfTheCameraAnswersTheNextRequest)
{
    orvalis::Failure failure;
    g_set_error(failure.slot(), ARV_DEVICE_ERROR, ARV_DEVICE_ERROR_TIMEOUT, "no answer");
    EXPECT_EQ(link_.resultOf(failure), ORVALIS_ERROR_TIMEOUT);
    EXPECT_FALSE(link_.lost());
}

TEST_F(Link, aRequestToAMissingCameraMarksItLost)
{
    orvalis::Failure failure;
    g_set_error(failure.slot(), ARV_DEVICE_ERROR, ARV_DEVICE_ERROR_NOT_CONNECTED, "unplugged");
    EXPECT_EQ(link_.resultOf(failure), ORVALIS_ERROR_CONNECTION_LOST);
    EXPECT_TRUE(link_.lost());
}

TEST_F(Link, anOrdinaryRefusalIsNoLoss)
{
    orvalis::Failure failure;
    g_set_error(failure.slot(), ARV_GC_ERROR, ARV_GC_ERROR_OUT_OF_RANGE, "too large");
    EXPECT_EQ(link_.resultOf(failure), ORVALIS_ERROR_OUT_OF_RANGE);
    EXPECT_FALSE(link_.lost());
}

TEST_F(Link, pendingWakeEndsTheNextWaitOnce)
{
    link_.wake();
    EXPECT_EQ(link_.waitForBuffer(Clock::time_point::max()), CameraLink::Event::Wake);
    EXPECT_EQ(link_.waitForBuffer(Clock::now()), CameraLink::Event::Timeout);
    link_.wake();
    link_.clearWake();
    EXPECT_EQ(link_.waitForBuffer(Clock::now()), CameraLink::Event::Timeout);
}

TEST_F(Link, bufferDoneEndsAWait)
{
    auto waiter = std::async(std::launch::async,
                             [&] { return link_.waitForBuffer(Clock::time_point::max()); });
    link_.bufferDone();
    EXPECT_EQ(waiter.get(), CameraLink::Event::Buffer);
}

} // namespace
