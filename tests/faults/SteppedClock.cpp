// SPDX-License-Identifier: MIT
// The wall clock of this process: replaces functions of the C library, for Qt and the standard
// library too.
#include "tests/faults/SteppedClock.h"

#include <atomic>
#include <ctime>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

std::atomic<std::int64_t> offsetMs{0};

int systemTime(clockid_t clock, timespec *time)
{
    return static_cast<int>(syscall(SYS_clock_gettime, clock, time));
}

} // namespace

void faults::setClockOff(std::chrono::milliseconds offset) { offsetMs = offset.count(); }

extern "C" {

__attribute__((visibility("default"))) int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    const int result = systemTime(clock, time);
    if (result != 0 || (clock != CLOCK_REALTIME && clock != CLOCK_REALTIME_COARSE))
        return result;
    const std::int64_t nanoseconds = time->tv_nsec + offsetMs % 1000 * 1'000'000;
    time->tv_sec += offsetMs / 1000 + (nanoseconds < 0 ? -1 : nanoseconds / 1'000'000'000);
    time->tv_nsec = (nanoseconds + 1'000'000'000) % 1'000'000'000;
    return result;
}

__attribute__((visibility("default"))) int gettimeofday(timeval *time, void *) noexcept
{
    timespec exact{};
    const int result = clock_gettime(CLOCK_REALTIME, &exact);
    time->tv_sec = exact.tv_sec;
    time->tv_usec = exact.tv_nsec / 1000;
    return result;
}
}
