// SPDX-License-Identifier: MIT
// Interface of a stream listener: receives the stream's format once, then every frame.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <chrono>
#include <cstdint>

/// Properties shared by all frames of one stream, from its start to its stop.
struct StreamInfo {
    OSizeInfo region{};                  ///< pixels
    std::uint32_t pixelFormat = 0;       ///< PFNC code of the delivered frames
    std::uint32_t sensorPixelFormat = 0; ///< PFNC code that the camera is set to
    unsigned significantBits = 0;        ///< of one sample; 0 if unknown
};

/// Which frame of a stream, and when it arrived.
struct FrameStamp {
    std::uint64_t index = 0; ///< 1 for the first frame of the stream; never restarted while it runs
    std::chrono::steady_clock::time_point received; ///< for intervals
    std::chrono::system_clock::time_point wallTime; ///< for people and file names
};

/// A frame and its stamp. The camera library owns the record and its planes: they stay unchanged
/// until 8 further frames and 200 ms have passed, and become invalid with the next start or with
/// the close of the camera (see OImageFrame).
struct PublishedFrame {
    OImageFrame *frame = nullptr;
    FrameStamp stamp;
};

/// Listens to a stream. A tap must outlive its attachment to the hub.
class FrameTap {
public:
    virtual ~FrameTap() = default;

    /// Before the first frame. GUI thread.
    virtual void started(const StreamInfo &info) { (void)info; }
    /// One frame. Runs in the camera library's thread, where expensive operations are not allowed:
    /// must be O(1), without waiting, allocating, or copying pixels.
    virtual void frame(const PublishedFrame &published) = 0;
    /// After the last frame. GUI thread.
    virtual void stopped() {}
};
