// SPDX-License-Identifier: MIT
// The stream of one camera: start, stop, frame delivery and grabs.
#pragma once

#include "library/core/Device.h"
#include "library/core/FrameRing.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

namespace orvalis {

/// A grabbed image. `owner` keeps `data` valid.
struct GrabbedImage {
    const PixelFormat *format = nullptr; ///< null for a format that the library does not know
    const std::uint8_t *data = nullptr;
    std::size_t size = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::shared_ptr<const void> owner;
};

/// Starts and stops the stream of a camera, delivers its frames and serves grabs. All of this
/// happens on the camera's own thread, which runs serve(), so that a camera that does not answer
/// blocks only that thread, never a caller. All other functions may be called from any thread;
/// stop() and close() also from inside the callback.
class Acquisition {
public:
    /// How long stop() and close() wait for a camera that does not answer. The interface promises
    /// one second.
    static constexpr std::chrono::milliseconds kStopTimeout{800};
    /// Likewise, once the camera is known to be gone.
    static constexpr std::chrono::milliseconds kStopTimeoutIfLost{200};
    /// A precondition of start(). Runs on the camera's thread.
    using Check = std::function<OResult()>;

    /// Sets `lost` when the device reports that it is gone. `device` and `lost` must outlive this
    /// object.
    Acquisition(Device &device, std::atomic<bool> &lost);
    Acquisition(const Acquisition &) = delete;
    Acquisition &operator=(const Acquisition &) = delete;

    /// Runs the camera's thread until leave(). Destroy this object only after serve() has returned.
    void serve();
    /// Ends serve(). No other call may follow.
    void leave() noexcept;

    /// Starts the stream and invalidates the frames of the previous one. ORVALIS_ERROR_BUSY while
    /// it streams, also from inside the callback. ORVALIS_ERROR_NOT_INITIALIZED after endSession()
    /// of the same or a later `session`. ORVALIS_ERROR_ABORTED if stop() is called meanwhile.
    OResult start(OFrameCallback callback, std::uint64_t session = kLastSession, Check check = {});
    /// When it returns, no callback runs and none will. From inside the callback it returns at
    /// once, and that callback is the last. The frames stay valid. A camera that does not answer
    /// stops later.
    void stop();
    /// Begins to stop, ends an idle grab, and refuses later start() calls of this or an earlier
    /// session. Sessions are numbered from 1.
    void endSession(std::uint64_t session);
    /// Begins the final stop and ends all waits. Frames stay valid until destruction.
    void beginClose();
    /// Waits for a running callback, and until `limit` for the camera; the time that the callback
    /// takes extends the limit. Returns the extended limit.
    Clock::time_point waitUntilStopped(Clock::time_point limit);
    /// Calls beginClose() and waits as stop() does.
    void close();

    /// True from start() until the camera has stopped.
    bool streaming() const;
    /// True inside the callback of this stream.
    bool onDeliveryThread() const;
    /// Whether Bayer frames get a colour plane, from the next frame on.
    void setBayerConversion(bool enable) { bayerConversion_ = enable; }

    /// Returns the next frame of a running stream, or takes an image if no stream runs.
    /// ORVALIS_ERROR_TIMEOUT; ORVALIS_ERROR_ABORTED by stop, start, close or a WriteScope.
    OResult grab(GrabbedImage &image, Clock::time_point deadline);

    /// Hold it while you change the camera's settings: cancels an idle grab, so that the change
    /// does not wait for it, and delays new ones.
    class WriteScope {
    public:
        explicit WriteScope(Acquisition &acquisition);
        ~WriteScope();
        WriteScope(const WriteScope &) = delete;
        WriteScope &operator=(const WriteScope &) = delete;

    private:
        Acquisition &acquisition_;
    };

private:
    static constexpr std::uint64_t kLastSession = ~std::uint64_t{0};

    enum class State {
        Idle,
        Starting,  // start() waits for the camera's thread
        Streaming, // frames are delivered
        Stopping   // a stop was requested
    };
    using Lock = std::unique_lock<std::mutex>;
    /// An order from start() to the camera's thread.
    struct Start {
        OFrameCallback callback = nullptr;
        Check check;
        bool done = false;
        OResult result = ORVALIS_OK;
    };
    /// An order from an idle grab to the camera's thread.
    struct Shot {
        Clock::time_point deadline;
        std::uint64_t epoch = 0;
        bool done = false;
        OResult result = ORVALIS_OK;
        GrabbedImage image;
    };

    // Called by callers' threads:
    OResult refusal(std::uint64_t session, std::uint64_t stops) const;
    void askToStop();
    bool endsIdleGrab() const;
    OResult grabFromStream(Lock &lock, GrabbedImage &image, Clock::time_point deadline);
    OResult grabIdle(Lock &lock, GrabbedImage &image, Clock::time_point deadline);
    void endIdleGrab(Lock &lock, const std::function<bool()> &over);

    // Called by the camera's thread:
    void runStream(Lock &lock);
    OResult begin(const Start &start) noexcept;
    void deliverFrames();
    void endStream() noexcept;
    void deliver(const RawImage &image);
    bool publish(const std::shared_ptr<Frame> &frame);
    void callbackReturned();
    bool stopAsked() const;
    void pauseUnlessStopped(std::chrono::milliseconds time);
    void takeShot(Lock &lock);
    OResult takeImage(RawImage &image, const Shot &shot);

    Device &device_;
    std::atomic<bool> &lost_;
    std::atomic<bool> bayerConversion_{false};

    FrameRing ring_;                    // camera's thread only
    OFrameCallback callback_ = nullptr; // likewise

    mutable std::mutex mutex_; // guards everything below
    std::condition_variable changed_;
    State state_ = State::Idle;
    std::shared_ptr<Start> start_; // pending order for the camera's thread
    std::shared_ptr<Shot> shot_;   // likewise
    bool inCallback_ = false;
    bool leaving_ = false;
    bool closed_ = false;
    std::uint64_t endedSession_ = 0; // the latest session that has ended
    std::uint64_t stops_ = 0;        // number of stop requests
    std::uint64_t stream_ = 0;       // number of streams started
    std::uint64_t published_ = 0;    // number of frames of all streams
    int streamGrabs_ = 0;            // number of grabs that wait for the next frame
    std::shared_ptr<Frame> newest_;  // null unless such grabs wait
    std::uint64_t epoch_ = 0;        // idle grabs of an older epoch are cancelled
    bool idleGrab_ = false;          // from the order to the end of Device::takeImage()
    std::uint64_t shotEpoch_ = 0;    // the epoch of that grab
    int writers_ = 0;                // number of WriteScopes
};

} // namespace orvalis
