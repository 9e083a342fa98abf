// SPDX-License-Identifier: MIT
// Grabs: the next frame of a running stream, or an image taken on its own.
#include "library/core/Acquisition.h"

namespace orvalis {

namespace {

using namespace std::chrono_literals;

/// A write stops waiting for the device to cancel a grab after this time.
constexpr auto kWriterTimeout = 500ms;

GrabbedImage grabbed(const std::shared_ptr<Frame> &frame)
{
    const OImageFrame &record = frame->record;
    return {frame->format, record.raw, record.rawSize, record.width, record.height, frame};
}

} // namespace

OResult Acquisition::grab(GrabbedImage &image, Clock::time_point deadline)
{
    if (onDeliveryThread())
        return ORVALIS_ERROR_TIMEOUT; // no frame arrives before this callback returns
    Lock lock(mutex_);
    // Only a close ends this wait: an idle grab while the stream starts would take the camera from
    // it.
    const bool settled = changed_.wait_until(lock, deadline, [&] {
        return closed_ || (state_ != State::Starting && state_ != State::Stopping);
    });
    if (closed_)
        return ORVALIS_ERROR_ABORTED;
    if (!settled)
        return ORVALIS_ERROR_TIMEOUT;
    return state_ == State::Streaming ? grabFromStream(lock, image, deadline)
                                      : grabIdle(lock, image, deadline);
}

OResult Acquisition::grabFromStream(Lock &lock, GrabbedImage &image, Clock::time_point deadline)
{
    const std::uint64_t stream = stream_;
    const std::uint64_t seen = published_;
    const auto over = [&] { return state_ != State::Streaming || stream_ != stream; };
    ++streamGrabs_;
    changed_.wait_until(lock, deadline, [&] { return published_ != seen || over(); });
    --streamGrabs_;
    if (published_ != seen && newest_) {
        newest_->taken = true;
        const std::shared_ptr<Frame> frame = newest_;
        if (streamGrabs_ == 0)
            newest_.reset();
        image = grabbed(frame);
        return ORVALIS_OK;
    }
    if (!over())
        return ORVALIS_ERROR_TIMEOUT;
    return lost_ ? ORVALIS_ERROR_CONNECTION_LOST : ORVALIS_ERROR_ABORTED;
}

OResult Acquisition::grabIdle(Lock &lock, GrabbedImage &image, Clock::time_point deadline)
{
    const std::uint64_t epoch = epoch_;
    const auto givenUp = [&] { return closed_ || epoch_ != epoch; };
    const auto mayBegin = [&] { return givenUp() || (!idleGrab_ && !writers_); };
    if (!changed_.wait_until(lock, deadline, mayBegin))
        return ORVALIS_ERROR_TIMEOUT;
    if (givenUp())
        return ORVALIS_ERROR_ABORTED;
    const auto shot = std::make_shared<Shot>();
    shot->deadline = deadline;
    shot->epoch = shotEpoch_ = epoch;
    shot_ = shot;
    idleGrab_ = true;
    changed_.notify_all();
    changed_.wait_until(lock, deadline, [&] { return shot->done || givenUp(); });
    if (shot->done) {
        image = std::move(shot->image);
        return shot->result;
    }
    if (shot_ == shot) { // the camera's thread has not taken it
        shot_ = nullptr;
        idleGrab_ = false;
        changed_.notify_all();
    }
    return givenUp() ? ORVALIS_ERROR_ABORTED : ORVALIS_ERROR_TIMEOUT;
}

Acquisition::WriteScope::WriteScope(Acquisition &acquisition) : acquisition_(acquisition)
{
    Lock lock(acquisition_.mutex_);
    ++acquisition_.writers_;
    ++acquisition_.epoch_;
    const Clock::time_point limit = Clock::now() + kWriterTimeout;
    acquisition_.endIdleGrab(lock, [&] { return Clock::now() >= limit; });
}

Acquisition::WriteScope::~WriteScope()
{
    const Lock lock(acquisition_.mutex_);
    --acquisition_.writers_;
    acquisition_.changed_.notify_all();
}

} // namespace orvalis
