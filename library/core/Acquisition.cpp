// SPDX-License-Identifier: MIT
// The stream of one camera: start, stop and the delivery thread.
#include "library/core/Acquisition.h"

#include "library/core/Debug.h"

#include <algorithm>
#include <new>
#include <utility>

namespace orvalis {

namespace {

using namespace std::chrono_literals;

/// How long the delivery thread waits at a time; wake() ends a wait sooner.
constexpr auto kPatience = 500ms;
/// A wake() that came a moment too early is repeated.
constexpr auto kWakeAgain = 20ms;
/// A device that fails at once, again and again, must not keep a processor busy.
constexpr auto kAfterError = 20ms;

/// Whose frames the present thread delivers.
thread_local const Acquisition *t_delivering = nullptr;

} // namespace

Acquisition::Acquisition(Device &device, std::atomic<bool> &lost) : device_(device), lost_(lost) {}

Acquisition::~Acquisition() { close(); }

bool Acquisition::onDeliveryThread() const { return t_delivering == this; }

bool Acquisition::streaming() const
{
    const std::lock_guard lock(mutex_);
    return state_ != State::Idle && state_ != State::Ended;
}

OResult Acquisition::start(OFrameCallback callback, std::uint64_t session)
{
    if (const OResult result = claimStart(session); result != ORVALIS_OK)
        return result;
    callback_ = callback;
    ring_.clear();
    try {
        const OResult result = launch();
        if (result != ORVALIS_OK)
            failStart();
        return result;
    } catch (...) {
        failStart();
        throw;
    }
}

/// From Idle or Ended to Starting, with no idle grab under way.
OResult Acquisition::claimStart(std::uint64_t session)
{
    if (onDeliveryThread())
        return ORVALIS_ERROR_BUSY; // the old stream ends with this very callback
    Lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return state_ != State::Stopping; });
        if (closed_)
            return ORVALIS_ERROR_BAD_HANDLE;
        if (session <= endedSession_)
            return ORVALIS_ERROR_NOT_INITIALIZED;
        if (state_ == State::Starting || state_ == State::Streaming)
            return ORVALIS_ERROR_BUSY;
        if (state_ == State::Idle)
            break;
        joinEnded(lock);
    }
    state_ = State::Starting;
    ++epoch_;
    endIdleGrab(lock, Clock::time_point::max());
    return ORVALIS_OK;
}

OResult Acquisition::launch()
{
    if (const OResult result = device_.startStream(); result != ORVALIS_OK)
        return result;
    const Lock lock(mutex_);
    try {
        // Under the lock: whoever meets the state Streaming meets the thread.
        thread_ = std::thread(&Acquisition::deliverFrames, this);
    } catch (...) {
        endStream();
        throw std::bad_alloc(); // no more threads: the system is out of something
    }
    ++stream_;
    state_ = State::Streaming;
    changed_.notify_all();
    return ORVALIS_OK;
}

void Acquisition::failStart()
{
    const Lock lock(mutex_);
    state_ = State::Idle;
    changed_.notify_all();
}

/// Joins a thread that has ended; `lock` is released meanwhile.
void Acquisition::joinEnded(Lock &lock)
{
    std::thread ended = std::move(thread_);
    state_ = State::Idle;
    lock.unlock();
    if (ended.joinable())
        ended.join();
    lock.lock();
    changed_.notify_all();
}

void Acquisition::stop()
{
    Lock lock(mutex_);
    if (onDeliveryThread()) {
        if (state_ == State::Streaming)
            state_ = State::Stopping;
        changed_.notify_all();
        return;
    }
    changed_.wait(lock, [this] { return state_ != State::Starting; });
    if (state_ == State::Streaming) {
        state_ = State::Stopping;
        changed_.notify_all();
    }
    while (state_ == State::Stopping) {
        lock.unlock();
        device_.wake();
        lock.lock();
        changed_.wait_for(lock, kWakeAgain, [this] { return state_ != State::Stopping; });
    }
    if (state_ == State::Ended)
        joinEnded(lock);
}

void Acquisition::endSession(std::uint64_t session)
{
    {
        const Lock lock(mutex_);
        endedSession_ = std::max(endedSession_, session);
    }
    stop();
}

void Acquisition::close()
{
    {
        Lock lock(mutex_);
        closed_ = true;
        ++epoch_;
        changed_.notify_all();
        if (!onDeliveryThread())
            endIdleGrab(lock, Clock::now() + kPatience);
    }
    stop();
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

/// The delivery thread.
void Acquisition::deliverFrames()
{
    t_delivering = this;
    while (!stopAsked()) {
        RawImage image;
        const OResult result = nextImage(image);
        if (stopAsked())
            break;
        if (result == ORVALIS_OK) {
            deliver(image);
        } else if (result == ORVALIS_ERROR_CONNECTION_LOST) {
            lost_ = true;
            break;
        } else if (result != ORVALIS_ERROR_TIMEOUT) {
            pauseUnlessStopped(kAfterError);
        }
    }
    endStream();
    const Lock lock(mutex_);
    newest_.reset();
    state_ = State::Ended;
    changed_.notify_all();
}

OResult Acquisition::nextImage(RawImage &image) noexcept
{
    try {
        return device_.nextImage(image, Clock::now() + kPatience);
    } catch (...) {
        return ORVALIS_ERROR_OUT_OF_MEMORY;
    }
}

void Acquisition::endStream() noexcept
{
    try {
        device_.stopStream();
    } catch (...) {
        debugPrint("the stream could not be stopped");
    }
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
        debugPrint("frame dropped: no memory for it");
        if (frame)
            ring_.giveBack(std::move(frame));
        return;
    }
    publish(frame);
    callback_(&frame->record);
}

/// Hands the frame to the grabs that wait for it.
void Acquisition::publish(const std::shared_ptr<Frame> &frame)
{
    const Lock lock(mutex_);
    ++published_;
    newest_ = streamGrabs_ > 0 ? frame : nullptr;
    if (newest_)
        changed_.notify_all();
}

} // namespace orvalis
