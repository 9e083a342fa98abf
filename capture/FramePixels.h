// SPDX-License-Identifier: MIT
// Finds and copies the pixels of a frame that are shown, without trusting what the frame claims.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

/// The plane of a frame that is shown.
enum class FramePlane {
    Rgb,   ///< 3 bytes a pixel
    Mono8, ///< 1 byte a pixel, made from a deeper format
    Raw,   ///< 1 byte a pixel, as the camera sends it
};

/// @param color whether the pixel format has colour
/// @param pixelFormat code of the format that frames are delivered in
FramePlane displayPlane(bool color, std::uint32_t pixelFormat);

/// Bytes of one pixel of `plane`.
std::size_t pixelBytes(FramePlane plane);

/// Pixels of a region, 0 if it has none.
std::uint64_t regionPixels(std::int32_t width, std::int32_t height);

/// The pixels of `plane`, width x height x pixelBytes(plane) bytes; null if the frame does not have
/// them, is empty, or has more than `mostPixels` pixels.
const std::uint8_t *shownPixels(const OImageFrame &frame, FramePlane plane,
                                std::uint64_t mostPixels);

/// Bytes of the raw plane that may be read: what the frame says, with whatever the camera appends
/// to the pixels. A size that no such frame can have counts as that of the pixels.
std::size_t rawPlaneBytes(const OImageFrame &frame);

/// Memory for the pixels of one frame at a time, in rows without padding. Allocated once.
class FrameBuffer {
public:
    /// Room for frames with as many pixels as a region of this size. None at all if the region is
    /// empty or larger than an image can be.
    FrameBuffer(std::int32_t regionWidth, std::int32_t regionHeight);

    /// Copies the pixels of `plane`.
    /// @return false if the frame was left alone because they are missing or do not fit
    bool copyFrom(const OImageFrame &frame, FramePlane plane);

    /// The pixels. Behind them the memory goes on so far that an image with rows aligned to 4
    /// bytes, of any frame that fits, can be read from here.
    const std::uint8_t *data() const { return m_data.get(); }

private:
    struct Free {
        void operator()(std::uint8_t *memory) const { std::free(memory); }
    };

    std::uint64_t m_mostPixels;
    std::unique_ptr<std::uint8_t, Free> m_data;
};
