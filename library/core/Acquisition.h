// SPDX-License-Identifier: MIT
// The stream of one camera: its frames, its delivery, and grabs beside it.
#pragma once

#include "library/core/Device.h"
#include "library/core/FrameRing.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

namespace orvalis {

/// An image that a grab may read for as long as it holds it.
struct GrabbedImage {
    const PixelFormat *format = nullptr; ///< null for a format that the library does not know
    const std::uint8_t *data = nullptr;
    std::size_t size = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::shared_ptr<const void> owner;
};

/// Starts and stops the stream of a camera, delivers its frames and serves grabs. All of that
/// happens on the camera's own thread, which runs serve(): a camera that does not answer holds up
/// that thread and no caller. Every other function may be called from any thread; stop() and
/// close() from inside the callback too.
class Acquisition {
public:
    /// How long stop() and close() wait for a camera that does not answer. Callers are promised a
    /// second.
    static constexpr std::chrono::milliseconds kPatience{800};
    /// Likewise, once the camera is known to be gone.
    static constexpr std::chrono::milliseconds kPatienceIfLost{200};
    /// What has to be true of the camera for a start. Runs on the camera's thread.
    using Check = std::function<OResult()>;

    /// `lost` is set when the device reports that it is gone. Both outlive this object.
    Acquisition(Device &device, std::atomic<bool> &lost);
    Acquisition(const Acquisition &) = delete;
    Acquisition &operator=(const Acquisition &) = delete;

    /// Does the work until leave(). Not before it has returned may this object be destroyed.
    void serve();
    /// Ends serve(); nobody calls anything any more.
    void leave() noexcept;

    /// ORVALIS_ERROR_BUSY while it streams, also from inside the callback; the frames of the last
    /// stream end. ORVALIS_ERROR_NOT_INITIALIZED after endSession() of the same or a later
    /// `session`. ORVALIS_ERROR_ABORTED by a stop() meanwhile.
    OResult start(OFrameCallback callback, std::uint64_t session = kLastSession, Check check = {});
    /// When it returns no callback runs and none will; from inside the callback it returns at once
    /// and that callback is the last. The frames stay. A camera that does not answer stops later.
    void stop();
    /// Begins to stop, and lets nobody start who came in a session of the library that has ended.
    /// Ends an idle grab. Sessions are numbered from 1 upwards.
    void endSession(std::uint64_t session);
    /// Begins to stop for ever and ends all waits. Frames stay until destruction.
    void beginClose();
    /// Waits for a callback that runs, and until `limit` for the camera: later by as long as the
    /// callback takes. Returns when it gives up, or would have.
    Clock::time_point waitUntilStopped(Clock::time_point limit);
    /// beginClose(), and waits as stop() does.
    void close();

    /// True from start() until the camera has stopped.
    bool streaming() const;
    /// True inside the callback of this stream.
    bool onDeliveryThread() const;
    /// Whether frames of a Bayer format get a colour plane, from the next frame on.
    void setBayerConversion(bool enable) { bayerConversion_ = enable; }

    /// The next image: of the stream while it runs, else one that is taken for it.
    /// ORVALIS_ERROR_TIMEOUT; ORVALIS_ERROR_ABORTED by stop, start, close or a WriteScope.
    OResult grab(GrabbedImage &image, Clock::time_point deadline);

    /// Held around whatever changes the camera: ends a grab that takes an image of its own, so that
    /// nobody who turns a knob waits for it, and lets none begin meanwhile.
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
        Starting,  // start() waits for the camera
        Streaming, // frames are delivered
        Stopping   // that has been asked to end
    };
    using Lock = std::unique_lock<std::mutex>;
    /// What start() asks the camera's thread for.
    struct Start {
        OFrameCallback callback = nullptr;
        Check check;
        bool done = false;
        OResult result = ORVALIS_OK;
    };
    /// What an idle grab asks the camera's thread for.
    struct Shot {
        Clock::time_point deadline;
        std::uint64_t epoch = 0;
        bool done = false;
        OResult result = ORVALIS_OK;
        GrabbedImage image;
    };

    // Of the callers:
    OResult refusal(std::uint64_t session, std::uint64_t stops) const;
    void askToStop();
    bool endsIdleGrab() const;
    OResult grabFromStream(Lock &lock, GrabbedImage &image, Clock::time_point deadline);
    OResult grabIdle(Lock &lock, GrabbedImage &image, Clock::time_point deadline);
    void endIdleGrab(Lock &lock, const std::function<bool()> &over);

    // Of the camera's thread:
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

    FrameRing ring_;                    // of the camera's thread
    OFrameCallback callback_ = nullptr; // likewise

    mutable std::mutex mutex_; // guards everything below
    std::condition_variable changed_;
    State state_ = State::Idle;
    std::shared_ptr<Start> start_; // for the camera's thread to take
    std::shared_ptr<Shot> shot_;   // likewise
    bool inCallback_ = false;
    bool leaving_ = false;
    bool closed_ = false;
    std::uint64_t endedSession_ = 0; // the latest one that has ended
    std::uint64_t stops_ = 0;        // counts stops, with and without a stream
    std::uint64_t stream_ = 0;       // counts starts
    std::uint64_t published_ = 0;    // counts frames of all streams
    int streamGrabs_ = 0;            // grabs that wait for the next frame
    std::shared_ptr<Frame> newest_;  // only while such grabs wait
    std::uint64_t epoch_ = 0;        // an idle grab of an older epoch gives up
    bool idleGrab_ = false;          // from its order to the end of Device::takeImage()
    std::uint64_t shotEpoch_ = 0;    // of that grab
    int writers_ = 0;                // WriteScopes
};

} // namespace orvalis
