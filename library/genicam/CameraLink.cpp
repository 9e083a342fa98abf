// SPDX-License-Identifier: MIT
// The one Aravis device of an open camera, and whose turn it is to talk to it.
#include "library/genicam/CameraLink.h"

#include "library/core/Debug.h"

#include <utility>

namespace orvalis {
namespace {

/// Of a USB3 Vision camera, by the control protocol's standard (GenCP): its version.
constexpr std::uint32_t anyRegister = 0x0000;

/// Runs on Aravis' heartbeat thread.
void onControlLost(ArvDevice *, gpointer link)
{
    static_cast<CameraLink *>(link)->markLost("no answer to a heartbeat, or control is lost");
}

} // namespace

CameraLink::CameraLink(ArvDevice *device) : presence_(device), device_(device)
{
    arv_device_set_range_check_policy(device, ARV_RANGE_CHECK_POLICY_ENABLE);
    arv_device_set_access_check_policy(device, ARV_ACCESS_CHECK_POLICY_ENABLE);
    g_signal_connect(device, "control-lost", G_CALLBACK(onControlLost), this);
}

CameraLink::~CameraLink() { close(); }

CameraLink::Turn CameraLink::turn()
{
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return !taken_ || lost_; });
    if (lost_) {
        return Turn(nullptr);
    }
    taken_ = true;
    return Turn(this);
}

CameraLink::Turn CameraLink::turnUnlessGone()
{
    if (const char *proof = lost_ ? nullptr : presence_.whyGone()) {
        markLost(proof);
    }
    return turn();
}

CameraLink::Turn::~Turn()
{
    if (link_ != nullptr) {
        link_->giveBack();
    }
}

void CameraLink::giveBack()
{
    const std::lock_guard lock(mutex_);
    taken_ = false;
    changed_.notify_all();
}

OResult CameraLink::resultOf(const Failure &failure)
{
    if (failure.isSilence() && (failure.meansLost() || !answers())) {
        markLost(failure.text());
        return ORVALIS_ERROR_CONNECTION_LOST;
    }
    return failure.result();
}

/// The camera's second chance after a call that was not answered.
bool CameraLink::answers()
{
    if (lost_ || presence_.isKnown()) {
        return !lost_ && presence_.answers();
    }
    Failure failure;
    guint32 version = 0;
    arv_device_read_register(device(), anyRegister, &version, failure.slot());
    return !failure.isSilence();
}

void CameraLink::markLost(const char *reason)
{
    const std::lock_guard lock(mutex_);
    if (!lost_) {
        debugPrint("the camera is lost: %s", reason);
    }
    lost_ = true;
    changed_.notify_all();
}

void CameraLink::bufferDone()
{
    const std::lock_guard lock(mutex_);
    done_ = true;
    changed_.notify_all();
}

void CameraLink::wake()
{
    const std::lock_guard lock(mutex_);
    woken_ = true;
    changed_.notify_all();
}

void CameraLink::forgetWake()
{
    const std::lock_guard lock(mutex_);
    woken_ = false;
}

CameraLink::Event CameraLink::waitForBuffer(Clock::time_point limit)
{
    std::unique_lock lock(mutex_);
    changed_.wait_until(lock, limit, [this] { return done_ || woken_ || lost_; });
    if (lost_) {
        return Event::Lost;
    }
    if (std::exchange(woken_, false)) {
        return Event::Wake;
    }
    return std::exchange(done_, false) ? Event::Buffer : Event::Timeout;
}

void CameraLink::close()
{
    {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return !taken_; });
    }
    // The heartbeat thread, which may be inside onControlLost(), ends with the device.
    device_.reset();
}

} // namespace orvalis
