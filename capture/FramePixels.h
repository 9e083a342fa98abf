// SPDX-License-Identifier: MIT
// Finds the displayed pixels of a frame without trusting the sizes in its record.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <cstddef>
#include <cstdint>

/// The plane of a frame that is displayed.
enum class FramePlane {
    Rgb,   ///< 3 bytes a pixel
    Mono8, ///< 1 byte a pixel, made from a deeper format
    Raw,   ///< 1 byte a pixel, as the camera sends it
};

/// @param color whether the pixel format has colour
/// @param pixelFormat PFNC code of the delivered frames
FramePlane displayPlane(bool color, std::uint32_t pixelFormat);

/// Bytes of one pixel of `plane`.
std::size_t pixelBytes(FramePlane plane);

/// Pixels of a region, 0 if it has none.
std::uint64_t regionPixels(std::int32_t width, std::int32_t height);

/// The pixels of `plane`, width x height x pixelBytes(plane) bytes. Null if the frame lacks them,
/// is empty, or has more than `maxPixels` pixels.
const std::uint8_t *displayedPixels(const OImageFrame &frame, FramePlane plane,
                                    std::uint64_t maxPixels);

/// Bytes of the raw plane that may be read: the size in the record, including data that the camera
/// appends to the pixels. An impossible size and 0 are replaced by the size of the pixels.
/// @param pixelFormat PFNC code of the delivered frames, 0 if unknown
std::size_t rawPlaneBytes(const OImageFrame &frame, std::uint32_t pixelFormat);
