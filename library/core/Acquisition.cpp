// SPDX-License-Identifier: MIT
// The stream of one camera: the callers' side, requests and waits.
#include "library/core/Acquisition.h"

#include <algorithm>
#include <utility>

namespace orvalis {

namespace {

using namespace std::chrono_literals;

/// A wake() before the device begins to wait has no effect, so repeat it.
constexpr auto kWakeAgain = 20ms;

} // namespace

Acquisition::Acquisition(Device &device, std::atomic<bool> &lost) : device_(device), lost_(lost) {}

bool Acquisition::streaming() const
{
    const std::lock_guard lock(mutex_);
    return state_ != State::Idle;
}

OResult Acquisition::start(OFrameCallback callback, std::uint64_t session, Check check)
{
    if (onDeliveryThread())
        return ORVALIS_ERROR_BUSY; // the old stream ends only when this callback returns
    const auto order = std::make_shared<Start>();
    order->callback = callback;
    order->check = std::move(check);
    Lock lock(mutex_);
    const std::uint64_t stops = stops_;
    const auto refused = [&] { return refusal(session, stops); };
    changed_.wait(lock, [&] { return state_ != State::Stopping || refused(); });
    if (const OResult result = refused(); result != ORVALIS_OK)
        return result;
    if (state_ != State::Idle)
        return ORVALIS_ERROR_BUSY;
    state_ = State::Starting;
    start_ = order;
    ++epoch_;
    const auto settled = [&] { return order->done || refused(); };
    endIdleGrab(lock, settled);
    changed_.wait(lock, settled);
    return order->done ? order->result : refused();
}

/// The reason to abandon a start of `session` that began after `stops` stop requests, or
/// ORVALIS_OK. Under the lock.
OResult Acquisition::refusal(std::uint64_t session, std::uint64_t stops) const
{
    if (closed_)
        return ORVALIS_ERROR_BAD_HANDLE;
    if (session <= endedSession_)
        return ORVALIS_ERROR_NOT_INITIALIZED;
    return stops != stops_ ? ORVALIS_ERROR_ABORTED : ORVALIS_OK;
}

/// Requests a stop. Cancels a start that the camera's thread has not taken yet. Under the lock.
void Acquisition::askToStop()
{
    ++stops_;
    if (start_) {
        start_ = nullptr;
        state_ = State::Idle;
    } else if (state_ != State::Idle) {
        state_ = State::Stopping;
    }
    changed_.notify_all();
}

Clock::time_point Acquisition::waitUntilStopped(Clock::time_point limit)
{
    if (onDeliveryThread())
        return limit;
    Lock lock(mutex_);
    const auto isOver = [this] { return state_ != State::Stopping && !endsIdleGrab(); };
    const auto deadline = [this] {
        return Clock::now() + (lost_ ? kStopTimeoutIfLost : kStopTimeout);
    };
    limit = std::min(limit, deadline());
    while (!isOver() && Clock::now() < limit) {
        if (inCallback_)
            limit = deadline();
        lock.unlock();
        device_.wake();
        lock.lock();
        changed_.wait_for(lock, kWakeAgain, isOver);
    }
    return limit;
}

/// True while a cancelled idle grab still runs. Under the lock.
bool Acquisition::endsIdleGrab() const { return idleGrab_ && shotEpoch_ != epoch_; }

void Acquisition::stop()
{
    {
        const Lock lock(mutex_);
        askToStop();
    }
    waitUntilStopped(Clock::now() + kStopTimeout);
}

void Acquisition::endSession(std::uint64_t session)
{
    const Lock lock(mutex_);
    endedSession_ = std::max(endedSession_, session);
    ++epoch_;
    askToStop();
}

void Acquisition::beginClose()
{
    const Lock lock(mutex_);
    closed_ = true;
    ++epoch_;
    askToStop();
}

void Acquisition::close()
{
    beginClose();
    waitUntilStopped(Clock::now() + kStopTimeout);
}

void Acquisition::leave() noexcept
{
    beginClose();
    const Lock lock(mutex_);
    device_.wake(); // under the lock: after it is released, serve() may end and this object be
                    // destroyed
    leaving_ = true;
    changed_.notify_all();
}

/// Wakes the device until the cancelled idle grab has ended or `over` is true. Increment the epoch
/// first.
void Acquisition::endIdleGrab(Lock &lock, const std::function<bool()> &over)
{
    changed_.notify_all();
    while (idleGrab_ && !over()) {
        lock.unlock();
        device_.wake();
        lock.lock();
        changed_.wait_for(lock, kWakeAgain, [&] { return !idleGrab_ || over(); });
    }
}

} // namespace orvalis
