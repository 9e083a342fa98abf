// SPDX-License-Identifier: MIT
// The newest frame of a stream, for the screen.
#pragma once

#include "capture/FrameTap.h"

#include <mutex>
#include <optional>

/// A slot, not a list: a frame that was not taken is discarded by the next one. Any thread may
/// take.
class LatestFrame : public FrameTap {
public:
    void started(const StreamInfo &info) override;
    void frame(const PublishedFrame &published) override;
    void stopped() override { clear(); }

    /// Empties the slot; nothing if no frame arrived since the last call.
    std::optional<PublishedFrame> takeNewest();
    /// Discards the frame that waits.
    void clear();

    /// Frames that were discarded by a newer one since the start.
    std::uint64_t superseded() const;

private:
    mutable std::mutex m_mutex; // guards m_newest and m_superseded; held for a copy of a few words
    std::optional<PublishedFrame> m_newest;
    std::uint64_t m_superseded = 0;
};
