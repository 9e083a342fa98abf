// SPDX-License-Identifier: MIT
// The bound on frames queued for saving.
#include "capture/SaveLimiter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <deque>
#include <future>
#include <thread>
#include <vector>

namespace {

TEST(SaveLimiter, countsTakenAndReleasedPlaces)
{
    SaveLimiter limiter(100);
    {
        const SaveLimiter::Place first = limiter.take(10);
        const SaveLimiter::Place second = limiter.take(20);
        EXPECT_EQ(limiter.taken(), 30U);
    }
    EXPECT_EQ(limiter.taken(), 0U);
}

TEST(SaveLimiter, aMovedPlaceIsReleasedOnce)
{
    SaveLimiter limiter(100);
    SaveLimiter::Place first = limiter.take(10);
    SaveLimiter::Place second = std::move(first);
    EXPECT_EQ(limiter.taken(), 10U);
    second = limiter.take(30);
    EXPECT_EQ(limiter.taken(), 30U);
    second = SaveLimiter::Place();
    EXPECT_EQ(limiter.taken(), 0U);
}

TEST(SaveLimiter, waitsForAPlace)
{
    SaveLimiter limiter(30);
    SaveLimiter::Place first = limiter.take(10);
    SaveLimiter::Place second = limiter.take(10); // room for one more is reserved
    std::atomic<bool> got{false};
    std::thread display([&] {
        const SaveLimiter::Place third = limiter.take(10);
        got = true;
    });
    EXPECT_FALSE(got);
    EXPECT_EQ(limiter.taken(), 20U);
    first = SaveLimiter::Place();
    display.join();
    EXPECT_TRUE(got);
}

TEST(SaveLimiter, bypassAdmitsTheWaitingFrameWithinTheBound)
{
    SaveLimiter limiter(30);
    std::vector<SaveLimiter::Place> places;
    places.push_back(limiter.take(10));
    places.push_back(limiter.take(10));
    std::thread display([&] { places.push_back(limiter.take(10)); });
    limiter.setBypass(true);
    display.join();
    EXPECT_EQ(limiter.taken(), 30U);
    limiter.setBypass(false);
}

TEST(SaveLimiter, aFrameAboveTheBoundIsAdmittedAlone)
{
    SaveLimiter limiter(30);
    SaveLimiter::Place huge = limiter.take(1000);
    EXPECT_EQ(limiter.taken(), 1000U);
    std::thread display([&] { const SaveLimiter::Place small = limiter.take(1); });
    huge = SaveLimiter::Place();
    display.join();
    EXPECT_EQ(limiter.taken(), 0U);
}

TEST(SaveLimiter, neverHoldsMoreThanItsBound)
{
    constexpr std::size_t bound = 64;
    SaveLimiter limiter(bound);
    std::mutex mutex;
    std::deque<SaveLimiter::Place> waiting;
    std::size_t most = 0;
    std::atomic<bool> done{false};
    std::thread writer([&] {
        for (;;) {
            const bool last = done;
            const std::lock_guard lock(mutex);
            if (!waiting.empty())
                waiting.pop_front();
            else if (last)
                return;
        }
    });
    for (int i = 0; i < 2000; ++i) {
        SaveLimiter::Place place = limiter.take(7);
        most = std::max(most, limiter.taken());
        const std::lock_guard lock(mutex);
        waiting.push_back(std::move(place));
    }
    done = true;
    writer.join();
    limiter.waitUntilEmpty();
    EXPECT_LE(most, bound);
    EXPECT_EQ(limiter.taken(), 0U);
}

TEST(SaveLimiter, waitsForPlacesWithoutBytesToo)
{
    SaveLimiter limiter(30);
    SaveLimiter::Place empty = limiter.take(0); // a dump of a plane that is missing
    const auto waiting = std::async(std::launch::async, [&] { limiter.waitUntilEmpty(); });
    EXPECT_EQ(waiting.wait_for(std::chrono::milliseconds(200)), std::future_status::timeout);
    empty = SaveLimiter::Place();
    waiting.wait();
}

TEST(SaveLimiter, canBeDestroyedOnceEmpty)
{
    auto limiter = std::make_unique<SaveLimiter>(30);
    auto place = std::make_unique<SaveLimiter::Place>(limiter->take(10));
    std::thread writer([&] { place.reset(); });
    limiter->waitUntilEmpty();
    limiter.reset();
    writer.join();
}

} // namespace
