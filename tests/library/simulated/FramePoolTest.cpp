// SPDX-License-Identifier: MIT
// Frame buffers: reused, but never while in use.
#include "library/simulated/FramePool.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <thread>
#include <vector>

namespace orvalis::simulated {
namespace {

TEST(FramePool, reusesBuffers)
{
    FramePool pool;
    std::set<std::uint8_t *> seen;
    for (int i = 0; i < 100; ++i)
        seen.insert(pool.take(1000).get());
    EXPECT_EQ(seen.size(), 1u);
    EXPECT_EQ(pool.size(), 1u);
}

TEST(FramePool, neverReusesABufferInUse)
{
    FramePool pool;
    std::vector<std::shared_ptr<std::uint8_t>> held;
    std::set<std::uint8_t *> seen;
    for (int i = 0; i < 20; ++i) {
        held.push_back(pool.take(64));
        EXPECT_TRUE(seen.insert(held.back().get()).second);
    }
    EXPECT_EQ(pool.size(), 20u);
    held.clear();
    pool.take(64);
    EXPECT_EQ(pool.size(), 20u);
}

TEST(FramePool, freesBuffersOfAnotherSize)
{
    FramePool pool;
    auto old = pool.take(64);
    std::memset(pool.take(128).get(), 1, 128);
    old.reset();
    EXPECT_EQ(pool.size(), 1u);
}

TEST(FramePool, mayBeDestroyedBeforeItsBuffers)
{
    std::shared_ptr<std::uint8_t> buffer;
    {
        FramePool pool;
        buffer = pool.take(64);
    }
    std::memset(buffer.get(), 1, 64);
}

TEST(FramePool, hasNoRaceOnReuse)
{
    FramePool pool;
    for (int i = 0; i < 200; ++i) {
        auto buffer = pool.take(4096);
        std::memset(buffer.get(), i, 4096);
        std::thread reader([kept = std::shared_ptr<const void>(buffer), i] {
            EXPECT_EQ(*static_cast<const std::uint8_t *>(kept.get()), std::uint8_t(i));
        });
        buffer.reset();
        std::memset(pool.take(4096).get(), 255, 4096);
        reader.join();
    }
    EXPECT_LE(pool.size(), 2u);
}

} // namespace
} // namespace orvalis::simulated
