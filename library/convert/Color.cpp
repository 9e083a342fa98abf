// SPDX-License-Identifier: MIT
// Images of any format that is not packed to RGB and to brightness.
#include "library/convert/Bayer.h"
#include "library/convert/Convert.h"
#include "library/convert/ImageChecks.h"
#include "library/convert/RowPlanes.h"
#include "library/core/Vectorised.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cstring>

namespace orvalis {
namespace {

cv::Mat mat(const ImageView &image, int type)
{
    return {static_cast<int>(image.height), static_cast<int>(image.width), type,
            const_cast<std::uint8_t *>(image.data)};
}

cv::Mat mat(const ImageView &image, int type, std::uint8_t *data)
{
    return {static_cast<int>(image.height), static_cast<int>(image.width), type, data};
}

std::uint8_t clamped(int fixedPoint)
{
    return static_cast<std::uint8_t>(std::clamp(fixedPoint >> 16, 0, 255));
}

/// One pixel by ITU-R BT.601 with the full range of 0 to 255 in Y, U and V (128 is no colour):
/// R = Y + 1.402 V', G = Y - 0.344136 U' - 0.714136 V', B = Y + 1.772 U', with U' = U - 128,
/// V' = V - 128. Here in 1/65536.
inline void yuvPixel(int y, int u, int v, std::uint8_t &r, std::uint8_t &g, std::uint8_t &b)
{
    const int luma = (y << 16) + 0x8000;
    r = clamped(luma + 91881 * (v - 128));
    g = clamped(luma - 22554 * (u - 128) - 46802 * (v - 128));
    b = clamped(luma + 116130 * (u - 128));
}

template <std::size_t Y, std::size_t U, std::size_t V>
[[gnu::always_inline]] inline void yuvPairs(const std::uint8_t *__restrict in, std::size_t pairs,
                                            std::uint8_t *__restrict r, std::uint8_t *__restrict g,
                                            std::uint8_t *__restrict b)
{
    for (std::size_t i = 0; i < pairs; ++i) {
        const int u = in[i * 4 + U];
        const int v = in[i * 4 + V];
        yuvPixel(in[i * 4 + Y], u, v, r[i * 2], g[i * 2], b[i * 2]);
        yuvPixel(in[i * 4 + Y + 2], u, v, r[i * 2 + 1], g[i * 2 + 1], b[i * 2 + 1]);
    }
}

ORVALIS_VECTORISED void yuyvPairs(const std::uint8_t *in, std::size_t pairs, std::uint8_t *r,
                                  std::uint8_t *g, std::uint8_t *b)
{
    yuvPairs<0, 1, 3>(in, pairs, r, g, b);
}

ORVALIS_VECTORISED void uyvyPairs(const std::uint8_t *in, std::size_t pairs, std::uint8_t *r,
                                  std::uint8_t *g, std::uint8_t *b)
{
    yuvPairs<1, 0, 2>(in, pairs, r, g, b);
}

void yuvRow(const std::uint8_t *in, std::size_t width, bool uyvy, RowPlanes &row)
{
    const std::size_t pairs = width / 2;
    const auto convert = uyvy ? uyvyPairs : yuyvPairs;
    convert(in, pairs, row.r.data(), row.g.data(), row.b.data());
    if (width % 2 != 0) {
        // The last pixel of an odd row comes with U alone: V is that of the pair before it.
        const std::uint8_t *last = in + pairs * 4;
        const int v = pairs > 0 ? last[uyvy ? -2 : -1] : 128;
        yuvPixel(last[uyvy ? 1 : 0], last[uyvy ? 0 : 1], v, row.r.back(), row.g.back(),
                 row.b.back());
    }
}

void yuvToRgb(const ImageView &image, std::uint8_t *out)
{
    const bool uyvy = image.format->kind == PixelKind::Uyvy;
    const std::size_t width = image.width;
    cv::parallel_for_(cv::Range(0, static_cast<int>(image.height)), [&](const cv::Range &rows) {
        RowPlanes row(width);
        for (int i = rows.start; i < rows.end; ++i) {
            const auto y = static_cast<std::size_t>(i);
            yuvRow(image.data + y * width * 2, width, uyvy, row);
            interleave(row, out + y * width * 3);
        }
    });
}

void planarToRgb(const ImageView &image, std::uint8_t *out)
{
    const std::size_t pixels = pixelCount(image);
    interleave(image.data, image.data + pixels, image.data + 2 * pixels, pixels, out);
}

void planarToBrightness(const ImageView &image, std::uint8_t *out)
{
    const std::size_t pixels = pixelCount(image);
    for (std::size_t i = 0; i < pixels; ++i) {
        const int sum = 19595 * image.data[i] + 38470 * image.data[pixels + i] +
                        7471 * image.data[2 * pixels + i];
        out[i] = static_cast<std::uint8_t>((sum + 0x8000) >> 16);
    }
}

void directToRgb(const ImageView &image, std::uint8_t *out)
{
    switch (image.format->kind) {
    case PixelKind::Rgb:
        std::memcpy(out, image.data, pixelCount(image) * 3);
        break;
    case PixelKind::Bgr: {
        cv::Mat result = mat(image, CV_8UC3, out);
        cv::cvtColor(mat(image, CV_8UC3), result, cv::COLOR_BGR2RGB);
        break;
    }
    case PixelKind::RgbPlanar:
        planarToRgb(image, out);
        break;
    default:
        yuvToRgb(image, out);
        break;
    }
}

void grayToRgb(const ImageView &image, const std::uint8_t *gray, std::uint8_t *out)
{
    const cv::Mat in = mat(image, CV_8UC1, const_cast<std::uint8_t *>(gray));
    cv::Mat result = mat(image, CV_8UC3, out);
    cv::cvtColor(in, result, cv::COLOR_GRAY2RGB);
}

/// The 8-bit samples of a monochrome or Bayer image: its own bytes, or made in `scratch`. Null
/// if they cannot be had.
const std::uint8_t *samples8(const ImageView &image, std::uint8_t *scratch)
{
    if (image.format->packing == PixelPacking::Bytes) {
        return image.data;
    }
    return toGray8(image, scratch) ? scratch : nullptr;
}

} // namespace

bool toBrightness8(const ImageView &image, std::uint8_t *out)
{
    if (out == nullptr || !fits(image) || isPacked(*image.format)) {
        return false;
    }
    if (!image.format->hasDirectColor()) {
        return toGray8(image, out);
    }
    const PixelKind kind = image.format->kind;
    if (kind == PixelKind::RgbPlanar) {
        planarToBrightness(image, out);
    } else if (kind == PixelKind::Rgb || kind == PixelKind::Bgr) {
        cv::Mat result = mat(image, CV_8UC1, out);
        cv::cvtColor(mat(image, CV_8UC3), result,
                     kind == PixelKind::Rgb ? cv::COLOR_RGB2GRAY : cv::COLOR_BGR2GRAY);
    } else {
        const std::uint8_t *luma = image.data + (kind == PixelKind::Uyvy ? 1 : 0);
        const std::size_t pixels = pixelCount(image);
        for (std::size_t i = 0; i < pixels; ++i) {
            out[i] = luma[i * 2];
        }
    }
    return true;
}

bool toRgb8(const ImageView &image, std::uint8_t *out, std::uint8_t *scratch)
{
    if (out == nullptr || !fits(image) || isPacked(*image.format)) {
        return false;
    }
    if (image.format->hasDirectColor()) {
        directToRgb(image, out);
        return true;
    }
    const std::uint8_t *samples = samples8(image, scratch);
    if (samples == nullptr) {
        return false;
    }
    if (image.format->isBayer()) {
        demosaic(image.format->kind, samples, static_cast<int>(image.width),
                 static_cast<int>(image.height), out);
    } else {
        grayToRgb(image, samples, out);
    }
    return true;
}

} // namespace orvalis
