// SPDX-License-Identifier: MIT
// What became of the frames of a stream.
#include "library/genicam/StreamCounters.h"

namespace orvalis {

const std::array<StreamCounters::Node, StreamCounters::kindCount> StreamCounters::nodes{{
    {"StreamDeliveredFrameCount", "Delivered Frames", "Frames that reached the host complete."},
    {"StreamFailedFrameCount", "Failed Frames",
     "Frames that were given up because a part of them did not arrive."},
    {"StreamUnderrunCount", "Underruns", "Frames that the host had no room for."},
    {"StreamResentPacketCount", "Resent Packets", "Packets that were asked for once more."},
    {"StreamMissingPacketCount", "Missing Packets", "Packets that never came."},
}};

void StreamCounters::add(Kind kind)
{
    const std::lock_guard lock(mutex_);
    ++counted_[kind];
}

void StreamCounters::attach(ArvStream *stream)
{
    const std::lock_guard lock(mutex_);
    stream_ = stream;
}

void StreamCounters::detach()
{
    const std::lock_guard lock(mutex_);
    counted_ = present();
    stream_ = nullptr;
}

void StreamCounters::reset()
{
    const std::lock_guard lock(mutex_);
    offset_ = present();
}

StreamCounters::Values StreamCounters::values() const
{
    const std::lock_guard lock(mutex_);
    Values values = present();
    for (std::size_t i = 0; i < values.size(); ++i) {
        values[i] -= offset_[i];
    }
    return values;
}

StreamCounters::Values StreamCounters::present() const
{
    Values values = counted_;
    if (stream_ == nullptr) {
        return values;
    }
    guint64 completed = 0;
    guint64 failed = 0;
    guint64 underruns = 0;
    arv_stream_get_statistics(stream_, &completed, &failed, &underruns);
    values[Failed] += static_cast<std::int64_t>(failed);
    values[Underruns] += static_cast<std::int64_t>(underruns);
    if (ARV_IS_GV_STREAM(stream_)) {
        guint64 resent = 0;
        guint64 missing = 0;
        arv_gv_stream_get_statistics(ARV_GV_STREAM(stream_), &resent, &missing);
        values[Resent] += static_cast<std::int64_t>(resent);
        values[Missing] += static_cast<std::int64_t>(missing);
    }
    return values;
}

} // namespace orvalis
