// SPDX-License-Identifier: MIT
// Straightforward conversions, sample by sample, from the definition.
#include "benchmarks/PlainLoops.h"

#include <algorithm>

namespace plain {

void upperEight(const std::uint16_t *in, std::size_t count, std::uint8_t *out)
{
    for (std::size_t i = 0; i < count; ++i)
        out[i] = static_cast<std::uint8_t>(in[i] >> 4);
}

void unpack(unsigned depth, const std::uint8_t *in, std::size_t count, std::uint16_t *out)
{
    const unsigned mask = (1U << depth) - 1;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t bit = i * depth;
        const unsigned both = in[bit / 8] | static_cast<unsigned>(in[bit / 8 + 1]) << 8;
        out[i] = static_cast<std::uint16_t>(both >> (bit % 8) & mask);
    }
}

void demosaic(orvalis::PixelKind order, const std::uint8_t *in, std::size_t width,
              std::size_t height, std::uint8_t *out)
{
    using orvalis::PixelKind;
    const bool redInEvenRows = order == PixelKind::BayerGR || order == PixelKind::BayerRG;
    const bool greenFirst = order == PixelKind::BayerGR || order == PixelKind::BayerGB;
    const auto mean = [](int sum, int count) {
        return static_cast<std::uint8_t>((sum + count / 2) / count);
    };
    for (std::size_t y = 1; y + 1 < height; ++y) {
        for (std::size_t x = 1; x + 1 < width; ++x) {
            const std::uint8_t *at = in + y * width + x;
            const std::uint8_t *above = at - width;
            const std::uint8_t *below = at + width;
            std::uint8_t *pixel = out + (y * width + x) * 3;
            const std::size_t own = (y % 2 == 0) == redInEvenRows ? 0 : 2; // colour of this row
            if (((x + y) % 2 == 0) == greenFirst) {
                pixel[own] = mean(at[-1] + at[1], 2);
                pixel[1] = *at;
                pixel[2 - own] = mean(*above + *below, 2);
            } else {
                pixel[own] = *at;
                pixel[1] = mean(at[-1] + at[1] + *above + *below, 4);
                pixel[2 - own] = mean(above[-1] + above[1] + below[-1] + below[1], 4);
            }
        }
    }
}

void yuvToRgb(const std::uint8_t *in, std::size_t pixels, std::uint8_t *out)
{
    const auto bounded = [](int value) {
        return static_cast<std::uint8_t>(std::clamp(value >> 16, 0, 255));
    };
    for (std::size_t i = 0; i < pixels; ++i) {
        const std::uint8_t *pair = in + i / 2 * 4;
        const int luma = (pair[i % 2 * 2] << 16) + 0x8000;
        const int u = pair[1] - 128;
        const int v = pair[3] - 128;
        out[i * 3] = bounded(luma + 91881 * v);
        out[i * 3 + 1] = bounded(luma - 22554 * u - 46802 * v);
        out[i * 3 + 2] = bounded(luma + 116130 * u);
    }
}

} // namespace plain
