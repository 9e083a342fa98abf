// SPDX-License-Identifier: MIT
// The clock of an acquisition, with simulated time.
#include "library/simulated/FrameScheduler.h"

#include <gtest/gtest.h>

namespace orvalis::simulated {
namespace {

using namespace std::chrono_literals;

class Scheduler : public ::testing::Test {
protected:
    Scheduler() { scheduler_.start(now_); }

    FrameTiming timing_{.period = 10ms, .exposure = 2ms};
    Clock::time_point now_{1h};
    FrameScheduler scheduler_;
};

TEST_F(Scheduler, completesTheFirstFrameAfterOneExposure)
{
    EXPECT_EQ(scheduler_.due(timing_, now_), now_ + 2ms);
}

TEST_F(Scheduler, doesNotDrift)
{
    const Clock::time_point start = now_;
    for (int i = 0; i < 10000; ++i) {
        const auto due = scheduler_.due(timing_, now_);
        ASSERT_TRUE(due);
        now_ = *due + std::chrono::microseconds(i % 700); // the host wakes a little late
        EXPECT_EQ(scheduler_.take(timing_, now_), 0u);
    }
    EXPECT_EQ(scheduler_.due(timing_, now_), start + 10000 * 10ms + 2ms);
}

TEST_F(Scheduler, restartsAtTheFirstReadyFrame)
{
    scheduler_.take(timing_, now_ + 2ms);
    now_ += 150ms; // the camera warms up
    scheduler_.firstFrameDone(timing_, now_);
    EXPECT_EQ(scheduler_.due(timing_, now_), now_ + 10ms);
}

TEST_F(Scheduler, letsALateHostCatchUp)
{
    now_ += 102ms; // ten frames late
    for (int i = 0; i < 11; ++i) {
        const auto due = scheduler_.due(timing_, now_);
        ASSERT_TRUE(due && *due <= now_) << i;
        EXPECT_EQ(scheduler_.take(timing_, now_), 0u) << i;
    }
    EXPECT_GT(*scheduler_.due(timing_, now_), now_);
}

TEST_F(Scheduler, skipsFramesBeyondTheCamerasMemory)
{
    now_ += 10s + 2ms;
    std::uint64_t skipped = scheduler_.take(timing_, now_);
    EXPECT_EQ(skipped, 999u);
    unsigned burst = 0;
    while (*scheduler_.due(timing_, now_) <= now_ && burst < 100) {
        scheduler_.take(timing_, now_);
        ++burst;
    }
    EXPECT_LE(burst, 1u);
}

TEST_F(Scheduler, appliesAHigherRateAtOnce)
{
    timing_.period = 10s;
    scheduler_.take(timing_, now_ + 2ms);
    timing_.period = 10ms;
    EXPECT_LE(*scheduler_.due(timing_, now_ + 2ms), now_ + 14ms);
}

TEST_F(Scheduler, waitsForTheSoftwareTrigger)
{
    timing_.triggered = true;
    timing_.delay = 3ms;
    EXPECT_FALSE(scheduler_.due(timing_, now_));
    scheduler_.softwareTrigger(timing_, now_);
    EXPECT_EQ(scheduler_.due(timing_, now_), now_ + 5ms);
    scheduler_.take(timing_, now_ + 5ms);
    EXPECT_FALSE(scheduler_.due(timing_, now_ + 5ms));
}

TEST_F(Scheduler, takesTriggersOneAfterTheOther)
{
    timing_.triggered = true;
    for (int i = 0; i < 3; ++i)
        scheduler_.softwareTrigger(timing_, now_);
    const Clock::time_point start = now_;
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(scheduler_.due(timing_, now_), start + 2ms + i * 10ms);
        now_ = start + 2ms + i * 10ms;
        scheduler_.take(timing_, now_);
    }
    EXPECT_FALSE(scheduler_.due(timing_, now_ + 60ms));
}

TEST_F(Scheduler, ignoresSoftwareTriggersWhileNotWaiting)
{
    scheduler_.softwareTrigger(timing_, now_);
    timing_.triggered = true;
    timing_.source = TriggerSource::Line0;
    scheduler_.softwareTrigger(timing_, now_);
    timing_.source = TriggerSource::Software;
    EXPECT_FALSE(scheduler_.due(timing_, now_));
}

TEST_F(Scheduler, startsABurstForOneTrigger)
{
    timing_.triggered = true;
    timing_.burst = 3;
    scheduler_.softwareTrigger(timing_, now_);
    const Clock::time_point start = now_;
    for (int i = 0; i < 3; ++i) {
        const auto due = scheduler_.due(timing_, now_);
        ASSERT_EQ(due, start + 2ms + i * 10ms);
        now_ = *due;
        scheduler_.take(timing_, now_);
    }
    EXPECT_FALSE(scheduler_.due(timing_, now_));
}

TEST_F(Scheduler, followsTheEdgesOfALine)
{
    timing_.triggered = true;
    timing_.source = TriggerSource::Line1;
    timing_.lineRate = {100, 2};
    now_ += 100ms;
    scheduler_.start(now_);
    auto due = scheduler_.due(timing_, now_);
    EXPECT_EQ(due, now_ + 400ms + 2ms); // an edge falls on each full hour
    scheduler_.take(timing_, *due);
    EXPECT_EQ(scheduler_.due(timing_, *due), *due + 500ms);
    timing_.fallingEdge = true;
    EXPECT_EQ(scheduler_.due(timing_, *due), *due + 250ms);
}

TEST_F(Scheduler, filtersPulsesThatAreTooShort)
{
    timing_.triggered = true;
    timing_.source = TriggerSource::Line0;
    timing_.lineRate = {1000, 1};
    timing_.debounce = 500us;
    EXPECT_TRUE(scheduler_.due(timing_, now_));
    timing_.debounce = 501us;
    EXPECT_FALSE(scheduler_.due(timing_, now_));
}

TEST_F(Scheduler, ignoresEdgesDuringAnExposure)
{
    timing_.triggered = true;
    timing_.source = TriggerSource::Line0;
    timing_.lineRate = {1000, 1}; // faster than the camera
    Clock::time_point last;
    for (int i = 0; i < 5; ++i) {
        const auto due = scheduler_.due(timing_, now_);
        ASSERT_TRUE(due);
        if (i > 0) {
            EXPECT_GE(*due - last, 10ms);
        }
        last = now_ = *due;
        scheduler_.take(timing_, now_);
    }
}

TEST_F(Scheduler, runsFreelyAgainWhenTheTriggerIsSwitchedOff)
{
    timing_.triggered = true;
    EXPECT_FALSE(scheduler_.due(timing_, now_));
    now_ += 1min;
    timing_.triggered = false;
    EXPECT_EQ(scheduler_.due(timing_, now_), now_ + 2ms);
}

TEST(SimulatedLine, isHighForTheFirstHalfOfEachPulse)
{
    const Clock::time_point edge{1h};
    EXPECT_TRUE(lineIsHigh(10, edge));
    EXPECT_TRUE(lineIsHigh(10, edge + 49ms));
    EXPECT_FALSE(lineIsHigh(10, edge + 51ms));
    EXPECT_TRUE(lineIsHigh(10, edge + 101ms));
}

} // namespace
} // namespace orvalis::simulated
