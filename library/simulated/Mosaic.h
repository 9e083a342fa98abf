// SPDX-License-Identifier: MIT
// Converts the light of a row to samples of a pixel format.
#pragma once

#include "library/simulated/CameraModel.h"
#include "library/simulated/Noise.h"
#include "library/simulated/ToneCurve.h"

#include <array>
#include <cstdint>

namespace orvalis::simulated {

/// Light of a row of pixels in light steps; monochrome formats use only `red`.
struct LightRow {
    const std::uint16_t *red;
    const std::uint16_t *green;
    const std::uint16_t *blue;
    std::uint32_t width; ///< even
    std::uint32_t y;     ///< row of the image: determines the colours of a mosaic
};

/// Y, U, V of a colour, 8 bits, BT.601 over the full range, U and V about 128.
std::array<std::uint16_t, 3> toYuv(int red, int green, int blue);

/// Writes the samples of a row and the standard deviations of their noise. Mosaics have the order
/// GR: green and red in even rows, blue and green in odd ones.
template <class Sample>
void packRow(std::uint32_t pixelFormat, const LightRow &row, const ToneCurve &curve, Sample *values,
             typename NoiseTypes<Sample>::Sigma *sigma);

/// Paints pixels `first` to `last` - 1 of row `y`, both even, with one colour given in samples: R,
/// G, B; Y, U, V for YUV; only the first for monochrome formats.
template <class Sample>
void paintPixels(std::uint32_t pixelFormat, const std::array<std::uint16_t, 3> &color,
                 std::uint32_t first, std::uint32_t last, std::uint32_t y, Sample *row);

} // namespace orvalis::simulated
