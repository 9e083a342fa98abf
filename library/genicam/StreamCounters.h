// SPDX-License-Identifier: MIT
// Counters of a stream's frames and packets.
#pragma once

#include "library/genicam/Glib.h"

#include <array>
#include <cstdint>
#include <mutex>
#include <string_view>

namespace orvalis {

/// Counters of the present or the last acquisition. Any thread.
class StreamCounters {
public:
    /// What is counted: frames (the first four) and packets.
    enum Kind { Delivered, Failed, OtherPayload, Underruns, Resent, Missing, kindCount };
    /// One value for each kind.
    using Values = std::array<std::int64_t, kindCount>;

    /// The node of a counter.
    struct Node {
        const char *name;
        const char *displayName;
        const char *description;
    };
    static const std::array<Node, kindCount> nodes;             ///< in the order of the kinds
    static constexpr const char *category = "StreamStatistics"; ///< contains the nodes
    static constexpr const char *resetCommand = "StreamStatisticsReset"; ///< calls reset()

    /// The number of packets of a frame with 16-bit and with 64-bit block IDs; received frames
    /// reveal which a camera uses. 0: unknown.
    struct PacketsPerFrame {
        std::int64_t shortIds = 0;
        std::int64_t longIds = 0;
    };

    /// Adds `count`.
    void add(Kind kind, std::int64_t count = 1);
    /// Includes the counters of an Aravis stream, which must stay alive until detach().
    void attach(ArvStream *stream, PacketsPerFrame packets);
    /// Reports a finished buffer of that stream. Called on the stream's thread.
    void bufferDone(bool complete);
    /// Adds the stream's counters to the totals and releases the stream.
    void detach();
    /// Resets all counters to 0.
    void reset();
    /// All counters at one moment.
    Values values() const;

private:
    Values present() const;
    std::int64_t missingPackets(std::int64_t failed) const;

    mutable std::mutex mutex_; // guards everything below
    Values counted_{};         // from add() and from earlier streams of this acquisition
    Values offset_{};          // values at the last reset()
    ArvStream *stream_ = nullptr;
    PacketsPerFrame packets_;
    // State of stream_:
    std::int64_t framesDone_ = 0; // complete or not
    std::int64_t received_ = 0;   // packets received when the last frame was done
    std::int64_t longFrames_ = 0; // number of frames whose packet count fits long IDs, minus
                                  // as many as short IDs need
    std::int64_t missing_ = 0;
};

} // namespace orvalis
