// SPDX-License-Identifier: MIT
// What became of the frames of a stream.
#pragma once

#include "library/genicam/Glib.h"

#include <array>
#include <cstdint>
#include <mutex>
#include <string_view>

namespace orvalis {

/// Counts over the present or the last acquisition. Any thread.
class StreamCounters {
public:
    /// What is counted: frames, the first four, and packets.
    enum Kind { Delivered, Failed, OtherPayload, Underruns, Resent, Missing, kindCount };
    /// One count for each kind.
    using Values = std::array<std::int64_t, kindCount>;

    /// Node that shows a counter.
    struct Node {
        const char *name;
        const char *displayName;
        const char *description;
    };
    static const std::array<Node, kindCount> nodes;             ///< in the order of the kinds
    static constexpr const char *category = "StreamStatistics"; ///< holds them
    static constexpr const char *resetCommand = "StreamStatisticsReset"; ///< calls reset()

    /// Packets that a frame is sent in, with block IDs of 16 and of 64 bits. Which of them a camera
    /// sends shows at the frames that come. 0: not known.
    struct PacketsPerFrame {
        std::int64_t shortIds = 0;
        std::int64_t longIds = 0;
    };

    /// Counts one more, or `count`.
    void add(Kind kind, std::int64_t count = 1);
    /// Counts on with a stream of Aravis'. It stays alive until detach().
    void attach(ArvStream *stream, PacketsPerFrame packets);
    /// A buffer of that stream came back. Called on the stream's thread.
    void bufferDone(bool complete);
    /// Keeps the stream's counts and forgets the stream.
    void detach();
    /// Counts from 0 again.
    void reset();
    /// All counts, taken at one moment.
    Values values() const;

private:
    Values present() const;
    std::int64_t missingPackets(std::int64_t failed) const;

    mutable std::mutex mutex_; // guards everything below
    Values counted_{};         // by add(), and of earlier streams of this acquisition
    Values offset_{};          // what reset() found
    ArvStream *stream_ = nullptr;
    PacketsPerFrame packets_;
    // Of stream_:
    std::int64_t framesDone_ = 0; // complete or not
    std::int64_t received_ = 0;   // packets, when the last frame was done
    std::int64_t longFrames_ = 0; // frames with as many packets as long IDs need, less those with
                                  // as many as short IDs need
    std::int64_t missing_ = 0;
};

} // namespace orvalis
