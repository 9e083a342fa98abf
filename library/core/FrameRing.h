// SPDX-License-Identifier: MIT
// Keeps frames that programs may still read, and reuses their memory.
#pragma once

#include "library/core/Frame.h"

#include <chrono>
#include <deque>
#include <memory>

namespace orvalis {

/// Keeps delivered frames as long as OrvalisAPI.h promises: until 8 further frames and 200 ms have
/// passed, less only if that would exceed the budget, and never less than until the next frame. One
/// thread at a time.
class FrameRing {
public:
    /// A frame stays valid until this many further frames have been delivered ...
    static constexpr std::size_t kFurtherFrames = 8;
    /// ... and this much time has passed,
    static constexpr std::chrono::milliseconds kLifetime{200};
    /// unless the ring would take more bytes than this.
    static constexpr std::size_t kBudget = std::size_t{1} << 30;

    explicit FrameRing(std::size_t budget = kBudget) : budget_(budget) {}

    /// A frame to fill. Throws std::bad_alloc.
    std::shared_ptr<Frame> next(Clock::time_point now);
    /// Adds a filled frame, which programs may read from `now` on.
    void deliver(std::shared_ptr<Frame> frame, Clock::time_point now);
    /// Returns a frame from next() that could not be filled.
    void giveBack(std::shared_ptr<Frame> frame);
    /// Invalidates all frames.
    void clear();

    /// Number of frames kept.
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
