// SPDX-License-Identifier: MIT
// Bounds the memory of frames that wait to be written to disk.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>

/// Gives out places for frames that wait for their save task. One thread asks for places, any
/// thread gives them back. A place may outlive the limiter.
class SaveLimiter {
    struct State;

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
        Place(std::shared_ptr<State> state, std::size_t bytes);
        void giveBack();

        std::shared_ptr<State> m_state; // null for no place
        std::size_t m_bytes = 0;
    };

    /// @param capacity bytes
    explicit SaveLimiter(std::size_t capacity = defaultCapacity);

    /// Waits until a frame of `bytes` fits. Room for a second such frame is kept back for the one
    /// that letThrough() admits; a frame too large for that waits until it is alone.
    Place take(std::size_t bytes);

    /// true: a waiting take() returns at once with its place, and so does every further one. false:
    /// places are waited for again.
    void letThrough(bool on);

    /// Returns when every place has been given back, also those of no bytes.
    void waitUntilEmpty();
    /// @return false if there are places left after `longest`
    bool waitUntilEmpty(std::chrono::milliseconds longest);

    /// Bytes of all places that are taken.
    std::size_t taken() const;

private:
    bool hasRoomFor(std::size_t bytes) const;

    const std::size_t m_capacity;
    const std::shared_ptr<State> m_state;
};
