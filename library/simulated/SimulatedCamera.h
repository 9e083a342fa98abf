// SPDX-License-Identifier: MIT
// One simulated camera: its state, whether or not a program has opened it.
#pragma once

#include "library/core/Device.h"
#include "library/simulated/FramePool.h"
#include "library/simulated/FrameScheduler.h"
#include "library/simulated/RegisterFile.h"
#include "library/simulated/Renderer.h"

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>

namespace orvalis::simulated {

/// A camera on the simulated bus. Every function may be called from any thread. Functions that take
/// a session return ORVALIS_ERROR_CONNECTION_LOST if the camera has left the bus since that session
/// was opened.
class SimulatedCamera {
public:
    /// 0 is not a valid session.
    using Session = std::uint64_t;

    /// Powers on the camera.
    SimulatedCamera(const CameraModel &model, std::size_t extraNodes);

    /// The fixed properties of the camera.
    const CameraModel &model() const { return model_; }
    /// Its nodes.
    const NodeTable &table() const { return table_; }

    /// False during a restart or a simulated fault.
    bool isOnBus() const;
    /// ORVALIS_ERROR_NOT_FOUND while it is off the bus, ORVALIS_ERROR_BUSY while a program has it
    /// open, ORVALIS_ERROR_DEVICE on demand.
    OResult open(Session &session);
    /// Ends the session and its stream. Idempotent.
    void close(Session session);

    /// Runs `action(registers, streaming)` under the lock, after the simulated access time.
    template <class Action> OResult look(Session session, Action action)
    {
        std::unique_lock lock(mutex_);
        if (const OResult result = answer(lock, session))
            return result;
        return action(static_cast<const RegisterFile &>(registers_), streaming());
    }
    /// Runs `action(registers)`, which writes the node or fails without an effect.
    /// ORVALIS_ERROR_ACCESS_DENIED if the node is not writable.
    template <class Action> OResult change(Session session, const NodeSpec &spec, Action action)
    {
        std::unique_lock lock(mutex_);
        if (const OResult result = answer(lock, session))
            return result;
        if (const OResult result = mayWrite(spec))
            return result;
        if (const OResult result = action(registers_))
            return result;
        return written(lock, spec);
    }
    /// Executes a command.
    OResult execute(Session session, const NodeSpec &spec);

    /// This function and those below are as in Device, for an open session.
    OResult startStream(Session session);
    /// @copydoc startStream
    OResult stopStream(Session session);
    /// @copydoc startStream
    OResult nextImage(Session session, RawImage &image, Clock::time_point deadline);
    /// @copydoc startStream
    OResult takeImage(Session session, RawImage &image, Clock::time_point deadline);
    /// @copydoc startStream
    void wake(Session session);

private:
    enum class Acquisition { None, Stream, Snapshot };
    using Lock = std::unique_lock<std::mutex>;

    // Call these with the lock held.
    bool streaming() const { return acquisition_ == Acquisition::Stream; }
    OResult answer(Lock &lock, Session session);
    OResult pass(Lock &lock, Session session, std::uint32_t duration);
    OResult mayWrite(const NodeSpec &spec) const;
    OResult written(Lock &lock, const NodeSpec &spec);
    void refreshMeasurements();
    void waitUntil(Lock &lock, Clock::time_point when);
    OResult run(std::uint32_t command);
    void leaveBus(std::chrono::milliseconds duration);
    void powerOn();
    OResult loadUserSet();
    OResult saveUserSet();
    void balanceOnce(Lock &lock);

    void begin(Acquisition acquisition);
    OResult waitForFrame(Lock &lock, Session session, RawImage &image, Clock::time_point deadline);
    OResult exposeFrame(Lock &lock, Clock::time_point due, Clock::time_point now, RawImage &image,
                        bool &delivered);
    bool losesFrame();
    void disguise(RawImage &image) const;
    void count(std::uint32_t address, std::uint64_t frames);
    void adjustAutomatic(Lock &lock, const SensorSettings &settings);
    void adjustBrightness(double mean);
    void adjustBalance(const std::array<double, 3> &meanLight, bool atOnce);
    Region autoArea(const SensorSettings &settings) const;
    FrameTiming timing() const;
    SensorSettings settings() const;
    FrameStamp stamp(Clock::time_point when) const;

    const CameraModel &model_;
    Renderer renderer_;
    FramePool pool_;

    mutable std::mutex mutex_; // guards all below
    std::condition_variable changed_;
    RegisterFile registers_;
    const NodeTable &table_;
    FrameScheduler scheduler_;
    Session session_ = 0; ///< the open session; 0: none
    Session lastSession_ = 0;
    Clock::time_point awayUntil_;
    Clock::time_point heldUntil_; ///< end of the simulated use by another program
    Clock::time_point stalledUntil_;
    Clock::time_point poweredOn_;
    Clock::time_point timestampZero_;
    Acquisition acquisition_ = Acquisition::None;
    std::uint64_t acquisitionNumber_ = 0;
    std::uint64_t framesLeft_ = 0;
    std::uint32_t frameNumber_ = 0;
    bool woken_ = false;
    std::uint32_t lossState_ = 88172645u;
};

} // namespace orvalis::simulated
