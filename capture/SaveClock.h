// SPDX-License-Identifier: MIT
// The times that saved files are named after.
#pragma once

#include <chrono>
#include <mutex>

/// Returns the current time, but no millisecond twice: file names have a resolution of one
/// millisecond, and two tasks with the same time would write to the same file. Any thread.
class SaveClock {
public:
    /// Since 1970, UTC.
    using Time = std::chrono::milliseconds;

    /// The system clock.
    static Time systemTime();

    /// @param now the clock to read
    explicit SaveClock(Time (*now)() = systemTime) : m_now(now) {}

    /// The current time. Waits for the next millisecond if this one has been taken.
    Time take();

private:
    bool isFree(Time time) const;

    Time (*const m_now)();
    std::mutex m_mutex; // guards m_last
    Time m_last{Time::min()};
};
