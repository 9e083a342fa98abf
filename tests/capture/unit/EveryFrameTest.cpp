// SPDX-License-Identifier: MIT
// Every frame is copied in order, or counted by the cause of its loss.
#include "capture/EveryFrame.h"

#include <gtest/gtest.h>

#include <cstring>
#include <numeric>

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr std::size_t frameBytes = 64;

/// Frames with their own memory, as the library delivers them.
class Source {
public:
    void publish(EveryFrame &tap)
    {
        ++m_index;
        auto &bytes = m_planes.emplace_back(frameBytes, static_cast<std::uint8_t>(m_index));
        m_records.push_back({frameBytes, 8, 8, 8, bytes.data(), nullptr, nullptr});
        tap.frame({&m_records.back(), {m_index, Clock::now(), {}}});
    }
    void publishNothing(EveryFrame &tap)
    {
        m_records.push_back({0, 8, 8, 8, nullptr, nullptr, nullptr});
        tap.frame({&m_records.back(), {++m_index, Clock::now(), {}}});
    }

private:
    std::uint64_t m_index = 0;
    std::deque<std::vector<std::uint8_t>> m_planes;
    std::deque<OImageFrame> m_records;
};

Clock::time_point soon() { return Clock::now() + 60s; }

std::uint64_t sum(const EveryFrame::Counts &counts)
{
    return counts.copied + counts.noRoom + counts.tooLate + counts.noImage;
}

TEST(EveryFrame, copiesInOrder)
{
    EveryFrame tap(1 << 20);
    tap.started({});
    Source source;
    for (int i = 0; i < 5; ++i)
        source.publish(tap);
    for (std::uint8_t i = 1; i <= 5; ++i) {
        FrameCopy copy;
        ASSERT_TRUE(tap.take(&copy, soon()));
        EXPECT_EQ(copy.stamp.index, i);
        EXPECT_EQ(copy.width, 8u);
        EXPECT_EQ(copy.samples, std::vector<std::uint8_t>(frameBytes, i));
    }
    tap.stopped();
    FrameCopy copy;
    EXPECT_FALSE(tap.take(&copy, soon()));
}

TEST(EveryFrame, theQueueIsBoundedAndDropsAreCounted)
{
    EveryFrame tap(3 * frameBytes);
    tap.started({});
    Source source;
    for (int i = 0; i < 8; ++i)
        source.publish(tap);
    tap.stopped();
    EXPECT_EQ(tap.counts().copied, 3u);
    EXPECT_EQ(tap.counts().noRoom, 5u);
    FrameCopy copy;
    for (std::uint64_t i = 1; i <= 3; ++i) {
        ASSERT_TRUE(tap.take(&copy, soon()));
        EXPECT_EQ(copy.stamp.index, i);
    }
    EXPECT_FALSE(tap.take(&copy, soon()));
}

TEST(EveryFrame, expiredFramesAreNotRead)
{
    const Clock::time_point received{};
    const FrameStamp stamp{5, received, {}};
    // Valid until 8 further frames and 200 ms have passed.
    EXPECT_TRUE(EveryFrame::isStillValid(stamp, 5, received + 10s));
    EXPECT_TRUE(EveryFrame::isStillValid(stamp, 12, received + 10s));
    EXPECT_TRUE(EveryFrame::isStillValid(stamp, 1000, received + 199ms));
    EXPECT_FALSE(EveryFrame::isStillValid(stamp, 13, received + 200ms));
}

TEST(EveryFrame, aFrameWithoutSamplesIsCounted)
{
    EveryFrame tap(1 << 20);
    tap.started({});
    Source source;
    source.publishNothing(tap);
    tap.stopped();
    EXPECT_EQ(tap.counts().noImage, 1u);
}

TEST(EveryFrame, everyFrameOfALongStreamIsAccountedFor)
{
    constexpr int frames = 20000;
    EveryFrame tap(64 * frameBytes);
    tap.started({});
    std::thread consumer([&tap] {
        FrameCopy copy;
        std::uint64_t last = 0;
        while (tap.take(&copy, soon())) {
            EXPECT_GT(copy.stamp.index, last);
            last = copy.stamp.index;
        }
    });
    std::uint8_t plane[frameBytes] = {};
    OImageFrame record{frameBytes, 8, 8, 8, plane, nullptr, nullptr};
    for (std::uint64_t i = 1; i <= frames; ++i)
        tap.frame({&record, {i, Clock::now(), {}}});
    tap.stopped();
    consumer.join();
    EXPECT_EQ(sum(tap.counts()), std::uint64_t{frames});
}

TEST(EveryFrame, aNewStreamBeginsEmpty)
{
    EveryFrame tap(1 << 20);
    Source source;
    for (int run = 0; run < 2; ++run) {
        tap.started({});
        EXPECT_EQ(sum(tap.counts()), 0u);
        source.publish(tap);
        tap.stopped();
        EXPECT_EQ(tap.counts().copied, 1u);
    }
}

TEST(EveryFrame, endsWithoutAStream)
{
    EveryFrame tap(1);
    tap.stopped();
    FrameCopy copy;
    EXPECT_FALSE(tap.take(&copy, soon()));
}

} // namespace
