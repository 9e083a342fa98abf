// SPDX-License-Identifier: MIT
// One acquisition of a camera: Aravis' stream, its buffers, and the images that come out.
#pragma once

#include "library/genicam/CameraLink.h"
#include "library/genicam/PixelOrder.h"
#include "library/genicam/StreamCounters.h"

#include <memory>

namespace orvalis {

/// Memory of a stream, which images may hold on to after its end.
class BufferPool {
public:
    explicit BufferPool(GPtr<ArvStream> stream) : stream_(std::move(stream)) {}
    ~BufferPool() { end(); }
    BufferPool(const BufferPool &) = delete;
    BufferPool &operator=(const BufferPool &) = delete;

    /// Null after end().
    ArvStream *stream() const { return stream_.get(); }
    /// Takes a buffer back for the stream to fill, or frees it after end(). Any thread.
    void giveBack(ArvBuffer *buffer);
    /// Stops the stream's thread and frees what is not held. Never at the same time as stream() is
    /// used.
    void end();

private:
    std::mutex mutex_; // guards the life of stream_ against giveBack()
    GPtr<ArvStream> stream_;
};

/// What a stream is for.
enum class StreamUse {
    Continuous, ///< the user's: the camera is told that its parameters are locked
    OneImage    ///< a single image in between, with few buffers and nothing locked
};

/// One acquisition of a camera, from the moment that its stream exists to the moment that it is
/// gone. Functions that talk to the camera need its turn.
class StreamSession {
public:
    StreamSession(CameraLink &link, StreamCounters &counters, PixelOrder &order)
        : link_(link), counters_(counters), order_(order)
    {
    }
    ~StreamSession() { end(); }
    StreamSession(const StreamSession &) = delete;
    StreamSession &operator=(const StreamSession &) = delete;

    /// Makes the stream and starts the camera. Needs the turn.
    OResult start(StreamUse use);
    /// Stops the camera. Needs the turn.
    void stopCamera();
    /// Ends the stream. Images that are held stay valid.
    void end();

    /// The next complete image if one is there. Counts and recycles what is not complete.
    bool take(RawImage &image);
    /// Between a start() that succeeded and end().
    bool isRunning() const { return pool_ != nullptr; }
    /// Frames of which parts were missing, since the last image.
    std::uint64_t damagedInARow() const { return damagedInARow_; }
    /// True if the last image came after such frames.
    bool imageFollowsDamage() const { return imageFollowsDamage_; }
    /// True if the stream receives nothing at all, though its packets reach this computer: asked
    /// now and then, at the second time that this is found.
    bool isDeaf();

private:
    static void onStreamEvent(void *session, ArvStreamCallbackType type, ArvBuffer *buffer);
    void makePool(GPtr<ArvStream> stream, std::size_t payload, unsigned buffers);
    void countOther(ArvBufferStatus status);
    void handOver(ArvBuffer *buffer, RawImage &image);

    CameraLink &link_;
    StreamCounters &counters_;
    PixelOrder &order_;
    std::shared_ptr<BufferPool> pool_;
    std::size_t payload_ = 0; ///< bytes of a buffer
    bool parametersLocked_ = false;
    std::uint64_t damagedInARow_ = 0;
    bool imageFollowsDamage_ = false;
    bool foundDeaf_ = false;
    bool foreign_ = false; ///< Aravis does not know what the camera sends
};

} // namespace orvalis
