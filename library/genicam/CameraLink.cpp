// SPDX-License-Identifier: MIT
// The Aravis device of an open camera, and the lock that serialises calls to it.
#include "library/genicam/CameraLink.h"

#include "library/core/Debug.h"

#include <utility>

namespace orvalis {
namespace {

/// The version register of a USB3 Vision camera (GenCP): every camera has it.
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

CameraLink::Lock CameraLink::acquire()
{
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return !locked_ || lost_; });
    if (lost_)
        return Lock(nullptr);
    locked_ = true;
    return Lock(this);
}

CameraLink::Lock CameraLink::acquireUnlessGone()
{
    if (const char *proof = lost_ ? nullptr : presence_.whyGone())
        markLost(proof);
    return acquire();
}

CameraLink::Lock::~Lock()
{
    if (link_ != nullptr)
        link_->release();
}

void CameraLink::release()
{
    const std::lock_guard lock(mutex_);
    locked_ = false;
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

/// Asks once more after a request that was not answered.
bool CameraLink::answers()
{
    if (lost_ || presence_.isKnown())
        return !lost_ && presence_.answers();
    Failure failure;
    guint32 version = 0;
    arv_device_read_register(device(), anyRegister, &version, failure.slot());
    return !failure.isSilence();
}

void CameraLink::markLost(const char *reason)
{
    const std::lock_guard lock(mutex_);
    if (!lost_)
        debugPrint("the camera is lost: %s", reason);
    lost_ = true;
    changed_.notify_all();
}

void CameraLink::bufferDone()
{
    const std::lock_guard lock(mutex_);
    bufferDone_ = true;
    changed_.notify_all();
}

void CameraLink::wake()
{
    const std::lock_guard lock(mutex_);
    wakePending_ = true;
    changed_.notify_all();
}

void CameraLink::clearWake()
{
    const std::lock_guard lock(mutex_);
    wakePending_ = false;
}

CameraLink::Event CameraLink::waitForBuffer(Clock::time_point limit)
{
    std::unique_lock lock(mutex_);
    changed_.wait_until(lock, limit, [this] { return bufferDone_ || wakePending_ || lost_; });
    if (lost_)
        return Event::Lost;
    if (std::exchange(wakePending_, false))
        return Event::Wake;
    return std::exchange(bufferDone_, false) ? Event::Buffer : Event::Timeout;
}

void CameraLink::close()
{
    {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return !locked_; });
    }
    // The heartbeat thread, which may be inside onControlLost(), ends with the device.
    device_.reset();
}

} // namespace orvalis
