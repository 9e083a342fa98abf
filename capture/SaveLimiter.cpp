// SPDX-License-Identifier: MIT
// Bounds the memory of frames queued for saving.
#include "capture/SaveLimiter.h"

#include <utility>

struct SaveLimiter::State {
    std::mutex mutex; // guards all that follows
    std::condition_variable changed;
    std::size_t bytes = 0;  ///< of the places taken
    std::size_t places = 0; ///< number of places taken
    bool bypass = false;
};

SaveLimiter::Place::Place(std::shared_ptr<State> state, std::size_t bytes)
    : m_state(std::move(state)), m_bytes(bytes)
{
}

SaveLimiter::Place::Place(Place &&other) noexcept
    : m_state(std::move(other.m_state)), m_bytes(other.m_bytes)
{
}

SaveLimiter::Place &SaveLimiter::Place::operator=(Place &&other) noexcept
{
    if (this != &other) {
        release();
        m_state = std::move(other.m_state);
        m_bytes = other.m_bytes;
    }
    return *this;
}

void SaveLimiter::Place::release()
{
    const std::shared_ptr<State> state = std::move(m_state);
    if (state == nullptr)
        return;
    const std::lock_guard lock(state->mutex);
    state->bytes -= m_bytes;
    --state->places;
    state->changed.notify_all();
}

SaveLimiter::SaveLimiter(std::size_t capacity)
    : m_capacity(capacity), m_state(std::make_shared<State>())
{
}

// The caller holds the lock.
bool SaveLimiter::hasRoomFor(std::size_t bytes) const
{
    const std::size_t taken = m_state->bytes;
    return taken == 0 || (bytes <= m_capacity / 2 && taken <= m_capacity - 2 * bytes);
}

SaveLimiter::Place SaveLimiter::take(std::size_t bytes)
{
    std::unique_lock lock(m_state->mutex);
    m_state->changed.wait(lock, [&] { return m_state->bypass || hasRoomFor(bytes); });
    m_state->bytes += bytes;
    ++m_state->places;
    return {m_state, bytes};
}

void SaveLimiter::setBypass(bool on)
{
    const std::lock_guard lock(m_state->mutex);
    m_state->bypass = on;
    m_state->changed.notify_all();
}

void SaveLimiter::waitUntilEmpty()
{
    std::unique_lock lock(m_state->mutex);
    m_state->changed.wait(lock, [this] { return m_state->places == 0; });
}

bool SaveLimiter::waitUntilEmpty(std::chrono::milliseconds timeout)
{
    std::unique_lock lock(m_state->mutex);
    return m_state->changed.wait_for(lock, timeout, [this] { return m_state->places == 0; });
}

std::size_t SaveLimiter::taken() const
{
    const std::lock_guard lock(m_state->mutex);
    return m_state->bytes;
}
