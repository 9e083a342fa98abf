// SPDX-License-Identifier: MIT
// Converts light to the pixel formats.
#include "library/simulated/Mosaic.h"

#include <algorithm>

namespace orvalis::simulated {
namespace {

/// Writes one sample after the other.
template <class Sample> class Writer {
public:
    using Sigma = typename NoiseTypes<Sample>::Sigma;

    Writer(const ToneCurve &curve, Sample *values, Sigma *sigma)
        : value_(curve.value.data()), deviation_(curve.sigma.data()), values_(values), sigma_(sigma)
    {
    }

    void put(std::uint16_t light)
    {
        *values_++ = static_cast<Sample>(value_[light]);
        *sigma_++ = static_cast<Sigma>(deviation_[light]);
    }
    void putAsIs(std::uint16_t value, std::uint16_t sigma)
    {
        *values_++ = static_cast<Sample>(value);
        *sigma_++ = static_cast<Sigma>(sigma);
    }
    std::uint16_t value(std::uint16_t light) const { return value_[light]; }
    std::uint16_t sigma(std::uint16_t light) const { return deviation_[light]; }

private:
    const std::uint16_t *value_;
    const std::uint16_t *deviation_;
    Sample *values_;
    Sigma *sigma_;
};

template <class Sample> void packMono(const LightRow &row, Writer<Sample> writer)
{
    for (std::uint32_t x = 0; x < row.width; ++x)
        writer.put(row.red[x]);
}

template <class Sample> void packMosaic(const LightRow &row, Writer<Sample> writer)
{
    const std::uint16_t *const even = row.y % 2 == 0 ? row.green : row.blue;
    const std::uint16_t *const odd = row.y % 2 == 0 ? row.red : row.green;
    for (std::uint32_t x = 0; x < row.width; x += 2) {
        writer.put(even[x]);
        writer.put(odd[x + 1]);
    }
}

template <class Sample> void packRgb(const LightRow &row, Writer<Sample> writer)
{
    for (std::uint32_t x = 0; x < row.width; ++x) {
        writer.put(row.red[x]);
        writer.put(row.green[x]);
        writer.put(row.blue[x]);
    }
}

template <class Sample> void packYuv(const LightRow &row, Writer<Sample> writer)
{
    const auto yuvAt = [&](std::uint32_t x) {
        return toYuv(writer.value(row.red[x]), writer.value(row.green[x]),
                     writer.value(row.blue[x]));
    };
    for (std::uint32_t x = 0; x < row.width; x += 2) {
        const auto left = yuvAt(x), right = yuvAt(x + 1);
        const std::uint16_t sigma = writer.sigma(row.green[x]);
        const auto half = static_cast<std::uint16_t>(sigma / 2);
        writer.putAsIs(left[0], sigma);
        writer.putAsIs(static_cast<std::uint16_t>((left[1] + right[1] + 1) / 2), half);
        writer.putAsIs(right[0], sigma);
        writer.putAsIs(static_cast<std::uint16_t>((left[2] + right[2] + 1) / 2), half);
    }
}

} // namespace

std::array<std::uint16_t, 3> toYuv(int red, int green, int blue)
{
    const auto clamped = [](int value) {
        return static_cast<std::uint16_t>(std::clamp(value, 0, 255));
    };
    const int y = (19595 * red + 38470 * green + 7471 * blue + 32768) >> 16;
    const int u = ((-11059 * red - 21709 * green + 32768 * blue + 32768) >> 16) + 128;
    const int v = ((32768 * red - 27439 * green - 5329 * blue + 32768) >> 16) + 128;
    return {clamped(y), clamped(u), clamped(v)};
}

template <class Sample>
void packRow(std::uint32_t pixelFormat, const LightRow &row, const ToneCurve &curve, Sample *values,
             typename NoiseTypes<Sample>::Sigma *sigma)
{
    const Writer<Sample> writer(curve, values, sigma);
    if (isMono(pixelFormat))
        packMono(row, writer);
    else if (pixelFormat == format::kRgb8)
        packRgb(row, writer);
    else if (pixelFormat == format::kYuv422)
        packYuv(row, writer);
    else
        packMosaic(row, writer);
}

template <class Sample>
void paintPixels(std::uint32_t pixelFormat, const std::array<std::uint16_t, 3> &color,
                 std::uint32_t first, std::uint32_t last, std::uint32_t y, Sample *row)
{
    const auto c = [&](std::size_t i) { return static_cast<Sample>(color[i]); };
    const bool even = y % 2 == 0;
    for (std::uint32_t x = first; x < last; x += 2) {
        if (isMono(pixelFormat)) {
            row[x] = row[x + 1] = c(0);
        } else if (pixelFormat == format::kRgb8) {
            for (std::size_t i = 0; i < 6; ++i)
                row[x * 3 + i] = c(i % 3);
        } else if (pixelFormat == format::kYuv422) {
            row[x * 2] = row[x * 2 + 2] = c(0);
            row[x * 2 + 1] = c(1);
            row[x * 2 + 3] = c(2);
        } else {
            row[x] = even ? c(1) : c(2);
            row[x + 1] = even ? c(0) : c(1);
        }
    }
}

template void packRow(std::uint32_t, const LightRow &, const ToneCurve &, std::uint8_t *,
                      std::uint8_t *);
template void packRow(std::uint32_t, const LightRow &, const ToneCurve &, std::uint16_t *,
                      std::int16_t *);
template void paintPixels(std::uint32_t, const std::array<std::uint16_t, 3> &, std::uint32_t,
                          std::uint32_t, std::uint32_t, std::uint8_t *);
template void paintPixels(std::uint32_t, const std::array<std::uint16_t, 3> &, std::uint32_t,
                          std::uint32_t, std::uint32_t, std::uint16_t *);

} // namespace orvalis::simulated
