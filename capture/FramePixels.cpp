// SPDX-License-Identifier: MIT
// Finds the displayed pixels of a frame without trusting the sizes in its record.
#include "capture/FramePixels.h"

#include <algorithm>
#include <limits>

namespace {

constexpr std::uint32_t formatMono12 = 0x01100005;
constexpr std::uint32_t formatBayerGR12 = 0x01100010;

// Rows aligned to 4 bytes take at most 4 bytes a pixel, for pixels of 1 and 3 bytes and any width.
constexpr std::uint64_t allocatedPerPixel = 4;
constexpr std::uint64_t maximumAllocation = std::numeric_limits<std::int32_t>::max();

/// Libraries may omit the raw size; the raw plane is then complete.
constexpr std::uint32_t sizeNotStated = 0;

constexpr std::uint32_t maximumBitsPerPixel = 64;

// Cameras append a few kilobytes at most to the pixels (chunk data, padding).
constexpr std::uint64_t maximumAppendix = 1 << 20;

std::uint64_t pixelCount(const OImageFrame &frame)
{
    return std::uint64_t{frame.width} * frame.height;
}

/// Bits that a pixel occupies: bits 16 to 23 of the format's code in the GenICam Pixel Format
/// Naming Convention; 16 for both 12-bit formats above.
std::uint32_t bitsOf(std::uint32_t pixelFormat)
{
    const std::uint32_t bits = pixelFormat >> 16 & 0xFF;
    return bits == 0 ? 8 : std::min(bits, maximumBitsPerPixel);
}

const std::uint8_t *planeOf(const OImageFrame &frame, FramePlane plane)
{
    switch (plane) {
    case FramePlane::Rgb:
        return frame.rgb;
    case FramePlane::Mono8:
        return frame.mono8;
    case FramePlane::Raw:
        break;
    }
    const bool whole = frame.rawSize == sizeNotStated || frame.rawSize >= pixelCount(frame);
    return whole ? frame.raw : nullptr;
}

} // namespace

FramePlane displayPlane(bool color, std::uint32_t pixelFormat)
{
    if (color)
        return FramePlane::Rgb;
    const bool deep = pixelFormat == formatMono12 || pixelFormat == formatBayerGR12;
    return deep ? FramePlane::Mono8 : FramePlane::Raw;
}

std::size_t pixelBytes(FramePlane plane) { return plane == FramePlane::Rgb ? 3 : 1; }

std::uint64_t regionPixels(std::int32_t width, std::int32_t height)
{
    if (width < 1 || height < 1)
        return 0;
    return static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
}

const std::uint8_t *displayedPixels(const OImageFrame &frame, FramePlane plane,
                                    std::uint64_t maxPixels)
{
    const std::uint64_t pixels = pixelCount(frame);
    if (pixels == 0 || pixels > maxPixels || pixels > maximumAllocation / allocatedPerPixel)
        return nullptr;
    return planeOf(frame, plane);
}

std::size_t rawPlaneBytes(const OImageFrame &frame, std::uint32_t pixelFormat)
{
    if (frame.raw == nullptr)
        return 0;
    const std::uint64_t pixels = std::min(pixelCount(frame), maximumAllocation / 8);
    if (frame.rawSize == sizeNotStated)
        return static_cast<std::size_t>((pixels * bitsOf(pixelFormat) + 7) / 8);
    const std::uint64_t maximumSize = pixels * maximumBitsPerPixel / 8 + maximumAppendix;
    if (frame.rawSize <= std::min(maximumSize, maximumAllocation))
        return frame.rawSize;
    const std::uint64_t bits = std::clamp(frame.bitsPerPixel, 8U, maximumBitsPerPixel);
    return static_cast<std::size_t>((pixels * bits + 7) / 8);
}
