// SPDX-License-Identifier: MIT
// How long delivered frames stay valid, and when their memory is reused.
#include "library/core/FrameRing.h"

#include <gtest/gtest.h>

using namespace orvalis;
using namespace std::chrono_literals;

namespace {

constexpr Clock::time_point kStart{};

/// Delivers one frame of `bytes` bytes at `time`.
std::shared_ptr<Frame> deliver(FrameRing &ring, Clock::time_point time, std::size_t bytes = 1000)
{
    std::shared_ptr<Frame> frame = ring.next(time);
    frame->record.raw = frame->raw.reserve(bytes);
    ring.deliver(frame, time);
    return frame;
}

} // namespace

TEST(FrameRing, slowFramesStayForEightFurtherOnes)
{
    FrameRing ring;
    const Frame *first = deliver(ring, kStart).get();
    for (int i = 1; i <= 8; ++i)
        EXPECT_NE(deliver(ring, kStart + i * 1s).get(), first) << i;
    EXPECT_EQ(deliver(ring, kStart + 9s).get(), first) << "memory is reused";
}

TEST(FrameRing, fastFramesStayForTwoHundredMilliseconds)
{
    FrameRing ring;
    const Frame *first = deliver(ring, kStart).get();
    for (int i = 1; i < 200; ++i)
        ASSERT_NE(deliver(ring, kStart + i * 1ms).get(), first) << i;
    EXPECT_EQ(ring.size(), 200u);
    EXPECT_EQ(deliver(ring, kStart + 200ms).get(), first);
}

TEST(FrameRing, budgetEndsFramesSooner)
{
    FrameRing ring(5000);
    for (int i = 0; i < 20; ++i)
        deliver(ring, kStart + i * 1ms);
    EXPECT_EQ(ring.size(), 5u);
}

TEST(FrameRing, newestFrameIsKeptWhateverTheBudget)
{
    FrameRing ring(10);
    std::shared_ptr<Frame> before = deliver(ring, kStart);
    for (int i = 1; i < 5; ++i) {
        std::shared_ptr<Frame> next = ring.next(kStart + i * 1ms);
        EXPECT_NE(next, before) << "still readable while the next one is filled";
        next->raw.reserve(1000);
        ring.deliver(next, kStart + i * 1ms);
        before = next;
    }
}

TEST(FrameRing, frameUsedByAGrabIsNotReused)
{
    FrameRing ring;
    const std::shared_ptr<Frame> first = deliver(ring, kStart);
    first->taken = true;
    for (int i = 1; i <= 20; ++i)
        EXPECT_NE(deliver(ring, kStart + i * 1s), first) << i;
    EXPECT_EQ(first.use_count(), 1) << "the ring has released it";
}

TEST(FrameRing, cameraMemoryIsReleasedWithTheFrame)
{
    FrameRing ring;
    auto memory = std::make_shared<int>(1);
    const std::shared_ptr<Frame> first = deliver(ring, kStart);
    first->source.owner = memory;
    for (int i = 1; i <= 8; ++i)
        deliver(ring, kStart + i * 1s);
    EXPECT_EQ(memory.use_count(), 2);
    deliver(ring, kStart + 9s);
    EXPECT_EQ(memory.use_count(), 1);
}

TEST(FrameRing, returnedFrameIsReused)
{
    FrameRing ring;
    std::shared_ptr<Frame> frame = ring.next(kStart);
    const Frame *address = frame.get();
    ring.giveBack(std::move(frame));
    EXPECT_EQ(ring.next(kStart).get(), address);
    EXPECT_EQ(ring.size(), 0u);
}

TEST(FrameRing, clearReleasesAllFrames)
{
    FrameRing ring;
    const std::weak_ptr<Frame> frame = deliver(ring, kStart);
    EXPECT_FALSE(frame.expired());
    ring.clear();
    EXPECT_TRUE(frame.expired());
}
