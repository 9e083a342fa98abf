// SPDX-License-Identifier: MIT
// The times that saved files are named after.
#include "capture/SaveClock.h"

#include <thread>

namespace {

constexpr std::chrono::microseconds recheckPeriod{100};

/// A clock that jumps back this far has been set; take() does not wait for it to catch up.
constexpr std::chrono::seconds clockWasSet{1};

} // namespace

SaveClock::Time SaveClock::systemTime()
{
    return std::chrono::duration_cast<Time>(std::chrono::system_clock::now().time_since_epoch());
}

bool SaveClock::isFree(Time time) const { return time > m_last || time + clockWasSet <= m_last; }

SaveClock::Time SaveClock::take()
{
    for (;;) {
        {
            const std::lock_guard lock(m_mutex);
            const Time time = m_now();
            if (isFree(time))
                return m_last = time;
        }
        std::this_thread::sleep_for(recheckPeriod);
    }
}
