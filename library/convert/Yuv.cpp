// SPDX-License-Identifier: MIT
// Converts YUV images to RGB and to luminance: OpenCV reorders and multiplies the samples as the
// tables define.
#include "library/convert/Image.h"

#include <opencv2/core.hpp>

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

namespace orvalis {
namespace {

/// The positions of the samples in a group of pixels that share one U and one V.
struct Layout {
    PixelKind kind;
    int pixels;
    int bytes;
    std::array<int, 4> y;
    int u;
    int v;
};

constexpr std::array layouts{
    Layout{PixelKind::Yuv, 1, 3, {0}, 1, 2},
    Layout{PixelKind::Uyv, 1, 3, {1}, 0, 2},
    Layout{PixelKind::Yuyv, 2, 4, {0, 2}, 1, 3},
    Layout{PixelKind::Uyvy, 2, 4, {1, 3}, 0, 2},
    Layout{PixelKind::Yyuyyv, 4, 6, {0, 1, 3, 4}, 2, 5},
    Layout{PixelKind::Uyyvyy, 4, 6, {1, 2, 4, 5}, 0, 3},
};

const Layout &layoutOf(const PixelFormat &format)
{
    return *std::ranges::find(layouts, format.kind, &Layout::kind);
}

/// Weights of red and blue in the luminance, and the levels of black, white and full colour.
struct Coding {
    YuvCoding coding;
    double red;
    double blue;
    double black;
    double lumaSteps;  ///< from black to white
    double colorSteps; ///< range of U and V
};

constexpr std::array codings{
    Coding{YuvCoding::FullBt601, 0.299, 0.114, 0, 255, 255},
    Coding{YuvCoding::Bt601, 0.299, 0.114, 16, 219, 224},
    Coding{YuvCoding::Bt709, 0.2126, 0.0722, 16, 219, 224},
};

const Coding &codingOf(const PixelFormat &format)
{
    return *std::ranges::find(codings, format.coding, &Coding::coding);
}

/// The matrix from Y, U, V, 1 to R, G, B. U is (B - Y) / (2 (1 - blue)), V likewise with red, and Y
/// is the weighted sum of R, G and B.
cv::Matx34f matrixOf(const Coding &c)
{
    const double luma = 255 / c.lumaSteps;
    const double u = 255 / c.colorSteps * 2 * (1 - c.blue);
    const double v = 255 / c.colorSteps * 2 * (1 - c.red);
    const double green = 1 - c.red - c.blue;
    const double uInGreen = u * c.blue / green;
    const double vInGreen = v * c.red / green;
    const cv::Matx34d matrix(luma, 0, v, -luma * c.black - v * 128,         //
                             luma, -uInGreen, -vInGreen,                    //
                             -luma * c.black + (uInGreen + vInGreen) * 128, //
                             luma, u, 0, -luma * c.black - u * 128);
    return {matrix};
}

/// The incomplete last group of a row; V, and anything else that is missing, comes from the
/// previous group.
std::array<std::uint8_t, 6> lastGroup(const Layout &layout, const std::uint8_t *row,
                                      std::size_t rowBytes)
{
    const std::size_t size = static_cast<std::size_t>(layout.bytes);
    const std::size_t there = rowBytes % size;
    std::array<std::uint8_t, 6> group;
    group.fill(128);
    if (rowBytes >= size)
        std::memcpy(group.data(), row + rowBytes - there - size, size);
    std::memcpy(group.data(), row + rowBytes - there, there);
    return group;
}

/// Reorders the samples of each group according to `pairs`; `in` has whole groups.
void reorder(const Layout &layout, const std::uint8_t *in, int groups, int samplesOut,
             std::uint8_t *out, const std::vector<int> &pairs)
{
    if (groups == 0)
        return;
    const cv::Mat from(1, groups, CV_8UC(layout.bytes), const_cast<std::uint8_t *>(in));
    cv::Mat to(1, groups, CV_8UC(samplesOut), out);
    cv::mixChannels(&from, 1, &to, 1, pairs.data(), pairs.size() / 2);
}

/// Reads a row pixel by pixel: Y, U, V each, or only Y.
class RowReader {
public:
    RowReader(const ImageView &image, int samples)
        : image_(image), layout_(layoutOf(*image.format)), samples_(samples),
          rowBytes_(std::size_t{image.width} * image.format->bitsPerPixel / 8)
    {
        for (int pixel = 0; pixel < layout_.pixels; ++pixel) {
            const std::array from{layout_.y[static_cast<std::size_t>(pixel)], layout_.u, layout_.v};
            for (int i = 0; i < samples; ++i)
                pairs_.insert(pairs_.end(),
                              {from[static_cast<std::size_t>(i)], pixel * samples + i});
        }
    }

    void read(int y, std::uint8_t *out) const
    {
        const std::uint8_t *row = image_.data + static_cast<std::size_t>(y) * rowBytes_;
        const int width = static_cast<int>(image_.width);
        const int groups = width / layout_.pixels;
        const int samplesOfGroup = layout_.pixels * samples_;
        reorder(layout_, row, groups, samplesOfGroup, out, pairs_);
        if (const int rest = width % layout_.pixels; rest > 0) {
            std::array<std::uint8_t, 12> pixels{};
            const auto group = lastGroup(layout_, row, rowBytes_);
            reorder(layout_, group.data(), 1, samplesOfGroup, pixels.data(), pairs_);
            std::copy_n(pixels.data(), rest * samples_, out + groups * samplesOfGroup);
        }
    }

private:
    const ImageView &image_;
    const Layout &layout_;
    const int samples_;
    const std::size_t rowBytes_;
    std::vector<int> pairs_; ///< for cv::mixChannels(): from, to, from, to ...
};

/// False if rows do not end at byte boundaries.
bool hasWholeRows(const ImageView &image)
{
    return std::size_t{image.width} * image.format->bitsPerPixel % 8 == 0;
}

} // namespace

bool yuvToRgb(const ImageView &image, std::uint8_t *out)
{
    if (!hasWholeRows(image))
        return false;
    const RowReader reader(image, 3);
    const cv::Matx34f matrix = matrixOf(codingOf(*image.format));
    const int width = static_cast<int>(image.width);
    cv::parallel_for_(cv::Range(0, static_cast<int>(image.height)), [&](const cv::Range &rows) {
        cv::Mat yuv(1, width, CV_8UC3);
        for (int y = rows.start; y < rows.end; ++y) {
            reader.read(y, yuv.data);
            cv::Mat rgb(1, width, CV_8UC3, out + static_cast<std::size_t>(y) * image.width * 3);
            cv::transform(yuv, rgb, matrix);
        }
    });
    return true;
}

bool yuvToBrightness(const ImageView &image, std::uint8_t *out)
{
    if (!hasWholeRows(image))
        return false;
    const RowReader reader(image, 1);
    const int width = static_cast<int>(image.width);
    const int height = static_cast<int>(image.height);
    for (int y = 0; y < height; ++y)
        reader.read(y, out + static_cast<std::size_t>(y) * image.width);
    const Coding &coding = codingOf(*image.format);
    if (coding.coding != YuvCoding::FullBt601) {
        cv::Mat luma(height, width, CV_8UC1, out);
        const double scale = 255 / coding.lumaSteps;
        luma.convertTo(luma, CV_8U, scale, -coding.black * scale);
    }
    return true;
}

} // namespace orvalis
