// SPDX-License-Identifier: MIT
// The pool of frame buffers.
#include "library/simulated/FramePool.h"

#include <algorithm>

namespace orvalis::simulated {

struct FramePool::Slot {
    explicit Slot(std::size_t bytes) : pixels(new std::uint8_t[bytes]), size(bytes) {}

    std::unique_ptr<std::uint8_t[]> pixels;
    std::size_t size;
    alignas(std::max_align_t) std::byte control[128]; ///< the shared pointer's own block
};

struct FramePool::State {
    void give(Slot *slot)
    {
        std::unique_ptr<Slot> back(slot);
        const std::lock_guard lock(mutex);
        if (back->size == size && idle.size() < idle.capacity())
            idle.push_back(std::move(back));
        else
            --count;
    }

    mutable std::mutex mutex; // guards all below
    std::vector<std::unique_ptr<Slot>> idle;
    std::size_t size = 0;
    std::size_t count = 0; ///< idle ones and those that are held
};

// The control block is the last of a buffer that its holders let go, so a slot comes back to the
// pool when the block is freed.
template <class T> struct FramePool::SlotAllocator {
    using value_type = T;

    SlotAllocator(std::shared_ptr<State> pool, Slot *s) : state(std::move(pool)), slot(s) {}
    template <class U>
    SlotAllocator(const SlotAllocator<U> &other) : state(other.state), slot(other.slot)
    {
    }

    T *allocate(std::size_t)
    {
        static_assert(sizeof(T) <= sizeof(Slot::control) &&
                      alignof(T) <= alignof(std::max_align_t));
        return reinterpret_cast<T *>(slot->control);
    }
    void deallocate(T *, std::size_t) { state->give(slot); }
    template <class U> bool operator==(const SlotAllocator<U> &other) const
    {
        return slot == other.slot;
    }

    std::shared_ptr<State> state;
    Slot *slot;
};

FramePool::FramePool() : state_(std::make_shared<State>()) {}

std::shared_ptr<std::uint8_t> FramePool::take(std::size_t bytes)
{
    std::unique_ptr<Slot> slot;
    {
        const std::lock_guard lock(state_->mutex);
        if (state_->size != bytes) {
            state_->count -= state_->idle.size();
            state_->idle.clear();
            state_->size = bytes;
        }
        if (!state_->idle.empty()) {
            slot = std::move(state_->idle.back());
            state_->idle.pop_back();
        } else {
            slot = std::make_unique<Slot>(bytes);
            state_->idle.reserve(++state_->count);
        }
    }
    Slot *const raw = slot.release();
    return {raw->pixels.get(), [](std::uint8_t *) {}, SlotAllocator<std::uint8_t>(state_, raw)};
}

std::size_t FramePool::size() const
{
    const std::lock_guard lock(state_->mutex);
    return state_->count;
}

} // namespace orvalis::simulated
