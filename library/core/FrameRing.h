// SPDX-License-Identifier: MIT
// The frames that programs may still be reading, and the reuse of their memory.
#pragma once

#include "library/core/Frame.h"

#include <chrono>
#include <deque>
#include <memory>

namespace orvalis {

/// Keeps delivered frames for as long as OrvalisAPI.h promises: 8 further frames and 200 ms, less
/// only where that would take more than the budget, and never less than to the next frame. One
/// thread at a time: the delivery thread while a stream runs, else whoever starts or closes.
class FrameRing {
public:
    /// A frame lives until so many further ones were given out ...
    static constexpr std::size_t kFurtherFrames = 8;
    /// ... and so much time has passed,
    static constexpr std::chrono::milliseconds kLifetime{200};
    /// less where the ring would take more bytes than this.
    static constexpr std::size_t kBudget = std::size_t{1} << 30;

    explicit FrameRing(std::size_t budget = kBudget) : budget_(budget) {}

    /// A frame to fill. Throws std::bad_alloc.
    std::shared_ptr<Frame> next(Clock::time_point now);
    /// From `now` on a program may read `frame`.
    void deliver(std::shared_ptr<Frame> frame, Clock::time_point now);
    /// Gives back a frame of next() that could not be filled.
    void giveBack(std::shared_ptr<Frame> frame);
    /// Ends the life of all frames.
    void clear();

    /// Frames that there are, filled or not.
    std::size_t size() const { return frames_.size(); }

private:
    bool expired(Clock::time_point now) const;
    void dropOldest();

    std::size_t budget_;
    std::deque<std::shared_ptr<Frame>> frames_; // oldest first
    std::shared_ptr<Frame> spare_;              // memory to fill next
    std::size_t heldBytes_ = 0;                 // of frames_
};

} // namespace orvalis
