// SPDX-License-Identifier: MIT
// Bounds the memory of frames that wait to be written to disk.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>

/// Gives out places for frames that wait for their save task. One thread asks for places, any
/// thread gives them back. The limiter must outlive every place (see waitUntilEmpty()).
class SaveLimiter {
public:
    /// Bytes.
    static constexpr std::size_t defaultCapacity = std::size_t{512} * 1024 * 1024;

    /// Room for one frame, given back on destruction.
    class Place {
    public:
        Place() = default;
        Place(Place &&other) noexcept;
        Place &operator=(Place &&other) noexcept;
        ~Place() { giveBack(); }

    private:
        friend class SaveLimiter;
        Place(SaveLimiter *limiter, std::size_t bytes) : m_limiter(limiter), m_bytes(bytes) {}
        void giveBack();

        SaveLimiter *m_limiter = nullptr;
        std::size_t m_bytes = 0;
    };

    explicit SaveLimiter(std::size_t capacity = defaultCapacity) : m_capacity(capacity) {}

    /// Waits until a frame of `bytes` fits. Room for a second such frame is kept back for the one
    /// that letThrough() admits; a frame too large for that waits until it is alone.
    Place take(std::size_t bytes);

    /// true: a waiting take() returns at once with its place, and so does every further one. false:
    /// places are waited for again.
    void letThrough(bool on);

    /// Returns when every place has been given back.
    void waitUntilEmpty();

    /// Bytes of all places that are taken.
    std::size_t taken() const;

private:
    bool hasRoomFor(std::size_t bytes) const;

    const std::size_t m_capacity;
    mutable std::mutex m_mutex; // guards m_taken and m_letThrough
    std::condition_variable m_changed;
    std::size_t m_taken = 0;
    bool m_letThrough = false;
};
