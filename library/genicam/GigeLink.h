// SPDX-License-Identifier: MIT
// The transport of a GigE Vision stream: socket and packet size, and fallbacks for lost packets.
#pragma once

#include "library/core/Device.h"
#include "library/genicam/Glib.h"

#include <atomic>

namespace orvalis {

/// Chooses the kind of socket and the packet size. Falls back to a safer setting only on evidence
/// of loss; the absence of frames is not evidence, because it may have other reasons. Losses may be
/// temporary, so the best size is tried again after a grace period, which doubles each time that
/// the retry fails.
class GigeTransport {
public:
    /// `best` is the packet size in bytes; 0: the size that Aravis finds with test packets.
    explicit GigeTransport(int best = 0, bool packetSocket = false)
        : best_(best), packetSize_(best), packetSocket_(packetSocket)
    {
    }

    /// Packet size in bytes including headers; 0: the size that Aravis finds with test packets.
    int packetSize() const { return packetSize_; }
    /// True if the stream is received through a packet socket.
    bool packetSocket() const { return packetSocket_; }

    /// Evidence that packets are lost.
    enum class Evidence {
        Damage,      ///< several frames in a row are incomplete
        SilentSocket ///< the packet socket receives nothing although packets arrive
    };
    /// Changes to a safer setting. False if none is left.
    bool fallBack(Evidence evidence, Clock::time_point now);
    /// Reports an incomplete frame: restarts the grace period.
    void damaged(Clock::time_point now) { undamagedSince_ = now; }
    /// Returns to the best size after the grace period; true if it did.
    bool restore(Clock::time_point now);

    /// The initial grace period; tests shorten it.
    static inline std::atomic<Clock::duration> initialGracePeriod{std::chrono::minutes(1)};

private:
    int best_;
    int packetSize_;
    bool packetSocket_;
    Clock::time_point undamagedSince_{};
    Clock::time_point restored_ = Clock::time_point::min();
    Clock::duration gracePeriod_ = initialGracePeriod;
};

/// The transport of one camera. Used by the streaming thread.
class GigeLink {
public:
    /// For any camera; has no effect unless it is a GigE Vision camera.
    explicit GigeLink(ArvDevice *device);

    /// Applies the present setting. Call it before each stream, with the link's lock.
    void apply(ArvDevice *device);

    /// GigeTransport::fallBack() now.
    bool fallBack(GigeTransport::Evidence evidence);
    /// GigeTransport::damaged() now.
    void damaged() { transport_.damaged(Clock::now()); }
    /// GigeTransport::restore() now.
    bool restore();

private:
    bool gige_ = false;
    bool negotiated_ = false; ///< Aravis has found the packet size
    GigeTransport transport_;
};

} // namespace orvalis
