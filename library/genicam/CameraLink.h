// SPDX-License-Identifier: MIT
// The one Aravis device of an open camera, and whose turn it is to talk to it.
#pragma once

#include "library/core/Device.h"
#include "library/genicam/GigePresence.h"
#include "library/genicam/Glib.h"

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace orvalis {

/// Aravis takes one call per camera at a time, and a call to a camera that is gone lasts for
/// seconds. So calls take turns, and whoever waits for a turn is sent away at once when the camera
/// is known to be lost. Also the place where the thread that waits for images is woken. Any thread.
class CameraLink {
public:
    /// Takes over the reference.
    explicit CameraLink(ArvDevice *device);
    ~CameraLink();
    CameraLink(const CameraLink &) = delete;
    CameraLink &operator=(const CameraLink &) = delete;

    /// The right to call Aravis, until destruction; false if the camera is lost.
    class Turn {
    public:
        explicit Turn(CameraLink *link) : link_(link) {}
        Turn(Turn &&other) noexcept : link_(std::exchange(other.link_, nullptr)) {}
        ~Turn();
        /// False where the camera is lost: there is no turn then.
        explicit operator bool() const { return link_ != nullptr; }

    private:
        CameraLink *link_;
    };
    /// Waits for the turn.
    Turn turn();
    /// The same, but none if the camera can be proven to be gone without a word to it.
    Turn turnUnlessGone();

    /// Both only for the thread that has the turn.
    ArvDevice *device() const { return device_.get(); }
    /// The engine of the device's nodes, which owns it.
    ArvGc *genicam() const { return arv_device_get_genicam(device_.get()); }

    /// What `failure` means; an error that says that the camera is gone marks it lost. That no
    /// answer came in time says so only if nobody answers a second question either. Only for
    /// the thread that has the turn.
    OResult resultOf(const Failure &failure);

    /// True once the camera is known to be gone.
    bool lost() const { return lost_; }
    /// From now on the camera counts as lost, for ever. Ends all waits. `reason` is for the debug
    /// output.
    void markLost(const char *reason);

    /// A buffer of the stream is full or given up. Aravis could wait for buffers itself, but
    /// nothing ends such a wait early: in slices of 20 ms a wake() took 7 ms to be noticed instead
    /// of 0.03, and an idle stream 150 times the processor time.
    void bufferDone();
    /// Ends the present or the next waitForBuffer().
    void wake();
    /// Forgets a wake() that nobody has noticed.
    void forgetWake();

    /// Why a wait ended.
    enum class Event { Buffer, Wake, Lost, Timeout };
    /// Waits for bufferDone(), wake(), the loss of the camera, or `limit`. One thread at a time.
    Event waitForBuffer(Clock::time_point limit);

    /// Leaves the camera, after the call that is under way. Takes seconds if the camera is gone.
    /// Nobody asks for a turn any more.
    void close();

private:
    void giveBack();
    bool answers();

    const GigePresence presence_;
    GPtr<ArvDevice> device_;
    std::atomic<bool> lost_{false};

    std::mutex mutex_; // guards everything below
    std::condition_variable changed_;
    bool taken_ = false;
    bool woken_ = false;
    bool done_ = false;
};

} // namespace orvalis
