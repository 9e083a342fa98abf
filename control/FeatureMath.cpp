// SPDX-License-Identifier: MIT
// Exposure steps, gamma slider, region mapping and save formats of the control panel.
#include "control/FeatureMath.h"

#include "capture/PixelMeaning.h"
#include "capture/SaveFormat.h"

#include <QPointF>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

namespace {

struct ShutterRange {
    qlonglong end; // first time beyond this range
    int step;      // microseconds
};

constexpr ShutterRange shutterRanges[] = {
    {500, 1},         {5'500, 10},         {76'000, 100},
    {710'000, 1'000}, {5'800'000, 10'000}, {46'000'000, 100'000},
};
constexpr int longestShutterStep = 1'000'000;

} // namespace

int truncated(double value)
{
    using Limits = std::numeric_limits<int>;
    if (std::isnan(value))
        return 0;
    return static_cast<int>(std::clamp(value, double{Limits::min()}, double{Limits::max()}));
}

int sliderEnd(int minimum, int maximum)
{
    const qint64 farthest = qint64{minimum} + std::numeric_limits<int>::max();
    return static_cast<int>(qMin(qint64{maximum}, farthest));
}

int shutterStep(qlonglong microseconds)
{
    const auto *range = std::find_if(
        std::begin(shutterRanges), std::end(shutterRanges),
        [microseconds](const ShutterRange &candidate) { return microseconds < candidate.end; });
    return range == std::end(shutterRanges) ? longestShutterStep : range->step;
}

bool isOnShutterStep(qlonglong microseconds)
{
    return microseconds % shutterStep(microseconds) == 0;
}

int snappedShutter(int microseconds)
{
    return microseconds - microseconds % shutterStep(microseconds);
}

bool isGammaScaled(float maximum) { return static_cast<double>(maximum) <= 1.01; }

int gammaSliderValue(float gamma, bool scaled)
{
    // Single precision: 0.7f x 10 is 7, but slightly less than 7 in double precision.
    return truncated(scaled ? gamma * 10.0F : gamma);
}

int gammaSliderFromSpin(double gamma, bool scaled)
{
    return truncated(scaled ? gamma * 10.0 + 0.5 : gamma);
}

double gammaFromSlider(int value, bool scaled) { return scaled ? value / 10.0 : value; }

Region regionFromDrag(QPoint start, QPoint end, QSize label, QSize sensor)
{
    const double scaleX = static_cast<double>(sensor.width()) / std::max(1, label.width());
    const double scaleY = static_cast<double>(sensor.height()) / std::max(1, label.height());
    const QPointF from(start);
    const QPointF extent = QPointF(end) - from; // in floating point: may exceed an int
    return {truncated(from.x() * scaleX), truncated(from.y() * scaleY),
            truncated(extent.x() * scaleX), truncated(extent.y() * scaleY)};
}

QStringList saveExtensions(const QStringList &always, const QString &pixelFormat)
{
    QStringList extensions = always;
    if (meaningOf(pixelFormat.toStdString()).color)
        extensions.append(nameOf(SaveFormat::Rgb));
    return extensions;
}
