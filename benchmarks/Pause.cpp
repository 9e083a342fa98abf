// SPDX-License-Identifier: MIT
// Replaces usleep() so that a benchmark controls the pause of the display thread.
#include "benchmarks/Pause.h"

#include <condition_variable>
#include <mutex>
#include <pthread.h>
#include <unistd.h>

namespace {

constexpr useconds_t displayPause = 33000;

struct {
    std::mutex mutex; // guards all other members
    std::condition_variable changed;
    bool pausing = false;
    bool mayEnd = false;
    bool held = true;
    clockid_t clock = CLOCK_MONOTONIC; ///< processor time of the thread that paused last
} pause_;

void pauseUntilTold()
{
    std::unique_lock lock(pause_.mutex);
    pause_.pausing = true;
    (void)pthread_getcpuclockid(pthread_self(), &pause_.clock);
    pause_.changed.notify_all();
    pause_.changed.wait(lock, [] { return pause_.mayEnd || !pause_.held; });
    pause_.pausing = pause_.mayEnd = false;
}

} // namespace

void pausing::holdPauses()
{
    const std::lock_guard lock(pause_.mutex);
    pause_.held = true;
}

void pausing::waitForPause()
{
    std::unique_lock lock(pause_.mutex);
    pause_.changed.wait(lock, [] { return pause_.pausing && !pause_.mayEnd; });
}

clockid_t pausing::displayThreadClock()
{
    const std::lock_guard lock(pause_.mutex);
    return pause_.clock;
}

void pausing::endPause()
{
    const std::lock_guard lock(pause_.mutex);
    pause_.mayEnd = true;
    pause_.changed.notify_all();
}

void pausing::letPausesGo()
{
    const std::lock_guard lock(pause_.mutex);
    pause_.held = false;
    pause_.changed.notify_all();
}

/// Replaces the function of the C library.
extern "C" int usleep(useconds_t microseconds)
{
    if (microseconds == displayPause) {
        pauseUntilTold();
        return 0;
    }
    const timespec time{microseconds / 1000000, static_cast<long>(microseconds % 1000000) * 1000};
    return nanosleep(&time, nullptr);
}
