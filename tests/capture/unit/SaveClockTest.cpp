// SPDX-License-Identifier: MIT
// The clock that returns no millisecond twice.
#include "capture/SaveClock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <set>
#include <thread>
#include <vector>

namespace {

using namespace std::chrono_literals;
using Time = SaveClock::Time;

std::vector<Time> readings; // returned one after the other; the last one repeats
std::size_t nextReading = 0;

Time scripted()
{
    const std::size_t last = readings.size() - 1;
    return readings[std::min(nextReading++, last)];
}

std::vector<Time> taken(SaveClock *clock, int count)
{
    std::vector<Time> times;
    for (int i = 0; i < count; ++i)
        times.push_back(clock->take());
    return times;
}

TEST(SaveClock, returnsTheCurrentTime)
{
    const Time before = SaveClock::systemTime();
    const Time time = SaveClock().take();
    EXPECT_GE(time, before);
    EXPECT_LE(time, SaveClock::systemTime());
}

TEST(SaveClock, waitsUntilTheMillisecondIsOver)
{
    readings = {5ms, 5ms, 5ms, 6ms, 6ms, 9ms};
    nextReading = 0;
    SaveClock clock(scripted);
    EXPECT_THAT(taken(&clock, 3), testing::ElementsAre(5ms, 6ms, 9ms));
    EXPECT_EQ(nextReading, readings.size());
}

TEST(SaveClock, waitsForAClockSetBackALittle)
{
    readings = {5000ms, 4999ms, 4001ms, 5000ms, 5001ms};
    nextReading = 0;
    SaveClock clock(scripted);
    EXPECT_THAT(taken(&clock, 2), testing::ElementsAre(5000ms, 5001ms));
}

TEST(SaveClock, followsAClockThatWasSetBack)
{
    readings = {5000ms, 4000ms, 4000ms, 4001ms};
    nextReading = 0;
    SaveClock clock(scripted);
    EXPECT_THAT(taken(&clock, 3), testing::ElementsAre(5000ms, 4000ms, 4001ms));
}

std::atomic<int> sharedReadings{0};

/// Stands still for ten readings at a time.
Time slow() { return Time(sharedReadings++ / 10); }

TEST(SaveClock, returnsNoMillisecondToTwoThreads)
{
    constexpr int threads = 4;
    constexpr int each = 50;
    SaveClock clock(slow);
    std::vector<std::vector<Time>> times(threads);
    std::vector<std::thread> tasks;
    for (auto &own : times)
        tasks.emplace_back([&clock, &own] { own = taken(&clock, each); });
    for (std::thread &task : tasks)
        task.join();
    std::set<Time> different;
    for (const auto &own : times)
        different.insert(own.begin(), own.end());
    EXPECT_EQ(different.size(), std::size_t{threads} * each);
}

} // namespace
