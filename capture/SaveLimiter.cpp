// SPDX-License-Identifier: MIT
// Bounds the memory of frames that wait to be written to disk.
#include "capture/SaveLimiter.h"

#include <utility>

SaveLimiter::Place::Place(Place &&other) noexcept
    : m_limiter(std::exchange(other.m_limiter, nullptr)), m_bytes(other.m_bytes)
{
}

SaveLimiter::Place &SaveLimiter::Place::operator=(Place &&other) noexcept
{
    if (this != &other) {
        giveBack();
        m_limiter = std::exchange(other.m_limiter, nullptr);
        m_bytes = other.m_bytes;
    }
    return *this;
}

void SaveLimiter::Place::giveBack()
{
    SaveLimiter *limiter = std::exchange(m_limiter, nullptr);
    if (limiter == nullptr)
        return;
    // Under the lock to the end: whoever waits for the last place may destroy the limiter.
    const std::lock_guard lock(limiter->m_mutex);
    limiter->m_taken -= m_bytes;
    limiter->m_changed.notify_all();
}

bool SaveLimiter::hasRoomFor(std::size_t bytes) const
{
    return m_taken == 0 || (bytes <= m_capacity / 2 && m_taken <= m_capacity - 2 * bytes);
}

SaveLimiter::Place SaveLimiter::take(std::size_t bytes)
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [&] { return m_letThrough || hasRoomFor(bytes); });
    m_taken += bytes;
    return {this, bytes};
}

void SaveLimiter::letThrough(bool on)
{
    const std::lock_guard lock(m_mutex);
    m_letThrough = on;
    m_changed.notify_all();
}

void SaveLimiter::waitUntilEmpty()
{
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_taken == 0; });
}

std::size_t SaveLimiter::taken() const
{
    const std::lock_guard lock(m_mutex);
    return m_taken;
}
