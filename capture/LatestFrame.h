// SPDX-License-Identifier: MIT
// The newest frame of a stream, for the screen.
#pragma once

#include "capture/FrameTap.h"

#include <mutex>
#include <optional>

/// Holds one frame: the next frame replaces one that was not taken. Any thread may take.
class LatestFrame : public FrameTap {
public:
    void started(const StreamInfo &info) override;
    void frame(const PublishedFrame &published) override;
    void stopped() override { clear(); }

    /// Takes the frame. Empty if none arrived since the last call.
    std::optional<PublishedFrame> takeNewest();
    /// Discards the frame that was not taken.
    void clear();

    /// Frames replaced by a newer one since the start.
    std::uint64_t superseded() const;

private:
    mutable std::mutex m_mutex; // guards m_newest and m_superseded; held for a copy of a few words
    std::optional<PublishedFrame> m_newest;
    std::uint64_t m_superseded = 0;
};
