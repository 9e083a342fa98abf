// SPDX-License-Identifier: MIT
// Counts tasks that were handed to the thread pool, so that what they use is not taken from them.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

/// Every function may be called from any thread.
class PoolTasks {
public:
    /// Counts a task that is about to be handed over.
    void begin();
    /// The task ended.
    void end();

    /// Tasks that have begun and not ended.
    int running() const;

    /// Waits until no task is left.
    void waitIdle();
    /// @return false if there are tasks left after `longest`
    bool waitIdle(std::chrono::milliseconds longest);

private:
    mutable std::mutex m_mutex; // guards m_running
    std::condition_variable m_changed;
    int m_running = 0;
};
