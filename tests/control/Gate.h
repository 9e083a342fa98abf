// SPDX-License-Identifier: MIT
// Counts the threads of a test that reach it, and can block them.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

/// Counts calls from any thread and can block them until it is opened.
class Gate {
public:
    explicit Gate(bool open) : m_open(open) {}
    void pass()
    {
        std::unique_lock lock(m_mutex);
        ++m_arrived;
        m_changed.notify_all();
        m_changed.wait(lock, [this] { return m_open; });
    }
    void open()
    {
        const std::lock_guard lock(m_mutex);
        m_open = true;
        m_changed.notify_all();
    }
    /// Waits for `count` calls. Returns false if they take longer than `limit`.
    bool wait(int count, std::chrono::milliseconds limit = std::chrono::seconds(20))
    {
        std::unique_lock lock(m_mutex);
        return m_changed.wait_for(lock, limit, [&] { return m_arrived >= count; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_open;
    int m_arrived = 0;
};
