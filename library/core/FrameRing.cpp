// SPDX-License-Identifier: MIT
// Keeps frames that programs may still read, and reuses their memory.
#include "library/core/FrameRing.h"

#include <utility>

namespace orvalis {

bool FrameRing::expired(Clock::time_point now) const
{
    return frames_.size() > kFurtherFrames && now - frames_.front()->delivered >= kLifetime;
}

void FrameRing::dropOldest()
{
    std::shared_ptr<Frame> frame = std::move(frames_.front());
    frames_.pop_front();
    heldBytes_ -= frame->bytes();
    if (frame->taken)
        return; // the grab that reads it keeps it alive
    frame->source = {};
    spare_ = std::move(frame);
}

std::shared_ptr<Frame> FrameRing::next(Clock::time_point now)
{
    // At most two for each new frame: memory shrinks gradually when the rate falls.
    for (int i = 0; i < 2 && expired(now); ++i)
        dropOldest();
    // Frames of one stream have the same size, so the newest predicts the size of the next.
    while (frames_.size() > 1 && heldBytes_ + frames_.back()->bytes() > budget_)
        dropOldest();
    return spare_ ? std::exchange(spare_, nullptr) : std::make_shared<Frame>();
}

void FrameRing::deliver(std::shared_ptr<Frame> frame, Clock::time_point now)
{
    frame->delivered = now;
    const std::size_t bytes = frame->bytes();
    frames_.push_back(std::move(frame));
    heldBytes_ += bytes;
}

void FrameRing::giveBack(std::shared_ptr<Frame> frame)
{
    frame->source = {};
    spare_ = std::move(frame);
}

void FrameRing::clear()
{
    frames_.clear();
    spare_.reset();
    heldBytes_ = 0;
}

} // namespace orvalis
