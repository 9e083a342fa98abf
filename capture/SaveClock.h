// SPDX-License-Identifier: MIT
// The times that saved files are named after.
#pragma once

#include <chrono>
#include <mutex>

/// Gives out the present time, but no millisecond twice: files are named to the millisecond, and
/// two tasks of the same one would write to the same file. Any thread.
class SaveClock {
public:
    /// Since 1970, UTC.
    using Time = std::chrono::milliseconds;

    /// What the clock of the machine says.
    static Time systemTime();

    /// @param now the clock to read
    explicit SaveClock(Time (*now)() = systemTime) : m_now(now) {}

    /// The present time. Waits for the next millisecond if this one was given out already.
    Time take();

private:
    bool isFree(Time time) const;

    Time (*const m_now)();
    std::mutex m_mutex; // guards m_last
    Time m_last{Time::min()};
};
