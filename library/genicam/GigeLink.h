// SPDX-License-Identifier: MIT
// How a GigE Vision camera sends its stream, and what to try when its packets get lost.
#pragma once

#include "library/core/Device.h"
#include "library/genicam/Glib.h"

#include <atomic>

namespace orvalis {

/// Kind of socket and size of packets, and when to change them. Only evidence makes it retreat to a
/// safer setting; that nothing comes is none, a camera may have reasons of its own. Packets lost
/// may have been the fault of a moment, so after a good while the best size is tried again; each
/// time that this fails the while doubles.
class GigeWay {
public:
    /// Packets of `best` bytes; 0: of the size that Aravis finds with test packets.
    explicit GigeWay(int best = 0, bool packetSocket = false)
        : best_(best), packetSize_(best), packetSocket_(packetSocket)
    {
    }

    /// Bytes of a packet with its headers; 0: of the size that Aravis finds with test packets.
    int packetSize() const { return packetSize_; }
    /// True if the stream is received through a packet socket.
    bool packetSocket() const { return packetSocket_; }

    /// What has been seen.
    enum class Evidence {
        Damage,    ///< frames come, one after the other, and parts of each are missing
        DeafSocket ///< the packet socket receives nothing, though packets reach this computer
    };
    /// Moves to a safer setting. False if none is left.
    bool retreat(Evidence evidence, Clock::time_point now);
    /// A frame came with parts missing: a good while begins again.
    void damaged(Clock::time_point now) { goodSince_ = now; }
    /// Moves back to the best size if the while has been good for long enough; true if it did.
    bool climb(Clock::time_point now);

    /// The first while; tests shorten it.
    static inline std::atomic<Clock::duration> goodWhile{std::chrono::minutes(1)};

private:
    int best_;
    int packetSize_;
    bool packetSocket_;
    Clock::time_point goodSince_{};
    Clock::time_point climbed_ = Clock::time_point::min();
    Clock::duration patience_ = goodWhile;
};

/// The way of one camera. Used by the thread that streams.
class GigeLink {
public:
    /// For any camera; those that are not GigE Vision have nothing to try.
    explicit GigeLink(ArvDevice *device);

    /// Sets up the camera for the present try. Before each stream, with the turn of the camera's
    /// link.
    void apply(ArvDevice *device);

    /// GigeWay::retreat() at the present time.
    bool retreat(GigeWay::Evidence evidence);
    /// GigeWay::damaged() at the present time.
    void damaged() { way_.damaged(Clock::now()); }
    /// GigeWay::climb() at the present time.
    bool climb();

private:
    bool gige_ = false;
    bool negotiated_ = false; ///< Aravis has found the size of packets
    GigeWay way_;
};

} // namespace orvalis
