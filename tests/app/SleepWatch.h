// SPDX-License-Identifier: MIT
// Counts the pauses of the window's threads instead of measuring time. Include it in one source
// file of a program: it replaces usleep() of the C library.
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <mutex>

#include <time.h>
#include <unistd.h>

namespace shell {

/// During its lifetime, counts pauses by length, and runs `instead` for each.
class SleepWatch {
public:
    explicit SleepWatch(std::function<void(useconds_t)> instead = pause)
        : m_instead(std::move(instead))
    {
        current = this;
    }
    ~SleepWatch() { current = nullptr; }
    SleepWatch(const SleepWatch &) = delete;
    SleepWatch &operator=(const SleepWatch &) = delete;

    /// The number of pauses of this length that have begun.
    int pauses(useconds_t microseconds) const
    {
        const std::lock_guard lock(m_mutex);
        const auto found = m_pauses.find(microseconds);
        return found == m_pauses.end() ? 0 : found->second;
    }

    static void pause(useconds_t microseconds)
    {
        const timespec time{static_cast<time_t>(microseconds / 1000000),
                            static_cast<long>(microseconds % 1000000) * 1000};
        (void)nanosleep(&time, nullptr);
    }
    static void sleep(useconds_t microseconds)
    {
        SleepWatch *watch = current;
        if (watch == nullptr)
            return pause(microseconds);
        {
            const std::lock_guard lock(watch->m_mutex);
            ++watch->m_pauses[microseconds];
        }
        watch->m_instead(microseconds);
    }

private:
    static inline std::atomic<SleepWatch *> current{nullptr};
    const std::function<void(useconds_t)> m_instead;
    mutable std::mutex m_mutex; // guards m_pauses
    std::map<useconds_t, int> m_pauses;
};

} // namespace shell

extern "C" __attribute__((visibility("default"))) int usleep(useconds_t microseconds)
{
    shell::SleepWatch::sleep(microseconds);
    return 0;
}
