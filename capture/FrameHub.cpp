// SPDX-License-Identifier: MIT
// The one place where frames leave the camera library's callback.
#include "capture/FrameHub.h"

#include <thread>
#include <utility>

#include <sys/time.h>

namespace {

timeval timeOf(std::chrono::system_clock::time_point time)
{
    using namespace std::chrono;
    const auto sinceEpoch = duration_cast<microseconds>(time.time_since_epoch()).count();
    return {static_cast<time_t>(sinceEpoch / 1000000),
            static_cast<suseconds_t>(sinceEpoch % 1000000)};
}

} // namespace

bool FrameHub::attach(FrameTap *tap)
{
    for (std::atomic<FrameTap *> &place : m_taps) {
        if (place.load() != nullptr)
            continue;
        if (m_info)
            tap->started(*m_info);
        place = tap;
        return true;
    }
    return false;
}

void FrameHub::detach(FrameTap *tap)
{
    for (std::atomic<FrameTap *> &place : m_taps) {
        FrameTap *expected = tap;
        if (!place.compare_exchange_strong(expected, nullptr))
            continue;
        waitForPublish();
        if (m_info)
            tap->stopped();
    }
}

/// A publish() that began before a tap was removed may still call it.
void FrameHub::waitForPublish() const
{
    const std::uint32_t present = m_publishing;
    while (present % 2 == 1 && m_publishing == present)
        std::this_thread::yield();
}

void FrameHub::start(const StreamInfo &info)
{
    m_index = 0;
    restartCount();
    restartRates();
    m_info = info;
    for (const std::atomic<FrameTap *> &place : m_taps)
        if (FrameTap *tap = place)
            tap->started(info);
}

// Runs in the library's thread: expensive operations are not allowed.
void FrameHub::publish(OImageFrame *frame)
{
    ++m_publishing;
    ++m_received;
    const PublishedFrame published{
        frame, {++m_index, std::chrono::steady_clock::now(), std::chrono::system_clock::now()}};
    if (const auto rates = m_rateMeter.frameReceived(*frame, timeOf(published.stamp.wallTime))) {
        const std::lock_guard lock(m_mutex);
        m_rates = rates;
    }
    for (const std::atomic<FrameTap *> &place : m_taps)
        if (FrameTap *tap = place)
            tap->frame(published);
    ++m_publishing;
}

void FrameHub::stop()
{
    m_info.reset();
    for (const std::atomic<FrameTap *> &place : m_taps)
        if (FrameTap *tap = place)
            tap->stopped();
}

std::optional<StreamRates> FrameHub::takeRates()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_rates, std::nullopt);
}

void FrameHub::restartRates()
{
    m_rateMeter.restart();
    const std::lock_guard lock(m_mutex);
    m_rates.reset();
}
