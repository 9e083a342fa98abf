// SPDX-License-Identifier: MIT
// Measures how many frames and bytes a second a stream delivers.
#include "capture/RateMeter.h"

#include <cstdint>
#include <cstdio>

namespace {

constexpr int windowFrames = 31;
constexpr float windowIntervals = 30.0F;
constexpr float microsecondsPerSecond = 1000000.0F;
constexpr float bytesPerBit = 0.125F;
constexpr float perKilo = 1.0F / 1024;

double elapsedSeconds(const timeval &start, const timeval &end)
{
    return static_cast<double>(end.tv_usec - start.tv_usec) / microsecondsPerSecond +
           (static_cast<double>(end.tv_sec) - static_cast<double>(start.tv_sec));
}

} // namespace

StreamRates measureRates(const timeval &start, const timeval &end, const OImageFrame &frame)
{
    const double elapsed = elapsedSeconds(start, end);
    if (!(elapsed > 0.0))
        return {};
    // Deliberate: the product wraps at 32 bits.
    const std::uint32_t bits = frame.width * frame.height * frame.bitsPerPixel;
    const double rate = windowIntervals / elapsed;
    return {rate, bits * rate * bytesPerBit * perKilo * perKilo};
}

std::array<char, 32> formatRates(double framesPerSecond, double megabytesPerSecond)
{
    std::array<char, 32> text{};
    (void)std::snprintf(text.data(), text.size(), "%4.1lf fps (%3.1lf MB/s)", framesPerSecond,
                        megabytesPerSecond);
    return text;
}

std::optional<StreamRates> RateMeter::frameReceived(const OImageFrame &frame, const timeval &now)
{
    const std::lock_guard lock(m_mutex);
    if (m_nCount == 0)
        m_timeStart = now;
    if (++m_nCount < windowFrames)
        return std::nullopt;
    m_nCount = 0;
    return measureRates(m_timeStart, now, frame);
}

void RateMeter::restart()
{
    const std::lock_guard lock(m_mutex);
    m_nCount = 0;
}
