// SPDX-License-Identifier: MIT
// The queue between the delivery and the display thread.
#include "capture/FrameQueue.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <thread>

namespace {

TEST(FrameQueue, anEmptyQueueHasNoNewest)
{
    FrameQueue queue;
    EXPECT_EQ(queue.takeNewest(), nullptr);
    EXPECT_EQ(queue.size(), 0U);
}

TEST(FrameQueue, takesTheNewestAndKeepsTheOlderOnes)
{
    std::array<OImageFrame, 3> frames{};
    FrameQueue queue;
    for (OImageFrame &frame : frames)
        queue.push(&frame);
    EXPECT_EQ(queue.takeNewest(), &frames[2]);
    EXPECT_EQ(queue.size(), 2U);
    EXPECT_EQ(queue.takeNewest(), &frames[1]);
}

TEST(FrameQueue, clearForgetsEverything)
{
    OImageFrame frame{};
    FrameQueue queue;
    queue.push(&frame);
    queue.push(&frame);
    queue.clear();
    EXPECT_EQ(queue.size(), 0U);
    EXPECT_EQ(queue.takeNewest(), nullptr);
}

TEST(FrameQueue, pushingAndTakingFromTwoThreadsLosesNothing)
{
    constexpr int count = 20000;
    OImageFrame frame{};
    FrameQueue queue;
    std::atomic<bool> pushed{false};
    std::thread delivery([&] {
        for (int i = 0; i < count; ++i)
            queue.push(&frame);
        pushed = true;
    });
    int taken = 0;
    for (;;) {
        const bool last = pushed;
        if (queue.takeNewest() != nullptr)
            ++taken;
        else if (last)
            break;
    }
    delivery.join();
    EXPECT_EQ(taken, count);
}

} // namespace
