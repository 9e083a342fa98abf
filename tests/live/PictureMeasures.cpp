// SPDX-License-Identifier: MIT
// Sums over every pixel; an image of five megapixels takes a fraction of a second.
#include "tests/live/PictureMeasures.h"

#include <QColor>
#include <QtMath>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace picturemeasures {
namespace {

std::array<double, 3> channelMeans(const QImage &picture)
{
    const QImage rgb = picture.convertToFormat(QImage::Format_RGB888);
    std::array<double, 3> sums{};
    for (int y = 0; y < rgb.height(); ++y) {
        const uchar *row = rgb.constScanLine(y);
        for (int x = 0; x < rgb.width(); ++x)
            for (std::size_t c = 0; c < 3; ++c)
                sums[c] += row[static_cast<std::size_t>(x) * 3 + c];
    }
    const double pixels = std::max(1.0, double(rgb.width()) * rgb.height());
    for (double &sum : sums)
        sum /= pixels;
    return sums;
}

/// Brightness of every pixel, row by row.
std::vector<uchar> brightness(const QImage &picture)
{
    const QImage gray = picture.convertToFormat(QImage::Format_Grayscale8);
    std::vector<uchar> values;
    values.reserve(static_cast<std::size_t>(gray.width()) *
                   static_cast<std::size_t>(gray.height()));
    for (int y = 0; y < gray.height(); ++y)
        values.insert(values.end(), gray.constScanLine(y), gray.constScanLine(y) + gray.width());
    return values;
}

} // namespace

double meanBrightness(const QImage &picture)
{
    const auto means = channelMeans(picture);
    return (means[0] + means[1] + means[2]) / 3;
}

double darkestBrightness(const QImage &picture)
{
    std::vector<uchar> values = brightness(picture);
    const auto tenth = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 10);
    std::nth_element(values.begin(), tenth, values.end());
    double sum = 0;
    for (auto value = values.begin(); value != tenth; ++value)
        sum += *value;
    return sum / std::max(1.0, double(tenth - values.begin()));
}

double redOverGreen(const QImage &picture)
{
    const auto means = channelMeans(picture);
    return means[0] / std::max(1.0, means[1]);
}

double greenOverBlue(const QImage &picture)
{
    const auto means = channelMeans(picture);
    return means[1] / std::max(1.0, means[2]);
}

double blueOverGreen(const QImage &picture)
{
    const auto means = channelMeans(picture);
    return means[2] / std::max(1.0, means[1]);
}

double contrast(const QImage &picture)
{
    const std::vector<uchar> values = brightness(picture);
    double sum = 0;
    double squares = 0;
    for (const uchar value : values) {
        sum += value;
        squares += double(value) * value;
    }
    const double count = std::max<double>(1, double(values.size()));
    return std::sqrt(std::max(0.0, squares / count - (sum / count) * (sum / count)));
}

double saturation(const QImage &picture)
{
    double sum = 0;
    int count = 0;
    for (int y = 0; y < picture.height(); y += 3) {
        for (int x = 0; x < picture.width(); x += 3) {
            const QColor color = picture.pixelColor(x, y);
            if (color.value() < 40 || color.value() > 240)
                continue;
            sum += color.hsvSaturationF();
            ++count;
        }
    }
    return sum / std::max(1, count);
}

double hueAngle(const QImage &picture)
{
    const auto means = channelMeans(picture);
    // The plane of equal brightness: alpha and beta of the usual hue hexagon.
    const double alpha = means[0] - (means[1] + means[2]) / 2;
    const double beta = std::sqrt(3.0) / 2 * (means[1] - means[2]);
    return qRadiansToDegrees(std::atan2(beta, alpha));
}

double edgeEnergy(const QImage &picture)
{
    const std::vector<uchar> values = brightness(picture);
    double sum = 0;
    for (std::size_t i = 2; i < values.size(); ++i)
        sum += std::abs(int(values[i]) - int(values[i - 2]));
    return sum / std::max<double>(1, double(values.size()));
}

} // namespace picturemeasures
