// SPDX-License-Identifier: MIT
// Counters of a stream's frames and packets.
#include "library/genicam/StreamCounters.h"

#include <algorithm>
#include <utility>

namespace orvalis {

const std::array<StreamCounters::Node, StreamCounters::kindCount> StreamCounters::nodes{{
    {"StreamDeliveredFrameCount", "Delivered Frames", "Frames that reached the host complete."},
    {"StreamFailedFrameCount", "Failed Frames",
     "Frames that were given up because a part of them did not arrive."},
    {"StreamOtherPayloadCount", "Other Payloads",
     "Frames that arrived, but are no image that this program understands."},
    {"StreamUnderrunCount", "Underruns", "Frames that the host had no room for."},
    {"StreamResentPacketCount", "Resent Packets", "Packets that were asked for once more."},
    {"StreamMissingPacketCount", "Missing Packets", "Packets that never came."},
}};

void StreamCounters::add(Kind kind, std::int64_t count)
{
    const std::lock_guard lock(mutex_);
    counted_[kind] += count;
}

void StreamCounters::attach(ArvStream *stream, PacketsPerFrame packets)
{
    const std::lock_guard lock(mutex_);
    stream_ = stream;
    packets_ = packets;
    framesDone_ = 0;
    received_ = 0;
    longFrames_ = 0;
    missing_ = 0;
}

/// When a frame is complete, usually no other frame has begun, so the missing packets are those
/// sent minus those received. If the next frame has begun, the result is too low, and a later call
/// corrects it.
void StreamCounters::bufferDone(bool complete)
{
    const std::lock_guard lock(mutex_);
    ++framesDone_;
    if (stream_ == nullptr || !ARV_IS_GV_STREAM(stream_))
        return;
    const auto count = [this](const char *name) {
        return static_cast<std::int64_t>(arv_stream_get_info_uint64_by_name(stream_, name));
    };
    const std::int64_t before =
        std::exchange(received_, count("n_received_packets") - count("n_duplicated_packets") -
                                     count("n_ignored_packets") - count("n_error_packets"));
    if (!complete)
        return;
    const std::int64_t ofFrame = received_ - before;
    longFrames_ += (ofFrame == packets_.longIds ? 1 : 0) - (ofFrame == packets_.shortIds ? 1 : 0);
    const std::int64_t packets = longFrames_ > 0 ? packets_.longIds : packets_.shortIds;
    missing_ = std::max(missing_, framesDone_ * packets - received_);
}

/// Aravis counts all packets after the first gap of a frame as missing, received or not, so its
/// count is only an upper bound.
std::int64_t StreamCounters::missingPackets(std::int64_t failed) const
{
    guint64 resent = 0;
    guint64 behindGaps = 0;
    arv_gv_stream_get_statistics(ARV_GV_STREAM(stream_), &resent, &behindGaps);
    const auto upperBound = static_cast<std::int64_t>(behindGaps);
    return packets_.shortIds > 0 ? std::clamp(missing_, std::min(failed, upperBound), upperBound)
                                 : upperBound;
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
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] -= offset_[i];
    return values;
}

StreamCounters::Values StreamCounters::present() const
{
    Values values = counted_;
    if (stream_ == nullptr)
        return values;
    guint64 completed = 0;
    guint64 failed = 0;
    guint64 underruns = 0;
    arv_stream_get_statistics(stream_, &completed, &failed, &underruns);
    values[Failed] += static_cast<std::int64_t>(failed);
    values[Underruns] += static_cast<std::int64_t>(underruns);
    if (ARV_IS_GV_STREAM(stream_)) {
        guint64 resent = 0;
        arv_gv_stream_get_statistics(ARV_GV_STREAM(stream_), &resent, nullptr);
        values[Resent] += static_cast<std::int64_t>(resent);
        values[Missing] += missingPackets(static_cast<std::int64_t>(failed));
    }
    return values;
}

} // namespace orvalis
