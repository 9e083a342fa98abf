// SPDX-License-Identifier: MIT
// The hub publishes every frame to every tap and counts it without allocating.
#include "capture/FrameHub.h"
#include "capture/LatestFrame.h"
#include "tests/support/CountedAllocations.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace {

class Listener : public FrameTap {
public:
    void started(const StreamInfo &info) override { width = info.region.width; }
    void frame(const PublishedFrame &published) override
    {
        last = published;
        ++frames;
    }
    void stopped() override { ++stops; }

    int width = 0;
    int stops = 0;
    std::atomic<int> frames{0};
    PublishedFrame last;
};

StreamInfo infoOf(int width)
{
    StreamInfo info;
    info.region.width = width;
    return info;
}

OImageFrame record() { return {16, 4, 4, 8, nullptr, nullptr, nullptr}; }

TEST(FrameHub, everyTapGetsEveryFrame)
{
    FrameHub hub;
    Listener one;
    Listener other;
    ASSERT_TRUE(hub.attach(&one));
    ASSERT_TRUE(hub.attach(&other));
    hub.start(infoOf(640));
    OImageFrame frame = record();
    for (int i = 0; i < 3; ++i)
        hub.publish(&frame);
    hub.stop();
    for (const Listener *tap : {&one, &other}) {
        EXPECT_EQ(tap->width, 640);
        EXPECT_EQ(tap->frames, 3);
        EXPECT_EQ(tap->last.frame, &frame);
        EXPECT_EQ(tap->last.stamp.index, 3u);
        EXPECT_EQ(tap->stops, 1);
    }
}

TEST(FrameHub, publishAllocatesNothing)
{
    FrameHub hub;
    LatestFrame latest;
    Listener listener;
    hub.attach(&latest);
    hub.attach(&listener);
    hub.start(infoOf(4));
    OImageFrame frame = record();
    hub.publish(&frame);
    const CountedAllocations counted;
    for (int i = 0; i < 1000; ++i) // many measuring windows
        hub.publish(&frame);
    EXPECT_EQ(counted.count(), 0);
    EXPECT_EQ(listener.frames, 1001);
}

TEST(FrameHub, aTapAttachedLaterIsStartedFirst)
{
    FrameHub hub;
    hub.start(infoOf(32));
    Listener late;
    ASSERT_TRUE(hub.attach(&late));
    EXPECT_EQ(late.width, 32);
    hub.detach(&late);
    EXPECT_EQ(late.stops, 1);
    OImageFrame frame = record();
    hub.publish(&frame);
    EXPECT_EQ(late.frames, 0);
}

TEST(FrameHub, refusesTapsBeyondItsCapacity)
{
    FrameHub hub;
    std::vector<Listener> taps(FrameHub::capacity + 1);
    for (std::size_t i = 0; i < FrameHub::capacity; ++i)
        EXPECT_TRUE(hub.attach(&taps[i]));
    EXPECT_FALSE(hub.attach(&taps.back()));
    hub.detach(&taps.front());
    EXPECT_TRUE(hub.attach(&taps.back()));
}

TEST(FrameHub, theCountRestartsAndTheIndexDoesNot)
{
    FrameHub hub;
    Listener tap;
    hub.attach(&tap);
    hub.start(infoOf(4));
    OImageFrame frame = record();
    hub.publish(&frame);
    hub.publish(&frame);
    hub.restartCount();
    EXPECT_EQ(hub.received(), 0u);
    hub.publish(&frame);
    EXPECT_EQ(hub.received(), 1u);
    EXPECT_EQ(tap.last.stamp.index, 3u);
}

TEST(FrameHub, ratesAreTakenOnce)
{
    FrameHub hub;
    hub.start(infoOf(4));
    OImageFrame frame = record();
    for (int i = 0; i < 30; ++i)
        hub.publish(&frame);
    EXPECT_FALSE(hub.takeRates());
    hub.publish(&frame); // 31 frames are a window
    EXPECT_TRUE(hub.takeRates());
    EXPECT_FALSE(hub.takeRates());
}

TEST(FrameHub, ratesOfAnEndedWindowAreDiscardedByARestart)
{
    FrameHub hub;
    hub.start(infoOf(4));
    OImageFrame frame = record();
    for (int i = 0; i < 31; ++i)
        hub.publish(&frame);
    hub.restartRates();
    EXPECT_FALSE(hub.takeRates());
}

TEST(FrameHub, noTapIsCalledOnceDetachReturned)
{
    FrameHub hub;
    hub.start(infoOf(4));
    std::atomic<bool> ending{false};
    std::thread delivery([&] {
        OImageFrame frame = record();
        while (!ending)
            hub.publish(&frame);
    });
    for (int i = 0; i < 200; ++i) {
        auto tap = std::make_unique<Listener>();
        ASSERT_TRUE(hub.attach(tap.get()));
        hub.detach(tap.get());
        const int frames = tap->frames;
        std::this_thread::yield();
        EXPECT_EQ(tap->frames, frames);
    } // the sanitizers report a tap that is called after this
    ending = true;
    delivery.join();
}

TEST(LatestFrame, keepsTheNewestAndCountsTheOthers)
{
    LatestFrame latest;
    latest.started({});
    OImageFrame frames[3] = {record(), record(), record()};
    for (std::uint64_t i = 0; i < 3; ++i)
        latest.frame({&frames[i], {i + 1, {}, {}}});
    const auto taken = latest.takeNewest();
    ASSERT_TRUE(taken);
    EXPECT_EQ(taken->frame, &frames[2]);
    EXPECT_EQ(taken->stamp.index, 3u);
    EXPECT_EQ(latest.superseded(), 2u);
    EXPECT_FALSE(latest.takeNewest());
}

TEST(LatestFrame, isEmptyAfterTheStop)
{
    LatestFrame latest;
    OImageFrame frame = record();
    latest.frame({&frame, {1, {}, {}}});
    latest.stopped();
    EXPECT_FALSE(latest.takeNewest());
}

} // namespace
