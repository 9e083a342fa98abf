// SPDX-License-Identifier: MIT
// From a colour mosaic to full colour: OpenCV for the inside, our own code for the border.
#include "library/convert/Bayer.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>

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

/// OpenCV's older names tell the colours of the second row and column; these tell the first.
int conversionCode(PixelKind order)
{
    switch (order) {
    case PixelKind::BayerGR:
        return cv::COLOR_BayerGRBG2RGB;
    case PixelKind::BayerRG:
        return cv::COLOR_BayerRGGB2RGB;
    case PixelKind::BayerGB:
        return cv::COLOR_BayerGBRG2RGB;
    default:
        return cv::COLOR_BayerBGGR2RGB;
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

} // namespace

void demosaic(PixelKind order, const std::uint8_t *mosaic, int width, int height, std::uint8_t *out)
{
    // Below this OpenCV has no inside to interpolate.
    if (width > 2 && height > 2) {
        const cv::Mat in(height, width, CV_8UC1, const_cast<std::uint8_t *>(mosaic));
        cv::Mat result(height, width, CV_8UC3, out);
        cv::cvtColor(in, result, conversionCode(order));
    }
    interpolateBorder({mosaic, width, height, tileOf(order)}, out);
}

} // namespace orvalis
