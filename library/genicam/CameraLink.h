// SPDX-License-Identifier: MIT
// The Aravis device of an open camera, and the lock that serialises calls to it.
#pragma once

#include "library/core/Device.h"
#include "library/genicam/GigePresence.h"
#include "library/genicam/Glib.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace orvalis {

/// Aravis permits one call for each camera at a time, and a call to a camera that is gone takes
/// seconds. So calls are serialised, and a caller that waits for the lock is refused as soon as the
/// camera is known to be lost. The thread that waits for images also waits here. Any thread.
class CameraLink {
public:
    /// Takes ownership of the reference.
    explicit CameraLink(ArvDevice *device);
    ~CameraLink();
    CameraLink(const CameraLink &) = delete;
    CameraLink &operator=(const CameraLink &) = delete;

    /// Permits calls to Aravis until destruction; empty if the camera is lost.
    class Lock {
    public:
        explicit Lock(CameraLink *link) : link_(link) {}
        Lock(Lock &&other) noexcept : link_(std::exchange(other.link_, nullptr)) {}
        ~Lock();
        /// False if the camera is lost: Aravis must not be called then.
        explicit operator bool() const { return link_ != nullptr; }

    private:
        CameraLink *link_;
    };
    /// Waits for the lock.
    Lock acquire();
    /// Likewise, but empty if the camera is proven to be gone without a request to it.
    Lock acquireUnlessGone();

    /// Call device() and genicam() only while you hold the lock.
    ArvDevice *device() const { return device_.get(); }
    /// The GenICam engine; belongs to the device.
    ArvGc *genicam() const { return arv_device_get_genicam(device_.get()); }

    /// Translates `failure`. Marks the camera lost if the error says that it is gone, or if a
    /// request timed out and the camera does not answer a second request either. Call it only while
    /// you hold the lock.
    OResult resultOf(const Failure &failure);

    /// True if the camera is known to be gone.
    bool lost() const { return lost_; }
    /// Marks the camera as lost, permanently, and ends all waits. `reason` is for debug messages.
    void markLost(const char *reason);

    /// Signals that a buffer of the stream is complete or abandoned. Aravis could wait for buffers
    /// itself, but nothing ends such a wait early: with waits of 20 ms each, a wake() took 7 ms to
    /// take effect instead of 0.03 ms, and an idle stream took 150 times the processor time.
    void bufferDone();
    /// Ends the current or the next waitForBuffer().
    void wake();
    /// Discards a pending wake().
    void clearWake();

    /// The reason why a wait ended.
    enum class Event { Buffer, Wake, Lost, Timeout };
    /// Waits for bufferDone(), wake(), loss of the camera, or `limit`. One thread at a time.
    Event waitForBuffer(Clock::time_point limit);

    /// Disconnects from the camera after the current call. Takes seconds if the camera is gone. No
    /// lock may be requested afterwards.
    void close();

private:
    void release();
    bool answers();

    const GigePresence presence_;
    GPtr<ArvDevice> device_;
    std::atomic<bool> lost_{false};

    std::mutex mutex_; // guards everything below
    std::condition_variable changed_;
    bool locked_ = false;
    bool wakePending_ = false;
    bool bufferDone_ = false;
};

} // namespace orvalis
