// SPDX-License-Identifier: MIT
// From a colour mosaic to full colour: rows of vector code for the inside, pixels for the border.
#include "library/convert/Bayer.h"

#include "library/convert/RowPlanes.h"
#include "library/core/Vectorised.h"

#include <opencv2/core/utility.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

namespace orvalis {
namespace {

enum Channel { red, green, blue };

struct Mosaic {
    const std::uint8_t *data;
    int width;
    int height;
    std::array<Channel, 4> tile; ///< colours of the 2 x 2 pixels at the upper left

    Channel channel(int x, int y) const
    {
        return tile[static_cast<std::size_t>((y & 1) * 2 + (x & 1))];
    }
    int sample(int x, int y) const
    {
        return data[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                    static_cast<std::size_t>(x)];
    }
};

std::array<Channel, 4> tileOf(PixelKind order)
{
    switch (order) {
    case PixelKind::BayerGR:
        return {green, red, blue, green};
    case PixelKind::BayerRG:
        return {red, green, green, blue};
    case PixelKind::BayerGB:
        return {green, blue, red, green};
    default:
        return {blue, green, green, red};
    }
}

int meanAround(const Mosaic &mosaic, int x, int y, Channel channel)
{
    int sum = 0;
    int count = 0;
    for (int v = std::max(y - 1, 0); v <= std::min(y + 1, mosaic.height - 1); ++v) {
        for (int u = std::max(x - 1, 0); u <= std::min(x + 1, mosaic.width - 1); ++u) {
            if (mosaic.channel(u, v) == channel) {
                sum += mosaic.sample(u, v);
                ++count;
            }
        }
    }
    return count == 0 ? mosaic.sample(x, y) : (sum + count / 2) / count;
}

void interpolatePixel(const Mosaic &mosaic, int x, int y, std::uint8_t *out)
{
    std::uint8_t *pixel =
        out + (static_cast<std::size_t>(y) * static_cast<std::size_t>(mosaic.width) +
               static_cast<std::size_t>(x)) *
                  3;
    const Channel own = mosaic.channel(x, y);
    for (const Channel channel : {red, green, blue}) {
        const int value = channel == own ? mosaic.sample(x, y) : meanAround(mosaic, x, y, channel);
        pixel[channel] = static_cast<std::uint8_t>(value);
    }
}

void interpolateBorder(const Mosaic &mosaic, std::uint8_t *out)
{
    for (int x = 0; x < mosaic.width; ++x) {
        interpolatePixel(mosaic, x, 0, out);
        interpolatePixel(mosaic, x, mosaic.height - 1, out);
    }
    for (int y = 1; y < mosaic.height - 1; ++y) {
        interpolatePixel(mosaic, 0, y, out);
        interpolatePixel(mosaic, mosaic.width - 1, y, out);
    }
}

using std::uint8_t;

/// Rounded mean of two.
[[gnu::always_inline]] inline uint8_t mean(uint8_t a, uint8_t b)
{
    return static_cast<uint8_t>((a + b + 1) / 2);
}

/// Rounded mean of four, in bytes throughout: the mean of two means is too large by one where both
/// steps rounded up without need.
[[gnu::always_inline]] inline uint8_t mean(uint8_t a, uint8_t b, uint8_t c, uint8_t d)
{
    const uint8_t ab = mean(a, b);
    const uint8_t cd = mean(c, d);
    const int excess = ((a ^ b) | (c ^ d)) & (ab ^ cd) & 1;
    return static_cast<uint8_t>(mean(ab, cd) - excess);
}

/// The inside of a row: `own` gets the colour that it shares with green, `other` that of the rows
/// above and below. `isGreen` is 255 for pixels of green and 0 for others.
ORVALIS_VECTORISED
void interpolateRow(const uint8_t *__restrict row, std::ptrdiff_t width,
                    const uint8_t *__restrict isGreen, uint8_t *__restrict own,
                    uint8_t *__restrict green, uint8_t *__restrict other)
{
    const uint8_t *const above = row - width;
    const uint8_t *const below = row + width;
    for (std::ptrdiff_t x = 1; x < width - 1; ++x) {
        const uint8_t sample = row[x];
        const uint8_t left = row[x - 1], right = row[x + 1], up = above[x], down = below[x];
        const uint8_t cross = mean(left, right, up, down);
        const uint8_t diagonal = mean(above[x - 1], above[x + 1], below[x - 1], below[x + 1]);
        const auto at = [mask = isGreen[x]](uint8_t ofGreen, uint8_t ofColor) {
            return static_cast<uint8_t>((ofGreen & mask) | (ofColor & ~mask));
        };
        own[x] = at(mean(left, right), sample);
        green[x] = at(sample, cross);
        other[x] = at(mean(up, down), diagonal);
    }
}

void interpolateRows(const Mosaic &mosaic, const cv::Range &rows, uint8_t *out)
{
    const auto width = static_cast<std::size_t>(mosaic.width);
    RowPlanes planes(width);
    std::vector<uint8_t> everyOther(width + 1);
    for (std::size_t i = 0; i <= width; i += 2)
        everyOther[i] = 255;
    for (int y = rows.start; y < rows.end; ++y) {
        const auto at = static_cast<std::size_t>(y) * width;
        const bool greenFirst = mosaic.channel(0, y) == green;
        const bool redRow = mosaic.channel(greenFirst ? 1 : 0, y) == red;
        interpolateRow(mosaic.data + at, mosaic.width, &everyOther[greenFirst ? 0 : 1],
                       redRow ? planes.r.data() : planes.b.data(), planes.g.data(),
                       redRow ? planes.b.data() : planes.r.data());
        interleave(planes, out + at * 3);
    }
}

} // namespace

void demosaic(PixelKind order, const uint8_t *mosaic, int width, int height, uint8_t *out)
{
    const Mosaic image{mosaic, width, height, tileOf(order)};
    if (width > 2 && height > 2) {
        cv::parallel_for_(cv::Range(1, height - 1),
                          [&](const cv::Range &rows) { interpolateRows(image, rows, out); });
    }
    interpolateBorder(image, out);
}

} // namespace orvalis
