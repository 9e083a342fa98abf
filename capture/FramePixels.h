// SPDX-License-Identifier: MIT
// Finds the pixels of a frame that are displayed, without trusting what the frame claims.
#pragma once

#include "sdk/OrvalisAPI.h"

#include <cstddef>
#include <cstdint>

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

/// Bytes of the raw plane that may be read: what the frame states, with whatever the camera appends
/// to the pixels. A size that no such frame can have counts as that of the pixels, and so does 0.
/// @param pixelFormat code of the format that frames are delivered in, 0 if not known
std::size_t rawPlaneBytes(const OImageFrame &frame, std::uint32_t pixelFormat);
