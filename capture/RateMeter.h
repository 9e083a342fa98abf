// SPDX-License-Identifier: MIT
// Measures how many frames and bytes a second a stream delivers.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <array>
#include <mutex>
#include <optional>
#include <sys/time.h>

/// Rates displayed in the status bar.
struct StreamRates {
    double framesPerSecond = 0.0;
    double megabytesPerSecond = 0.0; ///< units of 1024 x 1024 bytes of raw image data
};

/// Rates of 31 frames received from `start` to `end`, of which `frame` is the last. Both are 0 if
/// the clock stood still or was set back in between.
StreamRates measureRates(const timeval &start, const timeval &end, const OImageFrame &frame);

/// The text for the status bar, truncated to 31 characters.
std::array<char, 32> formatRates(double framesPerSecond, double megabytesPerSecond);

/// Groups frames into windows of 31. The frame after a full window starts the next one, so the gap
/// between the two is never measured. Every function may be called from any thread.
class RateMeter {
public:
    /// Counts a frame received at `now`.
    /// @return the rates when this frame fills a window
    std::optional<StreamRates> frameReceived(const OImageFrame &frame, const timeval &now);

    /// Discards the current window.
    void restart();

private:
    std::mutex m_mutex; // guards m_nCount and m_timeStart
    int m_nCount = 0;
    timeval m_timeStart{};
};
