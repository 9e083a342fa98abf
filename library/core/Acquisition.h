// SPDX-License-Identifier: MIT
// The stream of one camera: its delivery thread, its frames, and grabs beside it.
#pragma once

#include "library/core/Device.h"
#include "library/core/FrameRing.h"

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

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

/// Starts and stops the stream of a camera, delivers its frames and serves grabs. Every function
/// may be called from any thread; stop() and close() from inside the callback too.
class Acquisition {
public:
    /// `lost` is set when the device reports that it is gone. Both outlive this object.
    Acquisition(Device &device, std::atomic<bool> &lost);
    /// Stops the stream. Never on the delivery thread.
    ~Acquisition();
    Acquisition(const Acquisition &) = delete;
    Acquisition &operator=(const Acquisition &) = delete;

    /// ORVALIS_ERROR_BUSY while it streams, also from inside the callback; the frames of the last
    /// stream end. ORVALIS_ERROR_NOT_INITIALIZED after endSession() of the same or a later
    /// `session`.
    OResult start(OFrameCallback callback, std::uint64_t session = kLastSession);
    /// When it returns no callback runs and none will; from inside the callback it returns at once
    /// and that callback is the last. The frames stay.
    void stop();
    /// Stops, and lets nobody start who came in a session of the library that has ended. Sessions
    /// are numbered from 1 upwards.
    void endSession(std::uint64_t session);
    /// Stops for ever and ends all waits. Frames stay until destruction.
    void close();

    /// True from start() to stop().
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
        Starting,  // start() is at work
        Streaming, // the delivery thread runs
        Stopping,  // it has been asked to end
        Ended      // it has nothing left to do and waits to be joined
    };
    using Lock = std::unique_lock<std::mutex>;

    OResult claimStart(std::uint64_t session);
    OResult launch();
    void failStart();
    void joinEnded(Lock &lock);
    void deliverFrames();
    OResult nextImage(RawImage &image) noexcept;
    void endStream() noexcept;
    void deliver(const RawImage &image);
    void publish(const std::shared_ptr<Frame> &frame);
    bool stopAsked() const;
    void pauseUnlessStopped(std::chrono::milliseconds time);

    OResult grabFromStream(Lock &lock, GrabbedImage &image, Clock::time_point deadline);
    OResult grabIdle(Lock &lock, GrabbedImage &image, Clock::time_point deadline);
    OResult takeImage(RawImage &image, Clock::time_point deadline, std::uint64_t epoch);
    void endIdleGrab(Lock &lock, Clock::time_point limit);

    Device &device_;
    std::atomic<bool> &lost_;
    std::atomic<bool> bayerConversion_{false};

    FrameRing ring_;                    // delivery thread; without one, whoever is in Starting
    OFrameCallback callback_ = nullptr; // written in Starting

    mutable std::mutex mutex_; // guards everything below
    std::condition_variable changed_;
    State state_ = State::Idle;
    std::thread thread_;
    bool closed_ = false;
    std::uint64_t endedSession_ = 0; // the latest one that has ended
    std::uint64_t stream_ = 0;       // counts starts
    std::uint64_t published_ = 0;    // counts frames of all streams
    int streamGrabs_ = 0;            // grabs that wait for the next frame
    std::shared_ptr<Frame> newest_;  // only while such grabs wait
    std::uint64_t epoch_ = 0;        // an idle grab of an older epoch gives up
    bool idleGrab_ = false;          // Device::takeImage() runs
    int writers_ = 0;                // WriteScopes
};

} // namespace orvalis
