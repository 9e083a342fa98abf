// SPDX-License-Identifier: MIT
// The count of tasks on the pool.
#include "capture/PoolTasks.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>

namespace {

TEST(PoolTasks, isIdleWithoutTasks)
{
    PoolTasks tasks;
    EXPECT_TRUE(tasks.waitIdle(std::chrono::milliseconds(0)));
    tasks.waitIdle();
}

TEST(PoolTasks, reportsTasksLeftAfterTheTimeout)
{
    PoolTasks tasks;
    tasks.begin();
    EXPECT_FALSE(tasks.waitIdle(std::chrono::milliseconds(1)));
    EXPECT_EQ(tasks.running(), 1);
    tasks.end();
    EXPECT_TRUE(tasks.waitIdle(std::chrono::milliseconds(0)));
}

TEST(PoolTasks, canBeDestroyedAfterTheLastTask)
{
    auto tasks = std::make_unique<PoolTasks>();
    tasks->begin();
    tasks->begin();
    tasks->end();
    std::thread task([&] { tasks->end(); });
    tasks->waitIdle();
    tasks.reset();
    task.join();
}

} // namespace
