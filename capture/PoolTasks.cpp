// SPDX-License-Identifier: MIT
// Counts tasks that were handed to the thread pool.
#include "capture/PoolTasks.h"

void PoolTasks::begin()
{
    const std::lock_guard lock(m_mutex);
    ++m_running;
}

void PoolTasks::end()
{
    // Notify with the lock held: a waiting thread may destroy the counter once it continues.
    const std::lock_guard lock(m_mutex);
    --m_running;
    m_changed.notify_all();
}

int PoolTasks::running() const
{
    const std::lock_guard lock(m_mutex);
    return m_running;
}

void PoolTasks::waitIdle()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_running == 0; });
}

bool PoolTasks::waitIdle(std::chrono::milliseconds timeout)
{
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, timeout, [this] { return m_running == 0; });
}
