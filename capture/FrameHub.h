// SPDX-License-Identifier: MIT
// The one place where frames leave the camera library's callback.
#pragma once

#include "capture/FrameTap.h"
#include "capture/RateMeter.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <optional>

/// Counts frames, measures rates, and publishes each frame to all taps. Call attach(), detach(),
/// start() and stop() from one thread, the GUI thread, and publish() from one other, the library's
/// delivery thread.
class FrameHub {
public:
    static constexpr std::size_t capacity = 8; ///< taps attached at the same time

    /// Adds a tap. While a stream runs, starts the tap first.
    /// @return false if the hub is full
    bool attach(FrameTap *tap);
    /// Removes a tap. When this returns, no call of the tap runs and none will. Must not be called
    /// from a tap.
    void detach(FrameTap *tap);

    /// A stream begins: counts from 0, restarts the rates, starts the taps.
    void start(const StreamInfo &info);
    /// Publishes a frame on the library's thread: O(1), no allocation, and no lock held for longer
    /// than a copy of a few words. Of the frame, only the size is read.
    void publish(OImageFrame *frame);
    /// The stream ended; no publish() runs any more.
    void stop();

    /// Frames since the start, or since restartCount(). Any thread.
    std::uint64_t received() const { return m_received; }
    /// The count itself. Any thread may set it.
    std::atomic<std::uint64_t> &count() { return m_received; }
    /// Counts the next frame as the first. Any thread.
    void restartCount() { m_received = 0; }

    /// Rates of the last full measuring window; each is returned once. Any thread.
    std::optional<StreamRates> takeRates();
    /// Discards the measuring window and rates that were not taken. Any thread.
    void restartRates();

private:
    void waitForPublish() const;

    std::array<std::atomic<FrameTap *>, capacity> m_taps{};
    std::atomic<std::uint64_t> m_index{0}; ///< of the newest frame
    std::atomic<std::uint64_t> m_received{
        0}; ///< the displayed count: a software trigger restarts it
    std::atomic<std::uint32_t> m_publishing{0}; ///< odd while publish() runs
    RateMeter m_rateMeter;
    std::mutex m_mutex; // guards m_rates
    std::optional<StreamRates> m_rates;
    std::optional<StreamInfo> m_info; ///< of the running stream; GUI thread
};
