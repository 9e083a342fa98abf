// SPDX-License-Identifier: MIT
// The camera's own thread: runs streams, delivers frames, takes images for grabs.
#include "library/core/Acquisition.h"

#include "library/core/Debug.h"

#include <cstring>
#include <new>
#include <utility>
#include <vector>

namespace orvalis {

namespace {

using namespace std::chrono_literals;

/// How long nextImage() waits at a time; wake() ends a wait sooner.
constexpr auto kImageTimeout = 500ms;
/// Pause after an error, so that a device that fails immediately does not keep a processor busy.
constexpr auto kPauseAfterError = 20ms;

/// The object that the current thread serves.
thread_local const Acquisition *t_served = nullptr;

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

/// Calls `call` and translates exceptions.
template <typename Call> OResult resultOf(Call call) noexcept
{
    try {
        return call();
    } catch (const std::bad_alloc &) {
        return ORVALIS_ERROR_OUT_OF_MEMORY;
    } catch (...) {
        return ORVALIS_ERROR_DEVICE;
    }
}

} // namespace

bool Acquisition::onDeliveryThread() const { return t_served == this; }

void Acquisition::serve()
{
    t_served = this;
    Lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return leaving_ || start_ || shot_; });
        if (leaving_)
            return;
        if (start_)
            runStream(lock);
        else
            takeShot(lock);
    }
}

/// Runs one stream, from Starting to Idle. Releases `lock` while it calls the device.
void Acquisition::runStream(Lock &lock)
{
    const std::shared_ptr<Start> order = std::exchange(start_, nullptr);
    lock.unlock();
    callback_ = order->callback;
    ring_.clear();
    const OResult result = begin(*order);
    lock.lock();
    const bool wanted = state_ == State::Starting;
    order->result = result;
    order->done = wanted;
    if (wanted && result == ORVALIS_OK) {
        ++stream_;
        state_ = State::Streaming;
        changed_.notify_all();
        lock.unlock();
        deliverFrames();
        lock.lock();
    }
    if (result == ORVALIS_OK) {
        state_ = State::Stopping; // also after a loss
        newest_.reset();
        changed_.notify_all();
        lock.unlock();
        endStream();
        lock.lock();
    }
    state_ = State::Idle;
    changed_.notify_all();
}

OResult Acquisition::begin(const Start &start) noexcept
{
    return resultOf([&] {
        if (const OResult result = start.check ? start.check() : ORVALIS_OK; result != ORVALIS_OK)
            return result;
        return stopAsked() ? ORVALIS_ERROR_ABORTED : device_.startStream();
    });
}

bool Acquisition::stopAsked() const
{
    const std::lock_guard lock(mutex_);
    return state_ == State::Stopping;
}

void Acquisition::pauseUnlessStopped(std::chrono::milliseconds time)
{
    Lock lock(mutex_);
    changed_.wait_for(lock, time, [this] { return state_ == State::Stopping; });
}

void Acquisition::deliverFrames()
{
    while (!stopAsked()) {
        RawImage image;
        const OResult result =
            resultOf([&] { return device_.nextImage(image, Clock::now() + kImageTimeout); });
        if (result == ORVALIS_OK) {
            deliver(image);
        } else if (result == ORVALIS_ERROR_CONNECTION_LOST) {
            lost_ = true;
            return;
        } else if (result != ORVALIS_ERROR_TIMEOUT) {
            pauseUnlessStopped(kPauseAfterError);
        }
    }
}

void Acquisition::endStream() noexcept
{
    const OResult result = resultOf([this] {
        device_.stopStream();
        return ORVALIS_OK;
    });
    if (result != ORVALIS_OK)
        debugPrint("stopping the stream failed");
}

void Acquisition::deliver(const RawImage &image)
{
    const Clock::time_point now = Clock::now();
    std::shared_ptr<Frame> frame;
    try {
        frame = ring_.next(now);
        if (!fillFrame(*frame, image, bayerConversion_)) {
            debugPrint("frame dropped: %u x %u, format 0x%08x, %zu bytes", image.width,
                       image.height, image.pixelFormat, image.size);
            ring_.giveBack(std::move(frame));
            return;
        }
        ring_.deliver(frame, now);
    } catch (...) { // mostly std::bad_alloc
        debugPrint("frame dropped: out of memory");
        if (frame)
            ring_.giveBack(std::move(frame));
        return;
    }
    if (publish(frame)) {
        callback_(&frame->record);
        callbackReturned();
    }
}

/// Publishes the frame to waiting grabs. False if the stream has been stopped; otherwise stop()
/// waits for callbackReturned() from now on.
bool Acquisition::publish(const std::shared_ptr<Frame> &frame)
{
    const Lock lock(mutex_);
    if (state_ != State::Streaming)
        return false;
    ++published_;
    newest_ = streamGrabs_ > 0 ? frame : nullptr;
    if (newest_)
        changed_.notify_all();
    inCallback_ = true;
    return true;
}

void Acquisition::callbackReturned()
{
    const Lock lock(mutex_);
    inCallback_ = false;
}

/// Takes an image for an idle grab. Releases `lock` meanwhile.
void Acquisition::takeShot(Lock &lock)
{
    const std::shared_ptr<Shot> shot = std::exchange(shot_, nullptr);
    lock.unlock();
    GrabbedImage image;
    const OResult result = resultOf([&] {
        RawImage raw;
        const OResult taken = takeImage(raw, *shot);
        if (taken == ORVALIS_OK)
            image = grabbed(raw);
        return taken;
    });
    lock.lock();
    shot->image = std::move(image);
    shot->result = result;
    shot->done = true;
    idleGrab_ = false;
    changed_.notify_all();
}

/// Calls Device::takeImage() again after a wake() that was not meant for this grab.
OResult Acquisition::takeImage(RawImage &image, const Shot &shot)
{
    const auto givenUp = [&] { return epoch_ != shot.epoch; };
    Lock lock(mutex_);
    while (!givenUp()) {
        lock.unlock();
        const OResult result = device_.takeImage(image, shot.deadline);
        if (result != ORVALIS_ERROR_ABORTED)
            return result;
        if (Clock::now() >= shot.deadline)
            return ORVALIS_ERROR_TIMEOUT;
        lock.lock();
        changed_.wait_for(lock, 1ms, givenUp);
    }
    return ORVALIS_ERROR_ABORTED;
}

} // namespace orvalis
