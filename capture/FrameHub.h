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

/// Counts frames, measures rates, and hands each frame to all taps. attach(), detach(), start() and
/// stop() are called by one thread, the GUI thread; publish() by one other, the library's delivery
/// thread.
class FrameHub {
public:
    static constexpr std::size_t capacity = 8; ///< taps at a time

    /// Adds a tap; while a stream runs, the tap is started first.
    /// @return false if no place is free
    bool attach(FrameTap *tap);
    /// Removes a tap. When it returns, no call of the tap runs and none will. Not from inside of a
    /// tap.
    void detach(FrameTap *tap);

    /// A stream begins: counts from 0, restarts the rates, starts the taps.
    void start(const StreamInfo &info);
    /// A frame of the library, on its thread: O(1), no allocation, and no lock that is held for
    /// longer than a copy of a few words. The frame is neither read nor copied, but for its size.
    void publish(OImageFrame *frame);
    /// The stream ended; no publish() runs any more.
    void stop();

    /// Frames since the start, or since restartCount(). Any thread.
    std::uint64_t received() const { return m_received; }
    /// The count itself. Any thread may set it.
    std::atomic<std::uint64_t> &count() { return m_received; }
    /// The next frame is counted as the first. Any thread.
    void restartCount() { m_received = 0; }

    /// Rates of the last full measuring window, once. Any thread.
    std::optional<StreamRates> takeRates();
    /// Discards the measuring window and rates that were not taken. Any thread.
    void restartRates();

private:
    void waitForPublish() const;

    std::array<std::atomic<FrameTap *>, capacity> m_taps{};
    std::atomic<std::uint64_t> m_index{0}; ///< of the newest frame
    std::atomic<std::uint64_t> m_received{
        0}; ///< what the user sees: restarted by a software trigger
    std::atomic<std::uint32_t> m_publishing{0}; ///< odd while publish() runs
    RateMeter m_rateMeter;
    std::mutex m_mutex; // guards m_rates
    std::optional<StreamRates> m_rates;
    std::optional<StreamInfo> m_info; ///< of the stream that runs; GUI thread
};
