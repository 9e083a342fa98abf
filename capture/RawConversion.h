// SPDX-License-Identifier: MIT
// Turns 16-bit raw pixels into 8-bit grey.
#pragma once

#include <cstdint>

/// Converts an image of 16-bit little-endian words to 8-bit grey.
///
/// Each pixel is shifted right by bits - 8, by 9 for 16 bits (so that 65535 becomes 127), and
/// limited to 255. Nothing is written for 8 bits or fewer, or for an empty image.
///
/// @param dst width x height bytes
/// @param src width x height x 2 bytes, no alignment needed; must not overlap dst
/// @param bits significant bits of a word
void rawToGray8(std::uint8_t *dst, const std::uint8_t *src, int width, int height, int bits);
