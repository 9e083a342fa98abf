// SPDX-License-Identifier: MIT
// Converts unpacked formats to RGB and to luminance.
#include "library/convert/Bayer.h"
#include "library/convert/Image.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

namespace orvalis {
namespace {

/// One row of an image, or all rows as one.
cv::Mat pixels(std::size_t count, int type, const std::uint8_t *data)
{
    return {1, static_cast<int>(count), type, const_cast<std::uint8_t *>(data)};
}

/// OpenCV's conversions for a kind with interleaved colours.
struct Interleaved {
    PixelKind kind;
    int channels;
    int toRgb; ///< -1: already RGB
    int toGray;
};

constexpr std::array interleavedKinds{
    Interleaved{PixelKind::Rgb, 3, -1, cv::COLOR_RGB2GRAY},
    Interleaved{PixelKind::Bgr, 3, cv::COLOR_BGR2RGB, cv::COLOR_BGR2GRAY},
    Interleaved{PixelKind::Rgba, 4, cv::COLOR_RGBA2RGB, cv::COLOR_RGBA2GRAY},
    Interleaved{PixelKind::Bgra, 4, cv::COLOR_BGRA2RGB, cv::COLOR_BGRA2GRAY},
};

const Interleaved *interleavedOf(const PixelFormat &format)
{
    const auto *found = std::ranges::find(interleavedKinds, format.kind, &Interleaved::kind);
    return found == interleavedKinds.end() ? nullptr : found;
}

/// Calls `row(y)` for every row, on all cores.
template <class Row> void forRows(const ImageView &image, const Row &row)
{
    cv::parallel_for_(
        cv::Range(0, static_cast<int>(image.height)),
        [&](const cv::Range &rows) {
            for (int y = rows.start; y < rows.end; ++y)
                row(static_cast<std::size_t>(y));
        });
}

/// The upper eight bits of each sample of a row: the row itself, or a copy in `scratch`.
const std::uint8_t *rowOf8(const ImageView &image, int channels, std::size_t y,
                           std::vector<std::uint8_t> &scratch)
{
    const std::size_t samples = std::size_t{image.width} * static_cast<std::size_t>(channels);
    if (image.format->packing == PixelPacking::Bytes)
        return image.data + y * samples;
    scratch.resize(samples);
    upperEight(image.format->depth, image.data + y * samples * 2, samples, scratch.data());
    return scratch.data();
}

void interleavedToRgb(const ImageView &image, const Interleaved &kind, std::uint8_t *out)
{
    forRows(
        image,
        [&](std::size_t y) {
            thread_local std::vector<std::uint8_t> scratch;
            const std::uint8_t *in = rowOf8(image, kind.channels, y, scratch);
            std::uint8_t *const row = out + y * image.width * 3;
            cv::Mat rgb = pixels(image.width, CV_8UC3, row);
            if (kind.toRgb < 0)
                std::memcpy(row, in, std::size_t{image.width} * 3);
            else
                cv::cvtColor(pixels(image.width, CV_8UC(kind.channels), in), rgb, kind.toRgb);
        });
}

/// Merges one row of three planes to R, G, B.
void mergeRow(const ImageView &image, std::size_t y, cv::Mat &rgb)
{
    const std::size_t plane = pixelCount(image);
    const std::uint8_t *const red = image.data + y * image.width;
    const std::array<cv::Mat, 3> planes{pixels(image.width, CV_8UC1, red),
                                        pixels(image.width, CV_8UC1, red + plane),
                                        pixels(image.width, CV_8UC1, red + 2 * plane)};
    cv::merge(planes.data(), planes.size(), rgb);
}

void planarToRgb(const ImageView &image, std::uint8_t *out)
{
    forRows(
        image,
        [&](std::size_t y) {
            cv::Mat rgb = pixels(image.width, CV_8UC3, out + y * image.width * 3);
            mergeRow(image, y, rgb);
        });
}

void planarToBrightness(const ImageView &image, std::uint8_t *out)
{
    forRows(
        image,
        [&](std::size_t y) {
            cv::Mat rgb;
            mergeRow(image, y, rgb);
            cv::Mat gray = pixels(image.width, CV_8UC1, out + y * image.width);
            cv::cvtColor(rgb, gray, cv::COLOR_RGB2GRAY);
        });
}

void interleavedToBrightness(const ImageView &image, const Interleaved &kind, std::uint8_t *out)
{
    forRows(
        image,
        [&](std::size_t y) {
            thread_local std::vector<std::uint8_t> scratch;
            const std::uint8_t *in = rowOf8(image, kind.channels, y, scratch);
            cv::Mat gray = pixels(image.width, CV_8UC1, out + y * image.width);
            cv::cvtColor(pixels(image.width, CV_8UC(kind.channels), in), gray, kind.toGray);
        });
}

bool directToRgb(const ImageView &image, std::uint8_t *out)
{
    if (image.format->isYuv())
        return yuvToRgb(image, out);
    if (const Interleaved *kind = interleavedOf(*image.format))
        interleavedToRgb(image, *kind, out);
    else
        planarToRgb(image, out);
    return true;
}

/// The 8-bit samples of a monochrome or Bayer image: its own bytes, or a copy in `scratch`. Null if
/// the format has none.
const std::uint8_t *samples8(const ImageView &image, std::uint8_t *scratch)
{
    if (image.format->packing == PixelPacking::Bytes)
        return image.data;
    return toGray8(image, scratch) ? scratch : nullptr;
}

} // namespace

bool toBrightness8(const ImageView &image, std::uint8_t *out)
{
    if (out == nullptr || !fits(image) || isPacked(*image.format))
        return false;
    if (!image.format->hasDirectColor())
        return toGray8(image, out);
    if (image.format->isYuv())
        return yuvToBrightness(image, out);
    if (const Interleaved *kind = interleavedOf(*image.format))
        interleavedToBrightness(image, *kind, out);
    else
        planarToBrightness(image, out);
    return true;
}

bool toBrightnessWords(const ImageView &image, std::uint16_t *out)
{
    if (out == nullptr || !fits(image) || image.format->packing != PixelPacking::Words)
        return false;
    const Interleaved *kind = interleavedOf(*image.format);
    if (kind == nullptr)
        return false;
    const std::size_t rowBytes = imageBytes(*image.format, image.width, 1);
    forRows(image, [&](std::size_t y) {
        cv::Mat gray(1, static_cast<int>(image.width), CV_16UC1, out + y * image.width);
        cv::cvtColor(pixels(image.width, CV_16UC(kind->channels), image.data + y * rowBytes), gray,
                     kind->toGray);
    });
    return true;
}

bool toRgb8(const ImageView &image, std::uint8_t *out, std::uint8_t *scratch)
{
    if (out == nullptr || !fits(image) || isPacked(*image.format))
        return false;
    if (image.format->hasDirectColor())
        return directToRgb(image, out);
    const std::uint8_t *samples = samples8(image, scratch);
    if (samples == nullptr)
        return false;
    const int width = static_cast<int>(image.width);
    const int height = static_cast<int>(image.height);
    if (image.format->isBayer()) {
        demosaic(image.format->kind, samples, width, height, out);
        return true;
    }
    const cv::Mat gray(height, width, CV_8UC1, const_cast<std::uint8_t *>(samples));
    cv::Mat rgb(height, width, CV_8UC3, out);
    cv::cvtColor(gray, rgb, cv::COLOR_GRAY2RGB);
    return true;
}

} // namespace orvalis
