// SPDX-License-Identifier: MIT
// Bounds the memory of frames queued for saving.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>

/// Hands out places for frames queued for saving, and applies backpressure when they run out. One
/// thread takes places, any thread releases them. A place may outlive the limiter.
class SaveLimiter {
    struct State;

public:
    /// Bytes.
    static constexpr std::size_t defaultCapacity = std::size_t{512} * 1024 * 1024;

    /// Room for one frame, released on destruction.
    class Place {
    public:
        Place() = default;
        Place(Place &&other) noexcept;
        Place &operator=(Place &&other) noexcept;
        ~Place() { release(); }

    private:
        friend class SaveLimiter;
        Place(std::shared_ptr<State> state, std::size_t bytes);
        void release();

        std::shared_ptr<State> m_state; // null for no place
        std::size_t m_bytes = 0;
    };

    /// @param capacity bytes
    explicit SaveLimiter(std::size_t capacity = defaultCapacity);

    /// Waits until a frame of `bytes` fits. Reserves room for a second such frame, which
    /// setBypass() may admit. A frame too large for that is admitted only when nothing else is
    /// pending.
    Place take(std::size_t bytes);

    /// true: pending and further calls of take() return at once, without regard to the capacity.
    /// false: take() waits again.
    void setBypass(bool on);

    /// Returns when every place has been released, including places of 0 bytes.
    void waitUntilEmpty();
    /// @return false if places are left after `timeout`
    bool waitUntilEmpty(std::chrono::milliseconds timeout);

    /// Bytes of all places that are taken.
    std::size_t taken() const;

private:
    bool hasRoomFor(std::size_t bytes) const;

    const std::size_t m_capacity;
    const std::shared_ptr<State> m_state;
};
