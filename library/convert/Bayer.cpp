// SPDX-License-Identifier: MIT
// Converts a colour mosaic to full colour with OpenCV, except for the edges.
#include "library/convert/Bayer.h"

#include <opencv2/imgproc.hpp>

#include <array>
#include <cstddef>

namespace orvalis {
namespace {

/// The position of the red pixel in the 2 x 2 pixels at the upper left of a mosaic.
struct RedAt {
    int x;
    int y;
};

RedAt redOf(PixelKind order)
{
    switch (order) {
    case PixelKind::BayerGR:
        return {1, 0};
    case PixelKind::BayerRG:
        return {0, 0};
    case PixelKind::BayerGB:
        return {0, 1};
    default:
        return {1, 1};
    }
}

/// OpenCV names a mosaic after the second and third pixels of its second row.
int conversionOf(RedAt red)
{
    constexpr std::array<int, 4> codes{cv::COLOR_BayerBG2RGB, cv::COLOR_BayerGB2RGB,
                                       cv::COLOR_BayerGR2RGB, cv::COLOR_BayerRG2RGB};
    return codes[static_cast<std::size_t>(red.y * 2 + red.x)];
}

/// Converts `edge`, one row or column, including neighbouring pixels. Beyond the image the mosaic
/// is mirrored, which preserves the colour of every pixel; OpenCV alone would repeat the
/// neighbour's result.
void demosaicEdge(const cv::Mat &mosaic, RedAt red, const cv::Rect &edge, cv::Mat &out)
{
    const cv::Rect wanted(edge.x - 1, edge.y - 1, edge.width + 2, edge.height + 2);
    const cv::Rect there = wanted & cv::Rect({}, mosaic.size());
    cv::Mat around;
    cv::copyMakeBorder(mosaic(there), around, there.y - wanted.y, wanted.br().y - there.br().y,
                       there.x - wanted.x, wanted.br().x - there.br().x,
                       cv::BORDER_REFLECT_101 | cv::BORDER_ISOLATED);
    cv::Mat rgb;
    cv::cvtColor(around, rgb, conversionOf({(red.x - wanted.x) & 1, (red.y - wanted.y) & 1}));
    rgb(cv::Rect({1, 1}, edge.size())).copyTo(out(edge));
}

} // namespace

void demosaic(PixelKind order, const std::uint8_t *mosaic, int width, int height, std::uint8_t *out)
{
    const cv::Mat in(height, width, CV_8UC1, const_cast<std::uint8_t *>(mosaic));
    cv::Mat rgb(height, width, CV_8UC3, out);
    const RedAt red = redOf(order);
    if (width > 2 && height > 2)
        cv::cvtColor(in, rgb, conversionOf(red));
    for (const cv::Rect &edge : {cv::Rect(0, 0, width, 1), cv::Rect(0, height - 1, width, 1),
                                 cv::Rect(0, 0, 1, height), cv::Rect(width - 1, 0, 1, height)})
        demosaicEdge(in, red, edge, rgb);
}

} // namespace orvalis
