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
    enum Kind { Delivered, Failed, Underruns, Resent, Missing, kindCount };
    using Values = std::array<std::int64_t, kindCount>;

    /// Node that shows a counter.
    struct Node {
        const char *name;
        const char *displayName;
        const char *description;
    };
    static const std::array<Node, kindCount> nodes;
    static constexpr const char *category = "StreamStatistics";
    static constexpr const char *resetCommand = "StreamStatisticsReset";

    void add(Kind kind);
    /// Counts on with a stream of Aravis'. It stays alive until detach().
    void attach(ArvStream *stream);
    /// Keeps the stream's counts and forgets the stream.
    void detach();
    void reset();
    Values values() const;

private:
    Values present() const;

    mutable std::mutex mutex_; // guards everything below
    Values counted_{};         // by add(), and of earlier streams of this acquisition
    Values offset_{};          // what reset() found
    ArvStream *stream_ = nullptr;
};

} // namespace orvalis
