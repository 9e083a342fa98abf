// SPDX-License-Identifier: MIT
// Counts tasks on the thread pool, so that owners can wait before they free what the tasks use.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

/// Every function may be called from any thread.
class PoolTasks {
public:
    /// Call before a task is handed to the pool.
    void begin();
    /// Call when the task ends.
    void end();

    /// Tasks between begin() and end().
    int running() const;

    /// Waits until no task is left.
    void waitIdle();
    /// @return false if tasks are left after `timeout`
    bool waitIdle(std::chrono::milliseconds timeout);

private:
    mutable std::mutex m_mutex; // guards m_running
    std::condition_variable m_changed;
    int m_running = 0;
};
