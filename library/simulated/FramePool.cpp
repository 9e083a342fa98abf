// SPDX-License-Identifier: MIT
// The pool of frame buffers.
#include "library/simulated/FramePool.h"

namespace orvalis::simulated {

struct FramePool::State {
    void give(Memory pixels, std::size_t bytes)
    {
        const std::lock_guard lock(mutex);
        if (bytes == size && idle.size() < idle.capacity())
            idle.push_back(std::move(pixels));
        else
            --count;
    }

    mutable std::mutex mutex; // guards all below
    std::vector<Memory> idle; ///< capacity for all buffers: returning one does not allocate
    std::size_t size = 0;
    std::size_t count = 0; ///< idle buffers and buffers in use
};

FramePool::FramePool() : state_(std::make_shared<State>()) {}

std::shared_ptr<std::uint8_t> FramePool::take(std::size_t bytes)
{
    Memory pixels;
    {
        const std::lock_guard lock(state_->mutex);
        if (state_->size != bytes) {
            state_->count -= state_->idle.size();
            state_->idle.clear();
            state_->size = bytes;
        }
        if (!state_->idle.empty()) {
            pixels = std::move(state_->idle.back());
            state_->idle.pop_back();
        } else {
            pixels.reset(new std::uint8_t[bytes]);
            state_->idle.reserve(state_->count + 1);
            ++state_->count;
        }
    }
    return {pixels.release(),
            [state = state_, bytes](std::uint8_t *back) { state->give(Memory(back), bytes); }};
}

std::size_t FramePool::size() const
{
    const std::lock_guard lock(state_->mutex);
    return state_->count;
}

} // namespace orvalis::simulated
