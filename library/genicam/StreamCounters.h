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
    /// What is counted: frames, the first three, and packets.
    enum Kind { Delivered, Failed, Underruns, Resent, Missing, kindCount };
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

    /// Counts one more.
    void add(Kind kind);
    /// Counts on with a stream of Aravis'. It stays alive until detach(). A frame is sent in
    /// `packetsPerFrame` packets; 0 if that is not known.
    void attach(ArvStream *stream, std::int64_t packetsPerFrame);
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
    std::int64_t packetsPerFrame_ = 0;
    std::int64_t framesDone_ = 0; // of stream_, complete or not
    std::int64_t missing_ = 0;    // of stream_
};

} // namespace orvalis
