// SPDX-License-Identifier: MIT
// Grabs: the next frame of a running stream, or an image taken for the purpose.
#include "library/core/Acquisition.h"

#include <cstring>
#include <vector>

namespace orvalis {

namespace {

using namespace std::chrono_literals;

constexpr auto kWakeAgain = 20ms;
/// A write goes on after this even if the device does not let go of its grab.
constexpr auto kWriterPatience = 500ms;

GrabbedImage grabbed(const std::shared_ptr<Frame> &frame)
{
    const OImageFrame &record = frame->record;
    return {frame->format, record.raw, record.rawSize, record.width, record.height, frame};
}

GrabbedImage grabbed(const RawImage &image)
{
    GrabbedImage result{findPixelFormat(image.pixelFormat),
                        image.data,
                        image.size,
                        image.width,
                        image.height,
                        image.owner};
    if (!image.owner && image.data) {
        auto copy =
            std::make_shared<std::vector<std::uint8_t>>(image.data, image.data + image.size);
        result.data = copy->data();
        result.owner = std::move(copy);
    }
    return result;
}

} // namespace

OResult Acquisition::grab(GrabbedImage &image, Clock::time_point deadline)
{
    if (onDeliveryThread())
        return ORVALIS_ERROR_TIMEOUT; // the next frame cannot come before this call returns
    Lock lock(mutex_);
    // Nothing but a close ends this wait: a grab that went on while the stream starts would take
    // the camera away from it.
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
    const auto mayBegin = [&] { return closed_ || epoch_ != epoch || (!idleGrab_ && !writers_); };
    if (!changed_.wait_until(lock, deadline, mayBegin))
        return ORVALIS_ERROR_TIMEOUT;
    if (closed_ || epoch_ != epoch)
        return ORVALIS_ERROR_ABORTED;
    idleGrab_ = true;
    lock.unlock();
    RawImage raw;
    OResult result = ORVALIS_ERROR_DEVICE;
    try {
        result = takeImage(raw, deadline, epoch);
        if (result == ORVALIS_OK)
            image = grabbed(raw);
    } catch (...) {
        result = ORVALIS_ERROR_OUT_OF_MEMORY;
    }
    lock.lock();
    idleGrab_ = false;
    changed_.notify_all();
    return result;
}

/// Device::takeImage() without the wakes that were meant for somebody else.
OResult Acquisition::takeImage(RawImage &image, Clock::time_point deadline, std::uint64_t epoch)
{
    for (;;) {
        const OResult result = device_.takeImage(image, deadline);
        if (result != ORVALIS_ERROR_ABORTED)
            return result;
        Lock lock(mutex_);
        if (changed_.wait_for(lock, 1ms, [&] { return closed_ || epoch_ != epoch; }))
            return ORVALIS_ERROR_ABORTED;
        if (Clock::now() >= deadline)
            return ORVALIS_ERROR_TIMEOUT;
    }
}

/// Waits, until `limit` at most, for an idle grab to give up. The epoch has been raised before.
void Acquisition::endIdleGrab(Lock &lock, Clock::time_point limit)
{
    changed_.notify_all();
    while (idleGrab_ && Clock::now() < limit) {
        lock.unlock();
        device_.wake();
        lock.lock();
        changed_.wait_for(lock, kWakeAgain, [this] { return !idleGrab_; });
    }
}

Acquisition::WriteScope::WriteScope(Acquisition &acquisition) : acquisition_(acquisition)
{
    Lock lock(acquisition_.mutex_);
    ++acquisition_.writers_;
    ++acquisition_.epoch_;
    acquisition_.endIdleGrab(lock, Clock::now() + kWriterPatience);
}

Acquisition::WriteScope::~WriteScope()
{
    const Lock lock(acquisition_.mutex_);
    --acquisition_.writers_;
    acquisition_.changed_.notify_all();
}

} // namespace orvalis
