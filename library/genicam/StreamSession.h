// SPDX-License-Identifier: MIT
// One acquisition of a camera: Aravis' stream, its buffers, and the images received.
#pragma once

#include "library/genicam/CameraLink.h"
#include "library/genicam/PixelOrder.h"
#include "library/genicam/StreamCounters.h"

#include <memory>

namespace orvalis {

/// The memory of a stream; images may keep it after the end of the stream.
class BufferPool {
public:
    explicit BufferPool(GPtr<ArvStream> stream) : stream_(std::move(stream)) {}
    ~BufferPool() { end(); }
    BufferPool(const BufferPool &) = delete;
    BufferPool &operator=(const BufferPool &) = delete;

    /// Null after end().
    ArvStream *stream() const { return stream_.get(); }
    /// Returns a buffer to the stream, or frees it after end(). Any thread.
    void giveBack(ArvBuffer *buffer);
    /// Stops the stream's thread and frees all buffers that no image holds. Not concurrently with
    /// stream().
    void end();

private:
    std::mutex mutex_; // guards stream_ between end() and giveBack()
    GPtr<ArvStream> stream_;
};

/// The purpose of a stream.
enum class StreamUse {
    Continuous, ///< for a program: locks the camera's parameters
    OneImage    ///< for a grab: few buffers, nothing locked
};

/// One acquisition of a camera, from the creation of its stream to the end. Functions that
/// communicate with the camera need the link's lock.
class StreamSession {
public:
    StreamSession(CameraLink &link, StreamCounters &counters, PixelOrder &order)
        : link_(link), counters_(counters), order_(order)
    {
    }
    ~StreamSession() { end(); }
    StreamSession(const StreamSession &) = delete;
    StreamSession &operator=(const StreamSession &) = delete;

    /// Creates the stream and starts the camera. Needs the lock.
    OResult start(StreamUse use);
    /// Stops the camera. Needs the lock.
    void stopCamera();
    /// Ends the stream. Images stay valid.
    void end();

    /// Takes the next complete image without waiting. Counts and recycles incomplete ones.
    bool take(RawImage &image);
    /// True between a successful start() and end().
    bool isRunning() const { return pool_ != nullptr; }
    /// Number of incomplete frames since the last image.
    std::uint64_t damagedInARow() const { return damagedInARow_; }
    /// True if the last image followed incomplete frames.
    bool imageFollowsDamage() const { return imageFollowsDamage_; }
    /// True if the stream receives nothing although its packets reach this computer. Call it
    /// periodically: it must find so twice in a row.
    bool hasSilentSocket();

private:
    static void onStreamEvent(void *session, ArvStreamCallbackType type, ArvBuffer *buffer);
    void makePool(GPtr<ArvStream> stream, std::size_t payload, unsigned buffers);
    void countOther(ArvBufferStatus status);
    void handOver(ArvBuffer *buffer, RawImage &image);

    CameraLink &link_;
    StreamCounters &counters_;
    PixelOrder &order_;
    std::shared_ptr<BufferPool> pool_;
    std::size_t payload_ = 0; ///< buffer size in bytes
    bool parametersLocked_ = false;
    std::uint64_t damagedInARow_ = 0;
    bool imageFollowsDamage_ = false;
    bool foundSilentSocket_ = false;
    bool unsupportedPayload_ = false; ///< Aravis does not support the camera's payload
};

} // namespace orvalis
